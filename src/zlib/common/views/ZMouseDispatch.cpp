// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZMouseDispatch.h"

#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindow.h"

#include <cassert>

namespace orvane
{

namespace
{

ZPoint toChild(const ZView& child, const ZPoint& point)
{
    const ZPoint origin = child.GetOriginInParent();
    return {point.x - origin.x, point.y - origin.y};
}

/// The fields that all mouse messages but the wheel's have.
struct Mouse
{
    Mouse(const ZMessage& message, const char* pointField)
        : id(message.GetId())
        , field(pointField)
        , point(requireField<ZPoint>(message, pointField))
        , mods(requireField<std::uint32_t>(message, "MouseMods"))
    {
    }

    /// False where no child lies at the point.
    [[nodiscard]] bool SendToChild(const ZView& view) const
    {
        const auto child = view.FindSubviewAt(point);
        if (child)
            child->HandleZMessage(makeMouseMessage(id, field, toChild(*child, point), mods));
        return child != nullptr;
    }

    const std::int32_t id;
    const char* const field;
    const ZPoint point;
    const std::uint32_t mods;
};

void dispatchWheel(ZView& view, const ZMessage& message)
{
    const Mouse mouse(message, "WheelPoint");
    const auto axis = requireField<std::int32_t>(message, "WheelAxis");
    const auto delta = requireField<std::int32_t>(message, "WheelDelta");
    const auto child = view.FindSubviewAt(mouse.point);
    if (!child)
        return view.MouseWheel(mouse.point, mouse.mods, axis, delta);
    child->HandleZMessage(makeWheelMessage(toChild(*child, mouse.point), mouse.mods, axis, delta));
}

}  // namespace

void dispatchMouse(ZView& view, const ZMessage& message)
{
    switch (message.GetId()) {
    case ZMOUSEDOWN: {
        const Mouse mouse(message, "ClickPoint");
        if (!mouse.SendToChild(view))
            view.MouseDown(mouse.point, mouse.mods);
        return;
    }
    case ZMOUSEDOUBLECLICK: {
        const Mouse mouse(message, "ClickPoint");
        if (!mouse.SendToChild(view))
            view.MouseDoubleClick(mouse.point, mouse.mods);
        return;
    }
    case ZMOUSEUP: {
        // Every view between the root and the point gets the release.
        const Mouse mouse(message, "UpPoint");
        static_cast<void>(mouse.SendToChild(view));
        return view.MouseUp(mouse.point, mouse.mods);
    }
    case ZMOUSEMOVED: {
        const Mouse mouse(message, "MovePoint");
        if (view.HasMouseCapture())
            view.MouseMoved(mouse.point, mouse.mods);
        else
            static_cast<void>(mouse.SendToChild(view));
        return;
    }
    case ZMOUSEENTERED:
        view.MouseEntered(requireField<ZPoint>(message, "EnteredPoint"));
        if (view.GetWindow())
            view.GetWindow()->SetHoverView(&view);
        return;
    case ZMOUSELEFT:
        return view.MouseLeft();
    default:
        assert(message.GetId() == ZMOUSEWHEEL);
        return dispatchWheel(view, message);
    }
}

}  // namespace orvane
