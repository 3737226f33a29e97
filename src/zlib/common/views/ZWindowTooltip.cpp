// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowTooltip.h"

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

void ZWindowTooltip::HandleMouse(ZNativeMouseEvent::Action action, const ZPoint& point,
                                 bool isDragging)
{
    if (!mTooltip)
        return;
    if (action == ZNativeMouseEvent::kLeave)
        return mTooltip->Left();
    if (action != ZNativeMouseEvent::kMove)
        return mTooltip->MouseDown();
    if (!isDragging)
        mTooltip->MouseMoved(point);
}

void ZWindowTooltip::HandleKey()
{
    if (mTooltip)
        mTooltip->MouseDown();
}

}  // namespace orvane
