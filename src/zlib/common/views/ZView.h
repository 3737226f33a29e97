// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZRegion.h"
#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZDocumentObservation.h"
#include "zlib/common/views/ZEditGesture.h"
#include "zlib/common/views/ZOverlays.h"
#include "zlib/common/views/ZSubviews.h"
#include "zlib/common/views/ZViewBackground.h"
#include "zlib/common/views/ZViewLayout.h"
#include "zlib/common/views/ZViewPainter.h"
#include "zlib/common/views/ZViewTooltip.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane
{

class ZApplication;
class ZDocument;
class ZDrawingContext;
class ZElement;
class ZOverlay;
class ZWindow;
class ZXMLElement;
struct ZNativeKeyEvent;

/// Base of everything that a window shows: a rectangle with children, a background and optionally
/// one element whose value it shows. Events arrive as messages; HandleZMessage turns them into the
/// virtual operations that subclasses replace.
///
/// Bounds are in the parent's coordinates; frame, points and drawing are in the view's own.
/// Children are painted in order, so the last one lies on top and gets the mouse first.
///
/// A view works without a parent, a window, a document or an element. When it is destroyed, it
/// leaves the observers of its document and its element and the lists of its window, and ends its
/// edit; a subclass that observes more elements leaves them in its own destructor.
/// [interface thread, with the interface lock]
class ZView : public ZHandler, public ZViewPainter
{
public:
    /// Bits of "MouseMods".
    enum MouseMods : std::uint32_t
    {
        kMouseButton = 1,  // always set, whichever the button
        kMouseShift = 2,
        kMouseAlt = 8,
        kMouseControl = 0x10,
    };
    using enum ZViewLayout::Align;

    /// Has bounds 0, 0, 1, 1.
    ZView(std::string_view name, ZLooper* looper);
    ZView(std::string_view name, const ZRect& rect, ZLooper* looper);
    /// Builds the view and its subviews from a `view` tag. The application, which is the looper,
    /// may be null: then bitmaps, texts by key and subviews by class are not found. Throws what the
    /// constructors of the subviews throw.
    ZView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZView() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Returns a tag `view` with class, name, flex, align and fill.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    /// Adds the tags that the constructor reads, and the subviews.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Throws ZException kGeneral when a field is missing.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Called when an element that the view observes has changed or has just been attached;
    /// elementId is its identity, see elementIdOf.
    virtual void ElementChanged(std::uint64_t /*elementId*/) {}
    /// Paints the view and its subviews as far as they lie in updateRect, which is in the parent's
    /// coordinates. Does nothing without a context that has a target.
    virtual void DrawView(const ZRect& updateRect);
    /// Ends an edit, stops observing the element and releases it. Subclasses with more elements
    /// extend it.
    virtual void DetachFromElements();
    virtual void OnAttached() {}
    virtual void OnDetached() {}
    virtual void OnDocumentChanged() {}
    virtual void OnDocumentClosed() {}
    /// Called when GetElement has its new value and the view does not observe it yet.
    virtual void OnElementAttached() {}
    virtual void OnShown() {}
    virtual void OnHidden() {}
    /// Draws the view itself into mContext; rect is the part to draw.
    virtual void Draw(const ZRect& /*rect*/) {}
    /// Draws after subviews and overlays, without a clip to the view.
    virtual void DrawOver() {}
    virtual void MouseDoubleClick(const ZPoint& /*point*/, std::uint32_t /*mods*/) {}
    virtual void MouseDown(const ZPoint& /*point*/, std::uint32_t /*mods*/) {}
    virtual void MouseUp(const ZPoint& /*point*/, std::uint32_t /*mods*/) {}
    /// Called only while the view holds the capture.
    virtual void MouseMoved(const ZPoint& /*point*/, std::uint32_t /*mods*/) {}
    /// Called before the window takes the capture away: what the press has begun is given up.
    virtual void OnCaptureLost() {}
    virtual void MouseEntered(const ZPoint& /*point*/) {}
    virtual void MouseLeft() {}
    /// delta is in notches, positive for up; axis is 1 for vertical.
    virtual void MouseWheel(const ZPoint& /*point*/, std::uint32_t /*mods*/, std::int32_t /*axis*/,
                            std::int32_t /*delta*/)
    {
    }
    /// Returns true when the timer belongs to this view and has been handled.
    virtual bool OnTimer(std::int64_t /*timerId*/) { return false; }
    virtual void SizeChanged() {}
    virtual void PositionChanged() {}
    virtual void ChildResized() {}
    /// Called at each frame of the window's timer for a view that is animated.
    virtual void IdleTick() {}
    /// Passes the rate, in frames a second, to all children.
    virtual void SetFrameRate(float rate) { mSubviews.SetFrameRate(rate); }
    /// Paints the background; rect is the part that needs it.
    virtual void DrawBackground(const ZRect& rect);
    /// Returns the shader that makes the background's bitmap; empty for none.
    [[nodiscard]] virtual ZString GetShaderName() const { return mBackground.GetShaderName(); }
    [[nodiscard]] virtual bool WantsClickAt(const ZPoint& /*point*/) const { return false; }
    /// Finds the view at a point of this view's coordinates, edges included; of overlapping
    /// children it takes the first. False, with out unchanged, for a point outside the frame.
    virtual bool HitTest(ZView*& out, const ZPoint& point);
    [[nodiscard]] virtual boost::shared_ptr<ZElement> GetElement() const { return mElement; }
    /// Marks the view dirty and asks the window to repaint the rectangle. Does nothing without a
    /// window or while the view is hidden.
    virtual void Invalidate(std::int32_t left, std::int32_t top, std::int32_t right,
                            std::int32_t bottom);
    virtual void Invalidate() { InvalidatePart(mFrame); }
    virtual void SetFrameOrigin(std::int32_t x, std::int32_t y);
    [[nodiscard]] virtual ZPoint GetFrameOrigin() const { return {mFrame.left, mFrame.top}; }
    /// Called by the window when the view has got the keyboard, or has lost it.
    virtual void SetFocus(bool /*focus*/) {}
    /// Returns whether the Tab key stops at the view, if it is navigable and visible.
    [[nodiscard]] virtual bool TakesFocus() const { return true; }
    /// Returns whether the view does something with a key while it has the focus. Keys that it does
    /// not want stay with the host.
    [[nodiscard]] virtual bool WantsKey(const ZNativeKeyEvent& /*key*/) const { return false; }
    /// Called for each key that goes down while the view has the focus. What the key types comes by
    /// ZTEXTINPUT, so the text is empty here. The view may be gone when the call returns.
    virtual void KeyDown(const ZNativeKeyEvent& /*key*/) {}
    /// Returns the part of the view, in its own coordinates, that the focus ring is drawn around.
    [[nodiscard]] virtual ZRect GetFocusRect() const { return mFrame; }
    /// Returns the tooltip for a point of the view; for an empty text the window's name is shown.
    [[nodiscard]] virtual ZString GetTooltipText(const ZPoint& /*point*/) { return mTooltip.text; }
    [[nodiscard]] virtual ZRect GetFrame() const { return mFrame; }
    /// Returns the region, in the view's own coordinates, under which the parent need not paint.
    [[nodiscard]] virtual ZRegion GetOpaqueRegion() const { return {}; }

    // What boxes lay their views out by; see ZViewLayout.
    [[nodiscard]] virtual std::int32_t GetFlex() const { return mLayout.flex; }
    virtual void SetFlex(std::int32_t flex) { mLayout.flex = flex; }
    [[nodiscard]] virtual std::int32_t GetMinWidth() const { return mLayout.minSize.x; }
    [[nodiscard]] virtual std::int32_t GetMinHeight() const { return mLayout.minSize.y; }
    virtual void SetMinSize(std::int32_t width, std::int32_t height)
    {
        mLayout.minSize = {width, height};
    }
    [[nodiscard]] virtual std::int32_t GetMaxWidth() const { return mLayout.maxSize.x; }
    [[nodiscard]] virtual std::int32_t GetMaxHeight() const { return mLayout.maxSize.y; }
    virtual void SetMaxSize(std::int32_t width, std::int32_t height)
    {
        mLayout.maxSize = {width, height};
    }

    // The frame of the background; see ZViewBackground.
    [[nodiscard]] virtual std::int32_t GetFrameStyle() const { return Frame().style; }
    virtual void SetFrameStyle(std::int32_t style) { Frame().style = style; }
    [[nodiscard]] virtual std::int32_t GetFrameRadius() const { return Frame().radius; }
    virtual void SetFrameRadius(std::int32_t radius) { Frame().radius = radius; }
    [[nodiscard]] virtual std::int32_t GetFrameWidth() const { return Frame().width; }
    virtual void SetFrameWidth(std::int32_t width) { Frame().width = width; }
    [[nodiscard]] virtual ZColor GetStrokeColor() const { return Frame().strokeColor; }
    virtual void SetStrokeColor(const ZColor& color) { Frame().strokeColor = color; }
    [[nodiscard]] virtual ZColor GetFillColor() const { return Frame().fillColor; }
    virtual void SetFillColor(const ZColor& color) { Frame().fillColor = color; }

    virtual void SetHorizontalScale(float scale);
    virtual void SetVerticalScale(float scale);
    [[nodiscard]] virtual float GetHorizontalScale() const { return mHorizontalScale; }
    [[nodiscard]] virtual float GetVerticalScale() const { return mVerticalScale; }
    /// How a box places the view, see ZViewLayout::Align; classes that show a text place it by
    /// this.
    [[nodiscard]] virtual std::int32_t GetAlign() const { return mLayout.align; }
    virtual void SetAlign(std::int32_t align) { mLayout.align = align; }

    /// Ignores null and an overlay that is there already.
    virtual void AddOverlay(const boost::shared_ptr<ZOverlay>& overlay);
    virtual void RemoveOverlay(const boost::shared_ptr<ZOverlay>& overlay);
    [[nodiscard]] virtual bool HasTooltip() const { return mTooltip.exists; }

    /// Takes the view as a child, in front of the others or behind them, and gives it this view's
    /// context, window and document. Ignores null and a view that has a parent.
    void AddSubview(const boost::shared_ptr<ZView>& view, bool atFront);
    /// Releases a child: it leaves its window, its context and its document. Ignores a view that is
    /// not a child of this one.
    void RemoveSubview(const boost::shared_ptr<ZView>& view);
    /// Returns null when there is no child at that index.
    [[nodiscard]] boost::shared_ptr<ZView> SubviewAt(std::int32_t index) const
    {
        return mSubviews.At(index);
    }
    /// Returns -1 when the view is not a child of this one.
    [[nodiscard]] std::int32_t IndexOfSubview(const ZView* view) const
    {
        return mSubviews.IndexOf(view);
    }
    /// Returns the first view of that name below this one, depth first; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZView> FindSubview(std::string_view name) const
    {
        return mSubviews.Find(name);
    }
    /// Returns the visible child on top at a point of this view's coordinates, edges included; null
    /// when there is none.
    [[nodiscard]] boost::shared_ptr<ZView> FindSubviewAt(const ZPoint& point) const
    {
        return mSubviews.FindTop(point);
    }
    [[nodiscard]] const ZSubviews& GetSubviews() const { return mSubviews; }
    void SendToSubviews(const boost::shared_ptr<const ZMessage>& message)
    {
        mSubviews.Send(message);
    }
    void Broadcast(std::int32_t messageId);
    void Show();
    void Hide();
    [[nodiscard]] bool IsVisible() const { return mVisible; }
    /// An animated view is called by IdleTick at each frame and does not observe its element.
    void SetAnimated(bool animated);
    [[nodiscard]] bool IsAnimated() const { return mAnimated; }
    /// Replaces the element; null leaves none.
    void AttachToElement(const boost::shared_ptr<ZElement>& element);
    /// With toWindow the window sends all mouse events to this view, and the host is told that an
    /// edit of the view's element begins or ends.
    void SetMouseCapture(bool capture, bool toWindow);
    [[nodiscard]] bool HasMouseCapture() const { return mMouseCaptured; }
    void Resize(std::int32_t width, std::int32_t height);
    void MoveTo(const ZPoint& point);
    /// As Resize, but neither the children nor SizeChanged are called.
    void SetBoundsSize(std::int32_t width, std::int32_t height);
    /// Marks all views below this one dirty, but not this one.
    void MarkSubtreeDirty();
    /// Marks this view dirty, and the views below it where they lie in the rectangle.
    void MarkDirtyWithin(const ZRect& rect);
    [[nodiscard]] bool IsDirty() const { return mDirty; }
    [[nodiscard]] bool PaintsBackground() const { return mBackground.IsPainted(); }
    /// Gives the context to this view and the tree below it; null takes it away.
    void SetContext(const boost::shared_ptr<ZDrawingContext>& context);
    [[nodiscard]] const ZRect& GetBounds() const { return mBounds; }
    /// Returns the parent's coordinates of the view's point 0, 0.
    [[nodiscard]] ZPoint GetOriginInParent() const
    {
        return {mBounds.left - mFrame.left, mBounds.top - mFrame.top};
    }
    /// Returns the window coordinates of the view's point 0, 0, as computed last.
    [[nodiscard]] const ZPoint& GetWindowOrigin() const { return mWindowOrigin; }
    [[nodiscard]] ZWindow* GetWindow() const { return mWindow; }
    [[nodiscard]] ZDocument* GetDocument() const { return mDocument; }
    void SetTargetName(std::string_view name) { mTargetName = name; }
    /// Sets the bits of ZViewLayout::Stretch.
    void SetStretchMask(std::int32_t mask) { mLayout.SetStretchMask(mask); }
    /// Decides whether the Tab key reaches the view; takes effect when it is attached next.
    void SetNavigable(bool navigable) { mNavigable = navigable; }
    void SetTooltipText(const ZString& text) { mTooltip.text = text; }
    /// Makes the views under the `subviews` tag of xml, if there is one, by their classes; a class
    /// that the registry does not know becomes a label with the class's name.
    void LayoutSubviews(const ZXMLElement& xml);

protected:
    /// Returns the document's element of that name; null without one.
    [[nodiscard]] boost::shared_ptr<ZElement> FindElement(std::string_view name) const;
    /// May be null.
    [[nodiscard]] ZApplication* GetApplication() { return GetApp(); }
    [[nodiscard]] const ZViewBackground& GetBackground() const { return mBackground; }
    [[nodiscard]] ZViewBackground& GetBackground() { return mBackground; }

    ZRect mBounds{0, 0, 1, 1};
    ZRect mFrame{0, 0, 1, 1};
    ZPoint mWindowOrigin;
    bool mVisible = true;
    ZWindow* mWindow = nullptr;
    ZDocument* mDocument = nullptr;
    bool mMouseCaptured = false;
    float mHorizontalScale = 1.0f;
    float mVerticalScale = 1.0f;
    ZPoint mLastMove;  // where the pointer was last seen over the view
    boost::shared_ptr<ZElement> mElement;
    bool mDoDefaultDraw = false;  // the attribute DoDefaultDraw, for subclasses
    bool mDirty = true;           // Draw runs at the next paint

private:
    // XML.
    void ReadBounds(const ZXMLElement& xml);

    // Messages.
    /// Handles what reaches a view with all others of its window; others go to the base.
    void HandleTreeMessage(const boost::shared_ptr<const ZMessage>& message);
    void HandleTimer(const boost::shared_ptr<const ZMessage>& message);
    void HandleChildResized(const boost::shared_ptr<const ZMessage>& message);
    void HandleResize(const ZMessage& message);
    void HandleAttached(const boost::shared_ptr<const ZMessage>& message);
    void HandleDetached(const boost::shared_ptr<const ZMessage>& message);
    void HandleDocument(const boost::shared_ptr<const ZMessage>& message);
    void HandleDocumentClosed(const boost::shared_ptr<const ZMessage>& message);

    // Tree, window, document.
    void TakeIn(ZView& child);
    void LetGo(ZView& child);
    void ClearSubviews();
    void LeaveWindow();
    void RecordMargins();
    void UpdateWindowOrigin();
    void SetUpTooltip();
    void SetDocument(ZDocument* document);

    // Painting.
    [[nodiscard]] bool CanDraw() const;
    void DrawOwn(const ZRect& rect);
    void InvalidatePart(const ZRect& rect)
    {
        Invalidate(rect.left, rect.top, rect.right, rect.bottom);
    }
    [[nodiscard]] bool RepairsUnderChildren() const { return !mDirty && mBackground.CanRepair(); }
    [[nodiscard]] const ZViewBackground::Frame& Frame() const { return mBackground.GetFrame(); }
    [[nodiscard]] ZViewBackground::Frame& Frame() { return mBackground.GetFrame(); }

    ZViewLayout mLayout;
    bool mNavigable = false;
    ZSubviews mSubviews;
    ZView* mParent = nullptr;
    std::string mTargetName;  // the element to attach to; empty for none
    ZDocumentObservation mDocumentObservation;
    ZViewBackground mBackground;
    ZOverlays mOverlays;
    ZViewTooltip mTooltip;
    bool mAnimated = false;
    ZEditGesture mEdit;  // the drag that the host has been told of
};

}  // namespace orvane
