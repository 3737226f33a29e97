// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/lv2/ZLV2Editor.h"

#include "zlib/common/objects/ZInterfaceLock.h"

#include <cassert>
#include <utility>
#include <vector>

namespace orvane
{

ZLV2Editor::ZLV2Editor(ZLV2Plugin& plugin, const Host& host)
    : mPlugin(plugin)
    , mHost(host)
    , mUrids(host.urids != nullptr ? std::optional(*host.urids) : std::nullopt)
{
    assert(host.write != nullptr);
    if (mUrids)
        mScale = findOption(host.options, mUrids->scaleFactor, *mUrids);
}

ZLV2Editor::~ZLV2Editor()
{
    std::vector<ZLV2Plugin::Edit> edits;
    {
        const ZInterfaceLock lock;
        edits = mPlugin.CloseEditor(*this);
    }
    Tell(edits);
}

std::uintptr_t ZLV2Editor::Open(std::uintptr_t parent)
{
    std::uintptr_t handle = 0;
    ZPoint size;
    {
        const ZInterfaceLock lock;
        if (!mPlugin.OpenEditor(*this, *this, mScale, parent))
            return 0;
        const ZEditorWindow& window = *mPlugin.GetEditorWindow();
        handle = window.GetHandle();
        size = {window.GetWidth(), window.GetHeight()};
    }
    // The window is there, in the size that it has, whatever the host answers.
    static_cast<void>(AskForSize(size));
    return handle;
}

bool ZLV2Editor::AskForSize(const ZPoint& size) const
{
    assert(std::this_thread::get_id() == mHostThread);
    return mHost.resize != nullptr &&
           mHost.resize->ui_resize(mHost.resize->handle, size.x, size.y) == 0;
}

bool ZLV2Editor::ResizeWindow(const ZPoint& size)
{
    assert(ZInterfaceLock::IsHeld());
    if (std::this_thread::get_id() != mHostThread) {
        mWantsSize = true;
        return false;
    }
    const ZInterfaceUnlock unlocked;
    return AskForSize(size);
}

std::uint32_t ZLV2Editor::SetOptions(const LV2_Options_Option* options)
{
    if (!mUrids)
        return LV2_OPTIONS_ERR_UNKNOWN;
    const auto scale = findOption(options, mUrids->scaleFactor, *mUrids);
    if (!scale)
        return LV2_OPTIONS_ERR_BAD_KEY;
    const ZInterfaceLock lock;
    mScale = scale;
    if (mPlugin.HasEditor(*this))
        mPlugin.GetEditorWindow()->SetHostScale(*scale);
    return LV2_OPTIONS_SUCCESS;
}

bool ZLV2Editor::Idle()
{
    std::vector<ZLV2Plugin::Edit> edits;
    {
        const ZInterfaceLock lock;
        if (!mPlugin.HasEditor(*this))
            return false;
        if (std::exchange(mWantsSize, false))
            mPlugin.GetEditorWindow()->TakeScale();
        edits = mPlugin.TakeEdits();
    }
    Tell(edits);
    return true;
}

// Without the interface lock, since the host may call back.
void ZLV2Editor::Tell(const std::vector<ZLV2Plugin::Edit>& edits) const
{
    using Kind = ZLV2Plugin::Edit::Kind;
    for (const ZLV2Plugin::Edit& edit : edits) {
        if (edit.kind == Kind::kValue)
            mHost.write(mHost.controller, edit.port, sizeof edit.value, 0, &edit.value);
        else if (mHost.touch != nullptr)
            mHost.touch->touch(mHost.touch->handle, edit.port, edit.kind == Kind::kBegin);
    }
}

}  // namespace orvane
