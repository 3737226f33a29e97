// SPDX-License-Identifier: GPL-3.0-or-later
// The half of ZWindow that meets the window of the system: pixels on that side, units on this one.
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindow.h"
#include "zlib/common/views/ZWindowHost.h"
#include "zlib/common/views/ZWindowMenu.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>
#include <memory>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::int32_t kVerticalWheel = 1;

}  // namespace

ZNativeWindow::Settings ZWindow::NativeSettings(const ZWindow* parent,
                                                ZNativeHandle nativeParent) const
{
    ZNativeWindow::Settings settings;
    settings.kind = mAttributes.child ? ZNativeWindow::Kind::kChild : ZNativeWindow::Kind::kDialog;
    settings.parent = nativeParent;
    if (nativeParent == 0 && parent && parent->mNativeWindow)
        settings.parent = parent->mNativeWindow->GetHandle();
    settings.rect = GetPixelRect();
    settings.title = mAttributes.child ? ZString() : mTitle;
    settings.modal = mModality.IsDialog();
    settings.resizable = mAttributes.resizable;
    return settings;
}

ZDeviceScale ZWindow::FindScale(const ZWindow* parent)
{
    return parent ? parent->mScale : mScales.Find(ZApp::Of(*this));
}

ZPoint ZWindow::GetPixelSize()
{
    if (mAskedPixels)
        return *mAskedPixels;
    if (mNativeWindow)
        return mScale.ToPixels(mPlace.GetSize());
    return FindScale(nullptr).ToPixels(SizeWith(mFold.IsWanted(ZApp::Of(*this))));
}

ZPoint ZWindow::SizeWith(bool isUnfolded) const
{
    const ZPoint& size = mPlace.GetOwnSize();
    const std::int32_t folded = size.y - (mFold.IsOpen() ? mFold.GetHeight() : 0);
    return {size.x, folded + (isUnfolded ? mFold.GetHeight() : 0)};
}

void ZWindow::TakeOwnSize(bool isUnfolded)
{
    const ZPoint before = mPlace.GetSize();
    mPlace.SetOwnSize(SizeWith(isUnfolded));
    if (mPlace.GetSize() != before)
        SendToRoot(makeMessage<ZRect>(ZRESIZE, "ResizeRect", mPlace.GetArea()));
    if (isUnfolded == mFold.IsOpen())
        return;
    if (isUnfolded)
        mFold.Open(*mRootView, GetApp());
    else
        mFold.Close(*mRootView);
}

bool ZWindow::WantsUnfolded()
{
    return mFold.IsWanted(ZApp::Of(*this));
}

bool ZWindow::Unfold(bool isOpen)
{
    assert(ZInterfaceLock::IsHeld());
    ZApp* const app = ZApp::Of(*this);
    return app && mFold.SetWanted(*app, isOpen) && TakeScale();
}

ZRect ZWindow::GetPixelRect() const
{
    const auto [x, y] = mPlace.GetPosition();
    const auto [width, height] = mScale.ToPixels(mPlace.GetSize());
    return ZRect{0, 0, width, height}.Offset(x, y);
}

void ZWindow::SetHostScale(double scale)
{
    assert(ZInterfaceLock::IsHeld());
    mScales.SetHost(scale);
    static_cast<void>(TakeScale());
}

bool ZWindow::TakeScale()
{
    assert(ZInterfaceLock::IsHeld());
    const ZDeviceScale scale = FindScale(nullptr);
    const bool isUnfolded = mFold.IsWanted(ZApp::Of(*this));
    const bool isSame = scale == mScale && isUnfolded == mFold.IsOpen();
    if (!mNativeWindow || mAskedPixels || isSame)
        return true;
    mAskedPixels = scale.ToPixels(SizeWith(isUnfolded));
    const auto life = GetLife();
    const bool isGranted = !mHost || mHost->ResizeWindow(*mAskedPixels);
    if (life.expired())
        return isGranted;
    mAskedPixels.reset();
    if (!isGranted || !mNativeWindow)
        return isGranted;
    mTooltip.Hide();
    ReleaseCapture();
    mScale = scale;
    TakeOwnSize(isUnfolded);
    mNativeWindow->SetRect(GetPixelRect());
    MakeOffscreen();
    RedrawAll();
    return true;
}

ZPoint ZWindow::ToScreen(const ZPoint& point) const
{
    return mNativeWindow ? mNativeWindow->ToScreen(mScale.ToPixel(point)) : point;
}

void ZWindow::NativePaint(const ZRect& update)
{
    if (!mPicture.Get())
        return;
    const ZRect units = mScale.ToUnits(update);
    const bool isWhole = units.Union(mRootView->GetBounds()) == units;
    if (mPicture.TakeUncovered(units) || isWhole)
        mRootView->MarkSubtreeDirty();
    Paint(units);
    if (mNativeWindow)
        mNativeWindow->Present(*mPicture.Get()->GetNative(), update);
}

const ZBitmap& ZWindow::RenderOffscreen(const ZDeviceScale& scale)
{
    if (mPlace.GetArea().IsEmpty())
        throw ZException(ZException::kGeneral,
                         "Window '" + GetName() + "' has no size to be drawn in");
    AttachViews();
    if (mNativeWindow && scale != mScale)
        return RenderBeside(scale);
    if (!mPicture.Get() || scale != mScale) {
        mScale = scale;
        MakeOffscreen();
    }
    IdleFrame();
    mRootView->MarkSubtreeDirty();
    Paint(mPlace.GetArea());
    return *mPicture.Get();
}

const ZBitmap& ZWindow::RenderBeside(const ZDeviceScale& scale)
{
    const ZPoint& size = mPlace.GetSize();
    mBeside = std::make_unique<ZBitmap>(size.x, size.y, scale.Get());
    SetGraphics(mBeside->GetGraphics());
    IdleFrame();
    mRootView->MarkSubtreeDirty();
    Paint(mPlace.GetArea());
    SetGraphics(mPicture.Get() ? mPicture.Get()->GetGraphics() : nullptr);
    // The display has not seen what changed meanwhile.
    RedrawAll();
    return *mBeside;
}

void ZWindow::NativeMouse(const ZNativeMouseEvent& event)
{
    const ZPoint position = mScale.ToUnits(event.position);
    mLastMouse = position;
    if (mModalDisabled || mModality.FindBlocker())
        mTooltip.Hide();
    else
        mTooltip.HandleMouse(event.action, position, mPointer.GetCaptured() != nullptr);
    if (event.action == ZNativeMouseEvent::kWheel)
        return HandleZMessage(
            makeWheelMessage(position, event.modifiers, kVerticalWheel, event.wheelNotches));
    if (mModalDisabled)
        return;
    const auto send = [&](std::int32_t id, const char* field) {
        HandleZMessage(makeMouseMessage(id, field, position, event.modifiers));
    };
    switch (event.action) {
    case ZNativeMouseEvent::kMove:
        return send(ZMOUSEMOVED, "MovePoint");
    case ZNativeMouseEvent::kDown:
        if (!mModality.PassFocus() && mNativeWindow)
            mNativeWindow->SetFocus();
        return send(ZMOUSEDOWN, "ClickPoint");
    case ZNativeMouseEvent::kUp:
        return send(ZMOUSEUP, "UpPoint");
    case ZNativeMouseEvent::kDoubleClick:
        return send(ZMOUSEDOUBLECLICK, "ClickPoint");
    case ZNativeMouseEvent::kContext:
        if (!mModality.PassFocus() && mNativeWindow)
            mNativeWindow->SetFocus();
        mKeys.LeaveRing();
        return ShowContextMenu(FindTopView(position), position);
    case ZNativeMouseEvent::kLeave:
        return mPointer.LeaveHover();
    case ZNativeMouseEvent::kContextUp:
    case ZNativeMouseEvent::kWheel:
        return;
    }
}

/// Returns the view that a click at the point goes to.
ZView* ZWindow::FindTopView(ZPoint point) const
{
    ZView* view = mRootView.get();
    while (const auto child = view->FindSubviewAt(point)) {
        const ZPoint origin = child->GetOriginInParent();
        point = {point.x - origin.x, point.y - origin.y};
        view = child.get();
    }
    return view;
}

void ZWindow::ShowContextMenu(ZView* view, const ZPoint& point)
{
    assert(ZInterfaceLock::IsHeld());
    if (!mContextMenu || mModalDisabled || mModality.FindBlocker() || mPointer.GetCaptured())
        return;
    mTooltip.Hide();
    mPointer.LeaveHover();
    const auto menu = mContextMenu;
    menu->Show(*this, view, point);
}

bool ZWindow::NativeKey(const ZNativeKeyEvent& event)
{
    mTooltip.HandleKey();
    // A key that comes here below a dialog is neither the host's nor a command.
    if (mModality.PassFocus())
        return true;
    if (!mContextMenu || !event.IsForContextMenu())
        return mKeys.Dispatch(event);
    ShowContextMenuByKey();
    return true;
}

void ZWindow::ShowContextMenuByKey()
{
    ZView* const focus = mKeys.GetFocus();
    if (!focus)
        return ShowContextMenu(FindTopView(mLastMouse), mLastMouse);
    const ZPoint& origin = focus->GetWindowOrigin();
    const ZRect rect = focus->GetFocusRect().Offset(origin.x, origin.y);
    ShowContextMenu(focus, {rect.left, rect.bottom});
}

bool ZWindow::WantsKey(const ZNativeKeyEvent& event) const
{
    const bool isForMenu = mContextMenu && event.IsForContextMenu();
    return !mModalDisabled && !mModality.FindBlocker() && (isForMenu || mKeys.Wants(event));
}

void ZWindow::NativeMoved(const ZPoint& position)
{
    HandleZMessage(makeMessage<ZPoint>(ZMOVED, "MovePoint", position));
}

void ZWindow::NativeSized(std::int32_t width, std::int32_t height)
{
    HandleZMessage(boost::make_shared<ZMessage>(ZWINRESTORE));
    const ZPoint pixels{width, height};
    // The window's own size comes back, and before it that of a scale that the host is asked for.
    if (pixels == mScale.ToPixels(mPlace.GetSize()) || pixels == GetPixelSize())
        return;
    const ZPoint size = mScale.ToUnits(pixels);
    HandleZMessage(makeMessage(ZSIZED, "SizedRect", ZRect{0, 0, size.x, size.y}));
}

void ZWindow::NativeFocus(bool focused)
{
    if (focused && mModality.PassFocus())
        return;
    if (focused)
        OnActivated();
    else
        OnDeactivated();
}

void ZWindow::NativeCloseRequested()
{
    HandleZMessage(boost::make_shared<ZMessage>(ZCLOSE));
}

void ZWindow::NativeDestroyed()
{
    mModality.EndRuns();
    Destroy();
}

}  // namespace orvane
