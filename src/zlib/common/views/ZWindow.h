// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZDocumentMap.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace orvane
{

class ZApplication;
class ZBitmap;
class ZDocument;
class ZTooltip;
class ZView;
class ZWindowManager;
class ZXMLElement;

/// Sees the messages of one number that a window receives, before the window acts on them.
class ZWindowFilter
{
public:
    virtual ~ZWindowFilter() = default;

    virtual void FilterMessage(const ZMessage& message) = 0;
};

/// A window of a description: owns the root view, the drawing context that all its views share and
/// the picture they are painted into, and turns events of the system into messages. It lives
/// without a window of the system until Create, and again after that one is gone: views, their
/// state and the document stay.
///
/// What reaches a view may do anything, a modal run included; the window is the last to touch
/// nothing after it has passed an event on.
/// [interface thread, or any other but the audio thread under the interface lock]
class ZWindow : public ZHandler, public ZNativeWindowClient
{
public:
    using TimerId = std::int64_t;
    static constexpr TimerId kNoTimer = -1;
    static constexpr std::int32_t kDefaultFramesPerSecond = 15;
    static constexpr std::int32_t kDefaultMaxFrames = 30;

    /// Values of `titlestyle`.
    enum class TitleStyle
    {
        kTitle,
        kApplicationAndDocument,
        kDocument,
        kApplication,
    };
    /// Values of `closestyle`: what a close request does.
    enum class CloseStyle
    {
        kApplication,
        kDocument,
        kHide,
    };

    /// From a `windowtype`, with all its views. The application, which is the looper, may be null.
    /// Throws ZException -1 where there is no `rect`.
    ZWindow(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZWindow() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Throws ZException -1 when a field is missing. While a dialog of the application is open,
    /// all windows but dialogs drop what comes.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Makes the window of the system inside nativeParent (or above parent's) and the offscreen
    /// picture, in place of what was there. False, with all else as it was, where there is no
    /// display or no such parent.
    virtual bool Create(ZWindow* parent, ZNativeHandle nativeParent);
    /// Before the window of the system goes. Nothing here.
    virtual void Detach();
    /// The views are attached.
    virtual void OnReady();
    [[nodiscard]] virtual bool IsAttached() const { return mAttached; }
    /// The keyboard has come; it has gone elsewhere.
    virtual void OnActivated();
    virtual void OnDeactivated();
    /// True for a timer that is the window's own business; the root view gets the others.
    virtual bool OnTimer(TimerId id);
    [[nodiscard]] virtual bool CanClose() { return true; }
    /// Attaches the views, when they are not, and shows the window of the system.
    virtual void Show();
    virtual void Hide();
    [[nodiscard]] virtual bool IsVisible() const;
    /// Draws what lies in the rectangle and is dirty into the offscreen picture.
    virtual void Paint(const ZRect& rect);
    /// The rectangle is painted when the platform has time.
    virtual void Invalidate(const ZRect& rect);
    /// The entries of a `documentchange`, or of a `windowmanagers`, join those that are there;
    /// another tag is traced and passed over. [setup]
    void AddDocumentTypes(const ZXMLElement& xml);
    void AddWindowManagers(const ZXMLElement& xml);
    virtual void AddWindowManager(std::unique_ptr<ZWindowManager> manager);
    virtual void RemoveWindowManager(ZWindowManager* manager);
    /// Not owned; each is added and removed by the message's number.
    virtual void AddFilter(std::int32_t messageId, ZWindowFilter* filter);
    virtual void RemoveFilter(std::int32_t messageId, ZWindowFilter* filter);
    /// IdleTick of every idle view, in order.
    virtual void IdleFrame();
    /// Takes effect at the next frame. rate >= 1.
    virtual void SetFramesPerSecond(std::int32_t rate);
    [[nodiscard]] virtual std::int32_t GetFramesPerSecond() const { return mFramesPerSecond; }
    /// The target of all drawing; null for none.
    virtual void SetGraphics(ZGraphics* graphics);

    /// Tells all views that they stand in this window, unless they do already.
    void AttachViews();
    /// Gives the window of the system and the offscreen picture up, the host's window staying as it
    /// is. Nothing where there are none.
    void Destroy();
    /// All views are dirty and the whole window is painted when the platform has time.
    void RedrawAll();
    /// Paints at once what waits to be painted.
    void Update();
    /// Attaches the views, paints all of the window with no window of the system, and lends the
    /// picture; it lives until Destroy, a change of size or the window's end.
    [[nodiscard]] const ZBitmap& RenderOffscreen();
    /// Sets the size to that of the description times the scale.
    void SetScale(double scale);

    /// Calls the handler with ZTIMER, field "TimerID" (int64), every period until StopTimer. A
    /// handler that dies gets no more.
    TimerId StartTimer(std::int64_t microseconds, ZHandler& handler);
    /// An unknown id does nothing.
    void StopTimer(TimerId id);
    /// The view's IdleTick is called at each frame. The frame timer runs while there are such views
    /// and the window is not hidden.
    void AddIdleView(ZView* view);
    void RemoveIdleView(ZView* view);
    /// The frame timer, kNoTimer while it does not run.
    [[nodiscard]] TimerId GetFrameTimer() const { return mFrameTimer; }
    /// The views that the Tab key takes the focus to, in the order in which they have come.
    void AddNavigableView(ZView* view);
    /// All mouse events go to this view, also from outside of the window. Null for none.
    void SetCapturedView(ZView* view);
    [[nodiscard]] ZView* GetCapturedView() const { return mCapturedView; }
    /// The view that the pointer is over; the view itself tells when it was entered.
    void SetHoverView(ZView* view) { mHoverView = view; }
    [[nodiscard]] ZView* GetHoverView() const { return mHoverView; }
    /// The view that gets the keys. The one before loses the focus and is drawn anew.
    void SetFocusView(ZView* view);
    [[nodiscard]] ZView* GetFocusView() const { return mFocusView; }
    /// A view that dies: the window forgets it as hover, captured, focus, idle and navigable view.
    void ForgetView(ZView* view);
    /// The tip of a view with a tooltip; rect in window coordinates.
    void AddTool(ZView* view, const ZRect& rect);
    void RemoveTool(ZView* view);
    /// Null while no view has a tip.
    [[nodiscard]] ZTooltip* GetTooltip() const { return mTooltip.get(); }

    /// The window shows this document, or none: title, root view and nested managers are not told.
    void SetDocument(ZDocument* document);
    [[nodiscard]] ZDocument* GetDocument() const { return mDocument; }
    /// The map of `documentchange` that matches; null when the window does not take the document.
    [[nodiscard]] const ZDocumentMap* FindDocumentMap(const ZDocument& document) const;
    [[nodiscard]] std::vector<ZWindowManager*> GetWindowManagers() const;

    [[nodiscard]] const boost::shared_ptr<ZView>& GetRootView() const { return mRootView; }
    [[nodiscard]] const boost::shared_ptr<ZDrawingContext>& GetContext() const { return mContext; }
    /// What stands in the title bar: by `titlestyle`.
    [[nodiscard]] const ZString& GetTitle() const { return mTitle; }
    [[nodiscard]] std::int32_t GetWidth() const { return mSize.x; }
    [[nodiscard]] std::int32_t GetHeight() const { return mSize.y; }
    [[nodiscard]] const ZPoint& GetPosition() const { return mPosition; }
    [[nodiscard]] const ZPoint& GetLastMouse() const { return mLastMouse; }
    [[nodiscard]] bool IsChild() const { return mChild; }
    [[nodiscard]] bool IsModalDisabled() const { return mModalDisabled; }
    [[nodiscard]] CloseStyle GetCloseStyle() const { return mCloseStyle; }
    [[nodiscard]] bool IsResizable() const { return mResizable; }
    [[nodiscard]] std::int32_t GetMaxFramesPerSecond() const { return mMaxFramesPerSecond; }
    /// Null while there is none.
    [[nodiscard]] ZNativeWindow* GetNativeWindow() const { return mNativeWindow.get(); }
    /// Where a point of the window lies on the screen; the point itself without a window of the
    /// system.
    [[nodiscard]] ZPoint ToScreen(const ZPoint& point) const;

    void NativePaint(const ZRect& update) override;
    void NativeMouse(const ZNativeMouseEvent& event) override;
    /// With a focus view keys and text go there; else a command with that key is dispatched.
    bool NativeKey(const ZNativeKeyEvent& event) override;
    void NativeMoved(const ZPoint& position) override;
    void NativeSized(std::int32_t width, std::int32_t height) override;
    void NativeFocus(bool focused) override;
    void NativeCloseRequested() override;
    void NativeDestroyed() override;

protected:
    void SetAttached(bool attached) { mAttached = attached; }

private:
    // Construction.
    void ReadAttributes(const ZXMLElement& xml);
    void BuildViews(const ZXMLElement& xml);

    // Messages.
    [[nodiscard]] bool IsBlocked(const ZMessage& message);
    void CallFilters(const ZMessage& message);
    void SendToRoot(const boost::shared_ptr<const ZMessage>& message);
    void SendToCaptured(const boost::shared_ptr<const ZMessage>& message);
    void CloseByStyle();
    void TakeDocument(const ZMessage& message, const char* field);
    void LoseDocument(const boost::shared_ptr<const ZMessage>& message);
    void RouteClick(const ZMessage& message, const char* field);
    void RouteMove(const boost::shared_ptr<const ZMessage>& message);
    void TellTooltip(const ZNativeMouseEvent& event);
    void HideTooltip();
    void UpdateHover(const ZPoint& point);
    void LeaveHover();
    void HandleSized(const ZMessage& message);
    void HandleTimer(const boost::shared_ptr<const ZMessage>& message);
    void HandleQuit(const boost::shared_ptr<const ZMessage>& message);
    void SendToFocus(const boost::shared_ptr<const ZMessage>& message);
    void SendToManager(const boost::shared_ptr<const ZMessage>& message);
    bool TypeInFocus(const ZNativeKeyEvent& event);
    /// To the next navigable view that is visible, or the one before, round and round; false when
    /// there is no other.
    bool MoveFocus(bool backwards);
    bool DispatchHotKey(const ZNativeKeyEvent& event);
    void SetSize(double width, double height);

    // The window of the system.
    [[nodiscard]] ZNativeWindow::Settings NativeSettings(const ZWindow* parent,
                                                         ZNativeHandle nativeParent) const;
    void EndModalRuns();
    void SizeChanged();
    void ReleaseCapture();
    void ComposeTitle();
    [[nodiscard]] ZString TitleText();
    void MakeOffscreen();
    [[nodiscard]] ZRect GetArea() const { return {0, 0, mSize.x, mSize.y}; }
    [[nodiscard]] ZRect GetPlace() const;

    // The frame timer.
    void UpdateFrameTimer();
    void StopFrameTimer();

    ZString mTitleAttribute;
    ZString mTitle;
    TitleStyle mTitleStyle = TitleStyle::kTitle;
    CloseStyle mCloseStyle = CloseStyle::kApplication;
    bool mChild = false;
    bool mDialog = false;
    bool mMdiChild = false;
    bool mResizable = true;
    ZPoint mFirstPosition;
    ZPoint mFirstSize;
    ZPoint mPosition;
    ZPoint mSize;  // width and height
    ZPoint mLastMouse;
    ZDocument* mDocument = nullptr;
    bool mModalDisabled = false;
    bool mAttached = false;
    bool mPaused = false;  // hidden or gone: no frames
    // Requests to repaint a part since the last paint, and the rectangle around them.
    std::int32_t mInvalidations = 0;
    ZRect mInvalidated;
    TimerId mFrameTimer = kNoTimer;
    std::int32_t mFramesPerSecond = kDefaultFramesPerSecond;
    std::int32_t mRequestedFramesPerSecond = kDefaultFramesPerSecond;
    // Kept and asked by nobody: views repaint when they change, and the platform merges that.
    std::int32_t mMaxFramesPerSecond = kDefaultMaxFrames;
    ZView* mCapturedView = nullptr;
    ZView* mHoverView = nullptr;
    ZView* mFocusView = nullptr;
    std::multimap<std::int32_t, ZWindowFilter*> mFilters;
    std::unique_ptr<ZTooltip> mTooltip;  // made for the first view that has a tip
    ZLockedList<ZView*> mIdleViews{"idle view list"};
    ZLockedList<ZView*> mNavigableViews{"navigable view list"};
    ZLockedList<std::shared_ptr<const ZDocumentMap>> mDocumentChanges{"docchange list"};
    ZLockedList<std::shared_ptr<ZWindowManager>> mWindowManagers{"window managers"};
    std::unique_ptr<ZBitmap> mOffscreenBitmap;
    boost::shared_ptr<ZDrawingContext> mContext;
    boost::shared_ptr<ZView> mRootView;
    std::unique_ptr<ZNativeWindow> mNativeWindow;
};

}  // namespace orvane
