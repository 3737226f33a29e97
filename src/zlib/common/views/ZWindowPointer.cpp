// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowPointer.h"

#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewMessage.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

ZPoint toView(const ZView& view, const ZPoint& windowPoint)
{
    return {windowPoint.x - view.GetWindowOrigin().x, windowPoint.y - view.GetWindowOrigin().y};
}

}  // namespace

ZWindowPointer::ZWindowPointer(ZView& root)
    : mRoot(root)
{
}

void ZWindowPointer::RouteClick(const ZMessage& message, const char* pointField)
{
    if (mCaptured)
        return SendToCaptured(message, pointField);
    const auto point = requireField<ZPoint>(message, pointField);
    const auto mods = requireField<std::uint32_t>(message, "MouseMods");
    mRoot.HandleZMessage(makeMouseMessage(message.GetId(), pointField, point, mods));
}

void ZWindowPointer::RouteMove(const boost::shared_ptr<const ZMessage>& message)
{
    UpdateHover(requireField<ZPoint>(*message, "MovePoint"));
    if (mCaptured)
        return SendToCaptured(*message, "MovePoint");
    static_cast<void>(requireField<std::uint32_t>(*message, "MouseMods"));
    mRoot.HandleZMessage(message);
}

void ZWindowPointer::SendToCaptured(const ZMessage& message, const char* pointField)
{
    assert(mCaptured);
    const auto point = requireField<ZPoint>(message, pointField);
    const auto mods = requireField<std::uint32_t>(message, "MouseMods");
    mCaptured->HandleZMessage(
        makeMouseMessage(message.GetId(), pointField, toView(*mCaptured, point), mods));
}

void ZWindowPointer::UpdateHover(const ZPoint& point)
{
    ZView* view = nullptr;
    if (!mRoot.HitTest(view, point) || view == mHover)
        return;
    assert(view);
    LeaveHover();
    if (mCaptured)
        return;
    // The view makes itself the hover view.
    view->HandleZMessage(makeMessage(ZMOUSEENTERED, "EnteredPoint", toView(*view, point)));
}

void ZWindowPointer::LeaveHover()
{
    if (ZView* const view = std::exchange(mHover, nullptr))
        view->HandleZMessage(boost::make_shared<ZMessage>(ZMOUSELEFT));
}

}  // namespace orvane
