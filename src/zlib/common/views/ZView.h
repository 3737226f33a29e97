// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZRegion.h"
#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLock.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

class ZApplication;
class ZBitmap;
class ZDocument;
class ZDrawingContext;
class ZElement;
class ZFont;
class ZOverlay;
class ZWindow;
class ZXMLElement;

/// Everything that a window shows: a rectangle with children, a background and perhaps one element
/// whose value it shows. Events reach it as messages; what HandleZMessage makes of them are the
/// operations that classes replace.
///
/// Coordinates: bounds are in the parent's, frame, points and drawing in the view's own. Children
/// are painted in order, so the last one lies on top and gets the mouse first.
///
/// A view without a parent, a window, a document or an element does all that does not need them.
/// A view that dies leaves the listeners of its document and element, the window's lists and an
/// edit that it had begun; a class that listens to more elements leaves those in its destructor.
/// [interface thread, with the interface lock]
class ZView : public ZHandler
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

    enum Align : std::int32_t
    {
        kAlignCentre = 0,
        kAlignBegin = 1,
        kAlignEnd = 2,
        kAlignStretch = 3,
    };

    /// Bits of the stretch mask: which edges of the parent the view's own keep their distance to.
    enum Stretch : std::int32_t
    {
        kKeepLeft = 1,
        kFollowRight = 2,
        kKeepTop = 4,
        kFollowBottom = 8,
        kStretchAll = 15,
    };

    enum BitmapStyle : std::int32_t
    {
        kBitmapOrigin = 0,
        kBitmapCenter = 1,
        kBitmapStretch = 2,
        kBitmapStretchWidth = 3,
        kBitmapStretchHeight = 4,
        kBitmapTile = 5,
    };

    enum FrameStyle : std::int32_t
    {
        kFrameOff = 0,
        kFrameRect = 1,
        kFrameRounded = 2,
        kFrameDebug = 3,
        kFrameOverBitmap = 4,
    };

    /// Bounds 0, 0, 1, 1.
    ZView(std::string_view name, ZLooper* looper);
    ZView(std::string_view name, const ZRect& rect, ZLooper* looper);
    /// From a `view` tag, with its subviews. The application, which is the looper, may be null:
    /// then pictures, texts by key and subviews by class are not found. Throws what the
    /// constructors of its subviews throw.
    ZView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZView() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// A tag `view` with class, name, flex, align and fill.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    /// Adds the tags that the constructor reads, with the subviews. Colours and pictures are
    /// written where they differ from the default.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Throws ZException -1 when a field is missing.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// An element that the view listens to has changed, or has just been attached: its identity,
    /// see elementIdOf. Nothing here.
    virtual void ElementChanged(std::uint64_t elementId);
    /// Paints the view and what lies in it, as far as updateRect, in the parent's coordinates,
    /// reaches. Nothing without a context that has a target.
    virtual void DrawView(const ZRect& updateRect);
    /// Ends an edit, stops listening to the element and lets it go. Classes with more elements
    /// extend it.
    virtual void DetachFromElements();
    virtual void OnAttached() {}
    virtual void OnDetached() {}
    virtual void OnDocumentChanged() {}
    virtual void OnDocumentClosed() {}
    /// After GetElement has its new value, before the view listens to it.
    virtual void OnElementAttached() {}
    virtual void OnShown() {}
    virtual void OnHidden() {}
    /// The view's own drawing, in mContext; rect is the part to draw. Nothing here.
    virtual void Draw(const ZRect& rect);
    /// After subviews and overlays, not clipped to the view. Nothing here.
    virtual void DrawOver() {}
    virtual void MouseDoubleClick(const ZPoint& point, std::uint32_t mods);
    virtual void MouseDown(const ZPoint& point, std::uint32_t mods);
    virtual void MouseUp(const ZPoint& point, std::uint32_t mods);
    /// Only while the view holds the capture.
    virtual void MouseMoved(const ZPoint& point, std::uint32_t mods);
    /// The window is about to take the capture away: what a press has begun ends with nothing done.
    /// Nothing here.
    virtual void OnCaptureLost() {}
    virtual void MouseEntered(const ZPoint& point);
    virtual void MouseLeft() {}
    /// delta is in notches, up is positive.
    virtual void MouseWheel(const ZPoint& point, std::uint32_t mods, std::int32_t axis,
                            std::int32_t delta);
    /// True when the timer was this view's.
    virtual bool OnTimer(std::int64_t timerId);
    virtual void SizeChanged() {}
    virtual void PositionChanged() {}
    virtual void ChildResized() {}
    /// Each frame of the window's timer, for a view that is animated.
    virtual void IdleTick() {}
    /// Passes the rate, in frames a second, to all children.
    virtual void SetFrameRate(float rate);
    /// In pixels with the view's font; 0 without a context.
    [[nodiscard]] virtual std::int32_t StringWidth(const ZString& text) const;
    [[nodiscard]] virtual std::int32_t StringHeight(const ZString& text) const;
    /// Paints the background; rect is the part that asks for it.
    virtual void DrawBackground(const ZRect& rect);
    [[nodiscard]] virtual ZString GetShaderName() const { return mShaderName; }
    [[nodiscard]] virtual bool WantsClickAt(const ZPoint& /*point*/) const { return false; }
    /// The view under a point of this view's coordinates, edges included, the first child first.
    /// False, with out as it was, for a point outside.
    virtual bool HitTest(ZView*& out, const ZPoint& point);
    [[nodiscard]] virtual boost::shared_ptr<ZElement> GetElement() const { return mElement; }
    /// Asks the window to repaint; nothing without a window or while hidden.
    virtual void Invalidate(std::int32_t left, std::int32_t top, std::int32_t right,
                            std::int32_t bottom);
    virtual void Invalidate();
    virtual void SetFrameOrigin(std::int32_t x, std::int32_t y);
    [[nodiscard]] virtual ZPoint GetFrameOrigin() const { return {mFrame.left, mFrame.top}; }
    /// The window tells that the keyboard is the view's, or is no more. Nothing here.
    virtual void SetFocus(bool focus);
    /// The tip for a point of the view; the window's name shows where it is empty.
    [[nodiscard]] virtual ZString GetTooltipText(const ZPoint& point);
    [[nodiscard]] virtual ZRect GetFrame() const { return mFrame; }
    /// What nothing below needs to be painted under; in the view's own coordinates.
    [[nodiscard]] virtual ZRegion GetOpaqueRegion() const { return {}; }

    // What boxes lay their views out by; the framework's other views pass it over.
    [[nodiscard]] virtual std::int32_t GetFlex() const { return mFlex; }
    virtual void SetFlex(std::int32_t flex) { mFlex = flex; }
    [[nodiscard]] virtual std::int32_t GetMinWidth() const { return mMinSize.x; }
    [[nodiscard]] virtual std::int32_t GetMinHeight() const { return mMinSize.y; }
    virtual void SetMinSize(std::int32_t width, std::int32_t height) { mMinSize = {width, height}; }
    [[nodiscard]] virtual std::int32_t GetMaxWidth() const { return mMaxSize.x; }
    [[nodiscard]] virtual std::int32_t GetMaxHeight() const { return mMaxSize.y; }
    virtual void SetMaxSize(std::int32_t width, std::int32_t height) { mMaxSize = {width, height}; }

    // The look of the frame, see FrameStyle.
    [[nodiscard]] virtual std::int32_t GetFrameStyle() const { return mFrameStyle; }
    virtual void SetFrameStyle(std::int32_t style) { mFrameStyle = style; }
    [[nodiscard]] virtual std::int32_t GetFrameRadius() const { return mFrameRadius; }
    virtual void SetFrameRadius(std::int32_t radius) { mFrameRadius = radius; }
    [[nodiscard]] virtual std::int32_t GetFrameWidth() const { return mFrameWidth; }
    virtual void SetFrameWidth(std::int32_t width) { mFrameWidth = width; }
    [[nodiscard]] virtual ZColor GetStrokeColor() const { return mStrokeColor; }
    virtual void SetStrokeColor(const ZColor& color) { mStrokeColor = color; }
    [[nodiscard]] virtual ZColor GetFillColor() const { return mFillColor; }
    virtual void SetFillColor(const ZColor& color) { mFillColor = color; }

    virtual void SetHorizontalScale(float scale);
    virtual void SetVerticalScale(float scale);
    [[nodiscard]] virtual float GetHorizontalScale() const { return mHorizontalScale; }
    [[nodiscard]] virtual float GetVerticalScale() const { return mVerticalScale; }
    /// How a box places the view, see Align; classes that show a text place that by it.
    [[nodiscard]] virtual std::int32_t GetAlign() const { return mAlign; }
    virtual void SetAlign(std::int32_t align) { mAlign = align; }

    /// Null, and one that is there already, change nothing.
    virtual void AddOverlay(const boost::shared_ptr<ZOverlay>& overlay);
    virtual void RemoveOverlay(const boost::shared_ptr<ZOverlay>& overlay);
    [[nodiscard]] virtual bool HasTooltip() const { return mHasTooltip; }

    // What the next drawing operations use; nothing is repainted by itself here.
    virtual void SetPenColor(const ZColor& color) { mPenColor = color; }
    [[nodiscard]] const ZColor& GetPenColor() const { return mPenColor; }
    void SetBrushColor(const ZColor& color) { mBrushColor = color; }
    [[nodiscard]] const ZColor& GetBrushColor() const { return mBrushColor; }
    /// In pixels.
    void SetPenWidth(std::int32_t width) { mPenWidth = width; }
    [[nodiscard]] std::int32_t GetPenWidth() const { return mPenWidth; }
    virtual void SetFont(const boost::shared_ptr<ZFont>& font) { mFont = font; }
    [[nodiscard]] const boost::shared_ptr<ZFont>& GetFont() const { return mFont; }

    /// Nothing when the child has a parent already, or is none.
    void AddSubview(const boost::shared_ptr<ZView>& view, bool atFront);
    /// Nothing when it is no child of this view. Out of the tree the view hears of no document's
    /// end any more, so it lets its document go, too.
    void RemoveSubview(const boost::shared_ptr<ZView>& view);
    /// Null when there is none at that index.
    [[nodiscard]] boost::shared_ptr<ZView> SubviewAt(std::int32_t index) const;
    /// -1 when it is none of the children.
    [[nodiscard]] std::int32_t IndexOfSubview(const ZView* view) const;
    [[nodiscard]] std::int32_t GetSubviewCount() const;
    /// The first of that name below this view, depth first; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZView> FindSubview(std::string_view name) const;
    /// The visible child that lies on top at a point of this view's coordinates, edges included;
    /// null when there is none.
    [[nodiscard]] boost::shared_ptr<ZView> FindSubviewAt(const ZPoint& point) const;
    void SendToSubviews(const boost::shared_ptr<const ZMessage>& message);
    void Broadcast(std::int32_t messageId);
    void Show();
    void Hide();
    [[nodiscard]] bool IsVisible() const { return mVisible; }
    /// An animated view is polled by IdleTick and does not listen to its element.
    void SetAnimated(bool animated);
    [[nodiscard]] bool IsAnimated() const { return mAnimated; }
    /// In the place of the one before; null for none.
    void AttachToElement(const boost::shared_ptr<ZElement>& element);
    /// With toWindow the window captures the mouse for this view, and where it has an element the
    /// host learns that an edit of it begins or ends.
    void SetMouseCapture(bool capture, bool toWindow);
    [[nodiscard]] bool HasMouseCapture() const { return mMouseCaptured; }
    void Resize(std::int32_t width, std::int32_t height);
    void MoveTo(const ZPoint& point);
    /// As Resize, and nobody hears of it.
    void SetBoundsSize(std::int32_t width, std::int32_t height);
    /// All views below this one, and not this one.
    void MarkSubtreeDirty();
    [[nodiscard]] bool IsDirty() const { return mDirty; }
    /// Gives the context to the whole tree below, too; null takes it away.
    void SetContext(const boost::shared_ptr<ZDrawingContext>& context);
    [[nodiscard]] const boost::shared_ptr<ZDrawingContext>& GetContext() const { return mContext; }
    [[nodiscard]] const ZRect& GetBounds() const { return mBounds; }
    /// Where 0, 0 of this view lies in the window, as computed last.
    [[nodiscard]] const ZPoint& GetWindowOrigin() const { return mWindowOrigin; }
    [[nodiscard]] ZView* GetParent() const { return mParent; }
    [[nodiscard]] ZWindow* GetWindow() const { return mWindow; }
    [[nodiscard]] ZDocument* GetDocument() const { return mDocument; }
    [[nodiscard]] const std::string& GetTargetName() const { return mTargetName; }
    void SetTargetName(std::string_view name) { mTargetName = name; }
    [[nodiscard]] std::int32_t GetStretchMask() const { return mStretchMask; }
    void SetStretchMask(std::int32_t mask) { mStretchMask = mask; }
    /// Whether the window is to reach the view by the keyboard; counts from the next attachment on.
    void SetNavigable(bool navigable);
    void SetTooltipText(const ZString& text) { mTooltipText = text; }
    /// Where the mouse was last seen over the view.
    [[nodiscard]] const ZPoint& GetLastMove() const { return mLastMove; }
    /// Makes the views under the `subviews` tag of xml by their classes, if there is one; a class
    /// that nobody knows becomes a label with its name.
    void LayoutSubviews(const ZXMLElement& xml);

protected:
    /// Bits of the view's flags.
    static constexpr std::uint32_t kNavigable = 1;

    /// The element of that name in the document; null without one.
    [[nodiscard]] boost::shared_ptr<ZElement> FindElement(std::string_view name) const;
    /// May be null.
    [[nodiscard]] ZApplication* GetApplication();

    // Drawing with the view's own pen, brush and font, into mContext; nothing without one.
    void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    void DrawLine(const ZPoint& from, const ZPoint& to);
    void DrawRect(const ZRect& rect);
    void FillRect(const ZRect& rect);
    /// The outline inside the rectangle.
    void DrawEllipse(const ZRect& rect);
    /// As ZDrawingContext::AddPathArc.
    void DrawArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                 std::int32_t sweepDegrees);
    /// As ZDrawingContext::DrawString: only horizontalAlign has an effect.
    void DrawString(const ZString& text, const ZRect& rect, std::int32_t verticalAlign,
                    std::int32_t horizontalAlign, std::int32_t flags);
    void DrawBitmap(ZBitmap& bitmap, std::int32_t x, std::int32_t y);
    /// The part source of the bitmap, scaled to target.
    void DrawBitmapPart(ZBitmap& bitmap, const ZRect& source, const ZRect& target);

    // Fields in the order of the class's record.
    ZRect mBounds{0, 0, 1, 1};
    ZRect mFrame{0, 0, 1, 1};
    ZPoint mWindowOrigin;
    std::uint32_t mViewFlags = 0;
    std::int32_t mFlex = 0;
    ZPoint mMinSize{1, 1};
    ZPoint mMaxSize{10000, 10000};
    bool mFill = false;
    std::int32_t mStretchMask = 0;
    ZRect mMargins;  // distances of the four edges to the parent's
    bool mVisible = true;
    std::vector<boost::shared_ptr<ZView>> mSubviews;
    mutable ZLock mChildViewLock{"childviewlock"};
    ZView* mParent = nullptr;
    ZWindow* mWindow = nullptr;
    ZDocument* mDocument = nullptr;
    std::weak_ptr<const void> mDocumentLife;
    std::string mTargetName;
    boost::shared_ptr<ZDrawingContext> mContext;
    ZColor mPenColor{0, 0, 0, 255};
    ZColor mBrushColor{0, 0, 0, 255};
    boost::shared_ptr<ZFont> mFont;
    std::int32_t mPenWidth = 1;
    bool mMouseCaptured = false;
    bool mHasBackground = false;
    ZColor mBackgroundColor{255, 255, 255, 255};
    std::unique_ptr<ZBitmap> mBackgroundBitmap;
    std::int32_t mBitmapStyle = kBitmapOrigin;
    ZString mShaderName;
    std::int32_t mFrameStyle = kFrameOff;
    std::int32_t mFrameRadius = 10;
    std::int32_t mFrameWidth = 1;
    ZColor mStrokeColor{0, 255, 0, 255};
    ZColor mFillColor{0, 255, 0, 255};
    float mHorizontalScale = 1.0f;
    float mVerticalScale = 1.0f;
    std::vector<boost::shared_ptr<ZOverlay>> mOverlays;
    ZString mTooltipText;
    ZPoint mLastMove;
    bool mAnimated = false;
    bool mHasTooltip = false;
    boost::shared_ptr<ZElement> mElement;
    bool mDoDefaultDraw = false;
    bool mDirty = true;

private:
    using Children = std::vector<boost::shared_ptr<ZView>>;

    [[nodiscard]] Children CopyChildren() const;
    [[nodiscard]] static ZPoint ToChild(const ZView& child, const ZPoint& point);
    [[nodiscard]] ZPoint OriginInParent() const;
    void TakeIn(ZView& child);
    void LetGo(ZView& child);
    void ClearSubviews();

    void HandleMouseDown(const ZMessage& message);
    void HandleMouseDoubleClick(const ZMessage& message);
    void HandleMouseUp(const ZMessage& message);
    void HandleMouseMoved(const ZMessage& message);
    void HandleMouseWheel(const ZMessage& message);
    void HandleMouseEntered(const ZMessage& message);
    void HandleTimer(const boost::shared_ptr<const ZMessage>& message);
    void HandleChildResized(const boost::shared_ptr<const ZMessage>& message);
    void HandleResize(const ZMessage& message);
    void HandleAttached(const boost::shared_ptr<const ZMessage>& message);
    void HandleDetached(const boost::shared_ptr<const ZMessage>& message);
    void HandleDocument(const boost::shared_ptr<const ZMessage>& message);
    void StopObservingDocument();
    void HandleDocumentClosed(const boost::shared_ptr<const ZMessage>& message);

    void FillParent();
    void RecordMargins();
    void UpdateWindowOrigin();
    void SetUpTooltip();
    void LeaveWindow();
    void SetDocument(ZDocument* document);
    void BeginEdit();
    void EndEdit();
    void InvalidatePart(const ZRect& rect);

    void ReadTarget(const ZXMLElement& xml);
    void ReadLayout(const ZXMLElement& xml);
    void ReadBounds(const ZXMLElement& xml);
    void ReadScale(const ZXMLElement& xml);
    void ReadPen(const ZXMLElement& xml);
    void ReadBackgroundColor(const ZXMLElement& xml);
    void ReadBackgroundBitmap(const ZXMLElement& xml, std::string_view tag, bool background);
    void ReadFrame(const ZXMLElement& xml);
    void ReadTooltips(const ZXMLElement& xml);
    void AddSubviewFrom(const boost::shared_ptr<ZXMLElement>& xml);
    void WriteLayout(ZXMLElement& xml) const;
    void WriteBackground(ZXMLElement& xml) const;
    void WriteFrame(ZXMLElement& xml) const;

    [[nodiscard]] bool CanDraw() const;
    void DrawOwn(const ZRect& rect);
    void MarkDirtyWithin(const ZRect& rect);
    void MakeShadedBitmap();
    void DrawBackgroundBitmap(const ZRect& rect);
    void TileBitmap();
    void RepairUnder(const ZView& view, const ZPoint& offset, const ZRect& rect);
    void DrawFrame(const ZRect& rect);
    void UsePen();

    std::int32_t mAlign = kAlignCentre;
    // What the host has been told that the view edits.
    boost::shared_ptr<ZElement> mEditedElement;
};

}  // namespace orvane
