// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/lv2/ZLV2Editor.h"

#include "zlib/common/objects/ZInterfaceLock.h"

#include <cassert>
#include <vector>

namespace orvane
{

ZLV2Editor::ZLV2Editor(ZLV2Plugin& plugin, const Host& host)
    : mPlugin(plugin)
    , mHost(host)
{
    assert(host.write != nullptr);
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
    int width = 0;
    int height = 0;
    {
        const ZInterfaceLock lock;
        if (!mPlugin.OpenEditor(*this, parent))
            return 0;
        const ZEditorWindow& window = *mPlugin.GetEditorWindow();
        handle = window.GetHandle();
        width = window.GetWidth();
        height = window.GetHeight();
    }
    if (mHost.resize != nullptr)
        mHost.resize->ui_resize(mHost.resize->handle, width, height);
    return handle;
}

bool ZLV2Editor::Idle()
{
    std::vector<ZLV2Plugin::Edit> edits;
    {
        const ZInterfaceLock lock;
        if (!mPlugin.HasEditor(*this))
            return false;
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
