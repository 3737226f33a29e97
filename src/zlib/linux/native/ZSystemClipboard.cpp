// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZClipboard.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/linux/native/ZDisplayConnection.h"

#include <cassert>

namespace orvane
{

namespace
{

/// The clipboard of the display. Other programs can paste a text while one of the library's windows
/// is open. The library keeps it longer: it can be pasted in the next window, unless another
/// program has copied something that is there, or did so while a window was open.
class SystemClipboard : public ZClipboard
{
public:
    bool Write(const std::string& text) override
    {
        assert(ZInterfaceLock::IsHeld());
        const auto display = ZDisplayConnection::Get();
        if (!display)
            return false;
        const ZDisplayUse use(display);
        mKept = text;
        return display->GetSelection().Offer(text);
    }

    std::optional<std::string> Read(const void* owner) override
    {
        assert(ZInterfaceLock::IsHeld());
        const auto display = ZDisplayConnection::Get();
        if (!display || !ZInterfaceThread::IsCurrent())
            return std::nullopt;
        if (display->GetSelection().IsLost())
            mKept.reset();
        if (!display->GetSelection().HasOwner())
            return mKept;
        return display->GetSelection().Fetch(owner);
    }

private:
    std::optional<std::string> mKept;  // what the library has copied last
};

bool install()
{
    static SystemClipboard clipboard;
    ZClipboard::Set(&clipboard);
    return true;
}

[[maybe_unused]] const bool isInstalled = install();

}  // namespace

}  // namespace orvane
