// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/native/ZNativeWindow.h"

#include "zlib/linux/native/ZDialogProperties.h"
#include "zlib/linux/native/ZDisplayConnection.h"
#include "zlib/linux/native/ZMonitors.h"
#include "zlib/linux/native/ZNativeEvents.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <limits>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::uint32_t kEvents = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                  XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                  XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW |
                                  XCB_EVENT_MASK_LEAVE_WINDOW | XCB_EVENT_MASK_KEY_PRESS |
                                  XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE;

std::int16_t toPosition(std::int32_t value)
{
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(value, Limits::min(), Limits::max()));
}

/// The display takes no window without pixels.
std::uint16_t toLength(std::int32_t value)
{
    return static_cast<std::uint16_t>(
        std::clamp<std::int32_t>(value, 1, std::numeric_limits<std::int16_t>::max()));
}

/// Clamps a rectangle to the display's 16-bit coordinates.
ZRect toDisplay(const ZRect& rect)
{
    const std::int32_t left = toPosition(rect.left);
    const std::int32_t top = toPosition(rect.top);
    return {left, top, left + toLength(rect.GetWidth()), top + toLength(rect.GetHeight())};
}

/// Makes the window; XCB_NONE when the server refuses. It has no background, so that the old pixels
/// stay on the screen until the new ones are painted.
xcb_window_t makeWindow(ZDisplayConnection& display, const ZNativeWindow::Settings& settings,
                        xcb_window_t parent)
{
    const ZDisplayConnection::Format& format = display.GetFormat();
    xcb_create_window_value_list_t values{};
    values.border_pixel = 0;  // required if the parent has another depth
    values.bit_gravity = XCB_GRAVITY_NORTH_WEST;
    values.override_redirect = settings.kind == ZNativeWindow::Kind::kPopup;
    values.event_mask = kEvents;
    values.colormap = format.colormap;
    const xcb_window_t window = xcb_generate_id(display.GetNative());
    const ZRect& rect = settings.rect;
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(
        display.GetNative(),
        xcb_create_window_aux_checked(
            display.GetNative(), format.depth, window, parent, toPosition(rect.left),
            toPosition(rect.top), toLength(rect.GetWidth()), toLength(rect.GetHeight()), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, format.visual,
            XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_OVERRIDE_REDIRECT |
                XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
            &values)));
    return error || display.IsBroken() ? xcb_window_t{XCB_NONE} : window;
}

bool isWindowNumber(ZNativeHandle handle)
{
    return handle != 0 && handle <= std::numeric_limits<xcb_window_t>::max();
}

}  // namespace

/// The window on the display and its event half.
struct ZNativeWindow::Native
{
    Native(std::shared_ptr<ZDisplayConnection> connection, xcb_window_t window,
           const Settings& settings, ZNativeWindowClient& client)
        : display(std::move(connection))
        , id(window)
        , kind(settings.kind)
        , resizable(settings.resizable)
        , events(display, window, settings, client)
    {
    }
    Native(const Native&) = delete;
    Native& operator=(const Native&) = delete;
    /// The server ends a capture together with the window.
    ~Native()
    {
        if (events.IsGone())
            return;
        const ZDisplayUse use(display);
        xcb_destroy_window(display->GetNative(), id);
    }

    const std::shared_ptr<ZDisplayConnection> display;
    const xcb_window_t id;
    const Kind kind;
    const bool resizable;
    ZNativeEvents events;
};

std::unique_ptr<ZNativeWindow> ZNativeWindow::Create(const Settings& settings,
                                                     ZNativeWindowClient& client)
{
    const auto display = ZDisplayConnection::Get();
    if (!display)
        return nullptr;
    const ZDisplayUse use(display);
    const bool isChild = settings.kind == Kind::kChild;
    Settings placed = settings;
    placed.rect = toDisplay(settings.rect);
    if (!isWindowNumber(placed.parent))
        placed.parent = 0;
    const auto owner = static_cast<xcb_window_t>(placed.parent);
    const xcb_window_t window =
        isChild && owner == XCB_NONE
            ? XCB_NONE
            : makeWindow(*display, placed, isChild ? owner : display->GetRoot());
    if (window == XCB_NONE) {
        std::fprintf(stderr, "The display has no window %#jx to make one in\n",
                     static_cast<std::uintmax_t>(settings.parent));
        return nullptr;
    }
    if (settings.kind == Kind::kDialog) {
        setDialogProperties(*display, window, owner, settings.modal);
        setDialogPlace(*display, window, placed.rect, settings.resizable);
        setDialogTitle(*display, window, settings.title);
    }
    if (!isChild)
        placed.parent = display->GetRoot();
    return std::make_unique<ZNativeWindow>(
        std::make_unique<Native>(display, window, placed, client));
}

ZNativeWindow::ZNativeWindow(std::unique_ptr<Native> native)
    : mNative(std::move(native))
{
    assert(mNative);
}

ZNativeWindow::~ZNativeWindow() = default;

ZNativeHandle ZNativeWindow::GetHandle() const
{
    return mNative->id;
}

ZNativeHandle ZNativeWindow::GetTopLevel() const
{
    if (!IsAlive())
        return 0;
    const ZDisplayUse use(mNative->display);
    return topLevelAround(*mNative->display, mNative->id);
}

bool ZNativeWindow::IsAlive() const
{
    return mNative->events.IsAlive();
}

void ZNativeWindow::Show()
{
    if (!IsAlive())
        return;
    const ZDisplayUse use(mNative->display);
    if (mNative->kind == Kind::kPopup) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(mNative->display->GetNative(), mNative->id,
                             XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    xcb_map_window(mNative->display->GetNative(), mNative->id);
    mNative->events.SetShown(true);
}

void ZNativeWindow::Hide()
{
    if (!IsAlive())
        return;
    const ZDisplayUse use(mNative->display);
    mNative->events.SetShown(false);
    xcb_unmap_window(mNative->display->GetNative(), mNative->id);
}

bool ZNativeWindow::IsVisible() const
{
    return IsAlive() && mNative->events.IsShown();
}

void ZNativeWindow::SetRect(const ZRect& rect)
{
    if (!IsAlive())
        return;
    const ZDisplayUse use(mNative->display);
    const ZRect place = toDisplay(rect);
    if (mNative->kind == Kind::kDialog)
        setDialogPlace(*mNative->display, mNative->id, place, mNative->resizable);
    xcb_configure_window_value_list_t values{};
    values.x = place.left;
    values.y = place.top;
    values.width = static_cast<std::uint32_t>(place.GetWidth());
    values.height = static_cast<std::uint32_t>(place.GetHeight());
    xcb_configure_window_aux(mNative->display->GetNative(), mNative->id,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             &values);
}

void ZNativeWindow::SetTitle(const ZString& title)
{
    if (!IsAlive() || mNative->kind != Kind::kDialog)
        return;
    const ZDisplayUse use(mNative->display);
    setDialogTitle(*mNative->display, mNative->id, title);
}

void ZNativeWindow::Invalidate(const ZRect& rect)
{
    if (IsAlive())
        mNative->events.Invalidate(rect);
}

void ZNativeWindow::Update()
{
    if (IsVisible())
        mNative->events.Paint();
}

void ZNativeWindow::Present(const ZImage& image, const ZRect& rect)
{
    if (!IsAlive())
        return;
    const ZDisplayUse use(mNative->display);
    mNative->display->GetBlitter().Blit(mNative->id, image, rect);
}

bool ZNativeWindow::SetCapture(bool on)
{
    if (!IsAlive())
        return false;
    const ZDisplayUse use(mNative->display);
    xcb_connection_t* const native = mNative->display->GetNative();
    if (!on) {
        if (mNative->events.IsCapturing())
            xcb_ungrab_pointer(native, XCB_CURRENT_TIME);
        mNative->events.SetCapturing(false);
        return false;
    }
    constexpr std::uint16_t kGrabbed =
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;
    const auto reply =
        xcbReply(xcb_grab_pointer_reply, native,
                 xcb_grab_pointer(native, 0, mNative->id, kGrabbed, XCB_GRAB_MODE_ASYNC,
                                  XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME));
    mNative->events.SetCapturing(reply && reply->status == XCB_GRAB_STATUS_SUCCESS);
    return mNative->events.IsCapturing();
}

// The server refuses the focus to a window that is not visible; that error has no effect.
void ZNativeWindow::SetFocus()
{
    if (!IsAlive())
        return;
    const ZDisplayUse use(mNative->display);
    xcb_set_input_focus(mNative->display->GetNative(), XCB_INPUT_FOCUS_PARENT, mNative->id,
                        XCB_CURRENT_TIME);
}

ZPoint ZNativeWindow::ToScreen(const ZPoint& point) const
{
    if (!IsAlive())
        return point;
    const ZDisplayUse use(mNative->display);
    xcb_connection_t* const native = mNative->display->GetNative();
    const auto reply =
        xcbReply(xcb_translate_coordinates_reply, native,
                 xcb_translate_coordinates(native, mNative->id, mNative->display->GetRoot(), 0, 0));
    return reply ? ZPoint{point.x + reply->dst_x, point.y + reply->dst_y} : point;
}

ZRect ZNativeWindow::GetMonitor(const ZPoint& screenPoint) const
{
    if (!IsAlive())
        return {};
    const ZDisplayUse use(mNative->display);
    const std::vector<ZRect> monitors =
        readMonitors(mNative->display->GetNative(), mNative->display->GetRoot());
    return monitors.empty() ? mNative->display->GetScreenRect() : nearestOf(monitors, screenPoint);
}

}  // namespace orvane
