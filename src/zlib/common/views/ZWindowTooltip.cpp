// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowTooltip.h"

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/views/ZTooltip.h"

#include <cassert>

namespace orvane
{

ZWindowTooltip::ZWindowTooltip(ZWindow& window)
    : mWindow(window)
{
}

ZWindowTooltip::~ZWindowTooltip() = default;

void ZWindowTooltip::AddTool(ZView* view, const ZRect& rect)
{
    assert(ZInterfaceLock::IsHeld());
    assert(view);
    if (!mTooltip)
        mTooltip = std::make_unique<ZTooltip>(mWindow);
    mTooltip->AddTool(view, rect);
}

void ZWindowTooltip::RemoveTool(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    if (mTooltip)
        mTooltip->RemoveTool(view);
}

void ZWindowTooltip::Hide()
{
    if (mTooltip)
        mTooltip->Left();
}

void ZWindowTooltip::HandleMouse(const ZNativeMouseEvent& event, bool isDragging)
{
    if (!mTooltip)
        return;
    if (event.action == ZNativeMouseEvent::kLeave)
        return mTooltip->Left();
    if (event.action != ZNativeMouseEvent::kMove)
        return mTooltip->MouseDown();
    if (!isDragging)
        mTooltip->MouseMoved(event.position);
}

void ZWindowTooltip::HandleKey()
{
    if (mTooltip)
        mTooltip->MouseDown();
}

}  // namespace orvane
