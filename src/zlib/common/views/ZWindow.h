// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZDocumentMaps.h"
#include "zlib/common/views/ZValueTip.h"
#include "zlib/common/views/ZWindowAttributes.h"
#include "zlib/common/views/ZWindowFilters.h"
#include "zlib/common/views/ZWindowFold.h"
#include "zlib/common/views/ZWindowFrames.h"
#include "zlib/common/views/ZWindowKeys.h"
#include "zlib/common/views/ZWindowModality.h"
#include "zlib/common/views/ZWindowPicture.h"
#include "zlib/common/views/ZWindowPlace.h"
#include "zlib/common/views/ZWindowPointer.h"
#include "zlib/common/views/ZWindowScale.h"
#include "zlib/common/views/ZWindowTooltip.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace orvane
{

class ZApplication;
class ZBitmap;
class ZDocument;
class ZTooltip;
class ZView;
class ZWindowFilter;
class ZWindowHost;
class ZWindowManager;
class ZWindowMenu;
class ZXMLElement;

/// A window that a description defines. It owns the root view, the drawing context that all its
/// views share and the offscreen picture that they are painted into, and turns events of the system
/// into messages. The window of the system exists from Create to Destroy; views, their state and
/// the document exist all the time.
///
/// A view may do anything while it handles a message, a modal run included, so the window touches
/// nothing after it has passed an event on.
/// [interface thread, or any other but the audio thread under the interface lock]
class ZWindow : public ZHandler, public ZNativeWindowClient
{
public:
    using TimerId = std::int64_t;
    static constexpr TimerId kNoTimer = -1;
    /// Builds the window from a `windowtype`, with all its views. The application, which is the
    /// looper, may be null. Throws ZException kGeneral where there is no `rect`.
    ZWindow(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZWindow() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Throws ZException kGeneral when a field is missing. While a dialog of the application is
    /// open, windows that are no dialogs drop every message but ZDRAW and ZDOCUMENTCLOSED.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Makes the window of the system, inside nativeParent or above parent's, and the offscreen
    /// picture; they replace the ones before. False, with nothing changed, where there is no
    /// display or no such parent.
    virtual bool Create(ZWindow* parent, ZNativeHandle nativeParent);
    /// Called before the window of the system is destroyed by its host.
    virtual void Detach() {}
    /// Called when the views have been attached.
    virtual void OnReady() {}
    [[nodiscard]] virtual bool IsAttached() const { return mAttached; }
    /// Called when the window has got the keyboard, or has lost it.
    virtual void OnActivated() {}
    virtual void OnDeactivated() {}
    /// Returns true when the window has handled the timer; else the root view gets it.
    virtual bool OnTimer(TimerId /*id*/) { return false; }
    [[nodiscard]] virtual bool CanClose() { return true; }
    /// Attaches the views, unless they are, and shows the window of the system.
    virtual void Show();
    virtual void Hide();
    [[nodiscard]] virtual bool IsVisible() const;
    /// Draws what lies in the rectangle and is dirty into the offscreen picture.
    virtual void Paint(const ZRect& rect);
    /// Asks the system to paint the rectangle when it has time.
    virtual void Invalidate(const ZRect& rect);
    /// Add the entries of a `documentchange`, or of a `windowmanagers`, to those that are there;
    /// another tag is traced and ignored. [setup]
    void AddDocumentTypes(const ZXMLElement& xml);
    void AddWindowManagers(const ZXMLElement& xml);
    virtual void AddWindowManager(std::unique_ptr<ZWindowManager> manager);
    virtual void RemoveWindowManager(ZWindowManager* manager);
    /// Adds or removes a filter, which is not owned, for the messages of an id.
    virtual void AddFilter(std::int32_t messageId, ZWindowFilter* filter)
    {
        mFilters.Add(messageId, filter);
    }
    virtual void RemoveFilter(std::int32_t messageId, ZWindowFilter* filter)
    {
        mFilters.Remove(messageId, filter);
    }
    /// Calls IdleTick of every idle view, in order.
    virtual void IdleFrame() { mFrames.CallViews(); }
    /// Takes effect at the next frame. rate >= 1, in frames a second.
    virtual void SetFramesPerSecond(std::int32_t rate) { mFrames.SetRate(rate); }
    [[nodiscard]] virtual std::int32_t GetFramesPerSecond() const { return mFrames.GetRate(); }
    /// Sets the target of all drawing; null for none.
    virtual void SetGraphics(ZGraphics* graphics);

    /// Makes the window a dialog, as the attribute does. Comes before Create.
    void MakeDialog() { mModality.MakeDialog(); }
    /// Attaches all views to this window, unless they are.
    void AttachViews();
    /// Destroys the window of the system, but not the host's around it, and the offscreen picture.
    void Destroy();
    /// Marks all views dirty and asks the system to paint the whole window.
    void RedrawAll();
    /// The same for a rectangle, where something on top of the views has changed.
    void RepaintUnder(const ZRect& rect);
    /// Paints now what waits to be painted.
    void Update();
    /// Attaches the views, paints the whole window at a scale, without a window of the system, and
    /// returns the picture; it stays valid until Destroy, the next call, a change of size or the
    /// window's end. Throws
    /// ZException kGeneral for an empty size.
    [[nodiscard]] const ZBitmap& RenderOffscreen(const ZDeviceScale& scale = {});
    /// Sets the size to that of the description times the scale, which is above 0.
    void SetScale(double scale);

    /// Returns the number of pixels on a unit's side. Views, messages and all sizes and points of
    /// this class are in units; positions, and what the window of the system takes, are in pixels.
    [[nodiscard]] const ZDeviceScale& GetDeviceScale() const { return mScale; }
    /// Returns width and height in pixels: those of the window of the system, or that a new one
    /// would have by the settings.
    [[nodiscard]] ZPoint GetPixelSize();
    /// Takes the scale that the host wishes, within the limits of ZWindowScale, which counts unless
    /// the user has chosen one.
    void SetHostScale(double scale);
    /// Looks who decides on the scale now, and what, and whether the user wants the fold open: if
    /// that is not what the window of the system shows, asks the host to make room and redraws the
    /// window. Returns false when the host refuses; then a window of the system that is there stays
    /// as it is, and the next one is as wanted. The window may be gone when the call returns.
    bool TakeScale();
    /// Returns whether the description has something to unfold below the window.
    [[nodiscard]] bool HasFold() const { return mFold.Exists(); }
    [[nodiscard]] bool IsUnfolded() const { return mFold.IsOpen(); }
    /// Returns whether the user's settings want it open, which a host may have refused.
    [[nodiscard]] bool WantsUnfolded();
    /// Keeps in the user's settings whether the fold is open and has the window follow by
    /// TakeScale, whose result it returns; false when the setting cannot be stored.
    bool Unfold(bool isOpen);
    /// Sets whom to ask for another size, not owned; null for nobody, which grants all. [setup]
    void SetHost(ZWindowHost* host) { mHost = host; }

    /// Sends the handler ZTIMER, field "TimerID" (int64), every period until StopTimer or until the
    /// handler is destroyed.
    TimerId StartTimer(std::int64_t microseconds, ZHandler& handler);
    /// Ignores an unknown id.
    void StopTimer(TimerId id);
    /// Starts and stops calling the view's IdleTick at each frame. The frame timer runs while there
    /// are such views and the window is shown.
    void AddIdleView(ZView* view) { mFrames.Add(view); }
    void RemoveIdleView(ZView* view) { mFrames.Remove(view); }
    /// Returns kNoTimer while the frame timer does not run.
    [[nodiscard]] TimerId GetFrameTimer() const { return mFrames.GetTimer(); }
    /// Adds a view behind those that the Tab key reaches already.
    void AddNavigableView(ZView* view) { mKeys.AddNavigable(view); }
    /// Sends all mouse events to this view, also those from outside the window; null ends that.
    void SetCapturedView(ZView* view);
    [[nodiscard]] ZView* GetCapturedView() const { return mPointer.GetCaptured(); }
    /// Called by the view that the pointer has entered.
    void SetHoverView(ZView* view) { mPointer.SetHover(view); }
    [[nodiscard]] ZView* GetHoverView() const { return mPointer.GetHover(); }
    /// Gives the keyboard to this view; the view before is told and repainted. Null for none.
    void SetFocusView(ZView* view) { mKeys.SetFocus(view); }
    [[nodiscard]] ZView* GetFocusView() const { return mKeys.GetFocus(); }
    /// Opens the context menu, if the description gives the window one, at a point of the window
    /// for a view; null for none. Nothing opens while a view holds the capture or a dialog is open.
    /// The window may be gone when the call returns.
    void ShowContextMenu(ZView* view, const ZPoint& point);
    /// Called by a view whose GetFocusRect has changed.
    void UpdateFocusRing() { mKeys.UpdateRing(); }
    /// Returns whether NativeKey would give the key to a view or open the context menu by it.
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent& event) const;
    /// Forgets a view that leaves as hover, captured, focus, idle and navigable view.
    void ForgetView(ZView* view);
    /// Registers the rectangle of a view that has a tooltip; rect is in window coordinates.
    void AddTool(ZView* view, const ZRect& rect) { mTooltip.AddTool(view, rect); }
    void RemoveTool(ZView* view) { mTooltip.RemoveTool(view); }
    /// Returns the tip that views show their values by.
    [[nodiscard]] ZValueTip& GetValueTip() { return mValueTip; }
    /// Returns null while no view has a tip.
    [[nodiscard]] ZTooltip* GetTooltip() const { return mTooltip.Get(); }

    /// Sets the document that the title names; the views learn of it by message. Null for none.
    void SetDocument(ZDocument* document);
    [[nodiscard]] ZDocument* GetDocument() const { return mDocument; }
    /// Returns the `documentchange` entry that matches; null when the window does not take the
    /// document.
    [[nodiscard]] const ZDocumentMap* FindDocumentMap(const ZDocument& document) const
    {
        return mDocumentChanges.Find(document);
    }
    [[nodiscard]] std::vector<ZWindowManager*> GetWindowManagers() const;

    [[nodiscard]] const boost::shared_ptr<ZView>& GetRootView() const { return mRootView; }
    /// Returns the title bar's text, composed by `titlestyle`.
    [[nodiscard]] const ZString& GetTitle() const { return mTitle; }
    [[nodiscard]] std::int32_t GetWidth() const { return mPlace.GetSize().x; }
    [[nodiscard]] std::int32_t GetHeight() const { return mPlace.GetSize().y; }
    [[nodiscard]] const ZPoint& GetPosition() const { return mPlace.GetPosition(); }
    [[nodiscard]] const ZPoint& GetLastMouse() const { return mLastMouse; }
    [[nodiscard]] bool IsChild() const { return mAttributes.child; }
    /// Returns whether the window is shown when it has been made for a document or by name; else it
    /// waits for Show.
    [[nodiscard]] bool IsVisibleWhenCreated() const { return mAttributes.visibleWhenCreated; }
    [[nodiscard]] bool IsModalDisabled() const { return mModalDisabled; }
    [[nodiscard]] std::int32_t GetMaxFramesPerSecond() const { return mAttributes.maxFrames; }
    /// Returns null while there is none.
    [[nodiscard]] ZNativeWindow* GetNativeWindow() const { return mNativeWindow.get(); }
    /// Returns the screen coordinates, in pixels, of a point of the window; the point itself
    /// without a window of the system.
    [[nodiscard]] ZPoint ToScreen(const ZPoint& point) const;

    void NativePaint(const ZRect& update) override;
    void NativeMouse(const ZNativeMouseEvent& event) override;
    /// Opens the context menu by its keys, moves the focus by Tab, sends keys and text to the focus
    /// view, and runs the command with the key if the view does not want it.
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
    void BuildViews(const ZXMLElement& xml);
    void MakeContextMenu(const ZXMLElement& xml);
    /// Opens the menu for the focus view or, without one, where the pointer was last.
    void ShowContextMenuByKey();

    // Messages.
    void SendToRoot(const boost::shared_ptr<const ZMessage>& message);
    void CloseByStyle();
    void TakeDocument(const ZMessage& message, const char* field);
    void LoseDocument(const boost::shared_ptr<const ZMessage>& message);
    void RouteClick(const ZMessage& message, const char* field);
    void RouteMove(const boost::shared_ptr<const ZMessage>& message);
    void HandleSized(const ZMessage& message);
    void HandleTimer(const boost::shared_ptr<const ZMessage>& message);
    void HandleQuit(const boost::shared_ptr<const ZMessage>& message);
    void SendToFocus(const boost::shared_ptr<const ZMessage>& message);
    void SendToManager(const boost::shared_ptr<const ZMessage>& message);

    // The window of the system.
    [[nodiscard]] ZNativeWindow::Settings NativeSettings(const ZWindow* parent,
                                                         ZNativeHandle nativeParent) const;
    /// Returns the scale for a new window of the system.
    [[nodiscard]] ZDeviceScale FindScale(const ZWindow* parent);
    /// Returns the window's own width and height in units with the fold open or closed.
    [[nodiscard]] ZPoint SizeWith(bool isUnfolded) const;
    /// Takes that size, and opens or closes the fold, unless it is so already.
    void TakeOwnSize(bool isUnfolded);
    /// Returns the rectangle of the window of the system in pixels.
    [[nodiscard]] ZRect GetPixelRect() const;
    /// Paints beside the picture that the window of the system shows.
    [[nodiscard]] const ZBitmap& RenderBeside(const ZDeviceScale& scale);
    [[nodiscard]] ZView* FindTopView(ZPoint point) const;
    void SizeChanged();
    void ReleaseCapture();
    void ComposeTitle();
    void MakeOffscreen();

    ZWindowAttributes mAttributes;
    ZWindowPlace mPlace;
    ZWindowScale mScales;
    ZDeviceScale mScale;                 // of the picture and the window of the system
    std::optional<ZPoint> mAskedPixels;  // while the host is asked for that size
    ZWindowFold mFold;
    ZWindowHost* mHost = nullptr;
    ZWindowModality mModality;
    ZWindowFilters mFilters;
    ZString mTitle;
    ZPoint mLastMouse;
    ZDocument* mDocument = nullptr;
    bool mModalDisabled = false;
    bool mAttached = false;
    ZDocumentMaps mDocumentChanges{"docchange list"};
    ZLockedList<std::shared_ptr<ZWindowManager>> mWindowManagers{"window managers"};
    boost::shared_ptr<ZDrawingContext> mContext;
    ZWindowPicture mPicture;
    std::unique_ptr<ZBitmap> mBeside;  // the last picture of another scale than the window's
    boost::shared_ptr<ZView> mRootView;
    ZWindowPointer mPointer;
    ZWindowKeys mKeys;
    ZWindowFrames mFrames;
    ZWindowTooltip mTooltip;
    boost::shared_ptr<ZWindowMenu> mContextMenu;  // null for none
    ZValueTip mValueTip;
    std::unique_ptr<ZNativeWindow> mNativeWindow;
};

}  // namespace orvane
