#pragma once

#include "zlib/common/ZColor.h"
#include "zlib/common/ZDrawingContext.h"
#include "zlib/common/ZHandler.h"
#include "zlib/common/ZLock.h"
#include "zlib/common/ZPoint.h"
#include "zlib/common/ZRect.h"
#include "zlib/common/ZRegion.h"
#include "zlib/common/ZString.h"

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
class ZElement;
class ZFont;
class ZWindow;
class ZXMLElement;

/// Draws over a view, after what lies in it.
class ZOverlay
{
public:
    virtual ~ZOverlay() = default;

    virtual void DrawOverlay(ZDrawingContext& context) = 0;
};

/// Everything that a window shows: a rectangle with children, a background and perhaps one element
/// whose value it shows. Events reach it as messages; what HandleZMessage makes of them are the
/// operations that classes replace.
///
/// Coordinates: bounds are in the parent's, frame, points and drawing in the view's own. Children
/// are painted in order, so the last one lies on top and gets the mouse first.
///
/// A view without a parent, a window, a document or an element does all that does not need them.
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
    /// then pictures, texts by key and subviews by class are not found.
    ZView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZView() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Throws ZException -1 when a field is missing.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// An element that the view listens to has changed, or has just been attached: its identity,
    /// see elementIdOf. Nothing here.
    virtual void ElementChanged(std::uint64_t elementId);
    /// Paints the view and what lies in it, as far as updateRect, in the parent's coordinates,
    /// reaches.
    virtual void DrawView(const ZRect& updateRect);
    /// Stops listening to the element and lets it go. Classes with more elements extend it.
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
    /// After subviews and overlays. Nothing here.
    virtual void DrawOver() {}
    virtual void MouseDoubleClick(const ZPoint& point, std::uint32_t mods);
    virtual void MouseDown(const ZPoint& point, std::uint32_t mods);
    virtual void MouseUp(const ZPoint& point, std::uint32_t mods);
    /// Only while the view holds the capture.
    virtual void MouseMoved(const ZPoint& point, std::uint32_t mods);
    virtual void MouseEntered(const ZPoint& point);
    virtual void MouseLeft() {}
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
    /// In pixels with the view's font; 0 without a context that has a target.
    [[nodiscard]] virtual std::int32_t StringWidth(const ZString& text) const;
    [[nodiscard]] virtual std::int32_t StringHeight(const ZString& text) const;
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
    virtual void SetFocus(bool focus);
    [[nodiscard]] virtual ZString GetTooltipText(const ZPoint& point);
    [[nodiscard]] virtual ZRect GetFrame() const { return mFrame; }
    /// What nothing below needs to be painted under; in the view's own coordinates.
    [[nodiscard]] virtual ZRegion GetOpaqueRegion() const { return {}; }
    // Box layout, frame style and scales follow.
    virtual void AddOverlay(const boost::shared_ptr<ZOverlay>& overlay);
    virtual void RemoveOverlay(const boost::shared_ptr<ZOverlay>& overlay);
    [[nodiscard]] virtual bool HasTooltip() const { return mHasTooltip; }

    /// Nothing when the child has a parent already.
    void AddSubview(const boost::shared_ptr<ZView>& view, bool atFront);
    void RemoveSubview(const boost::shared_ptr<ZView>& view);
    [[nodiscard]] boost::shared_ptr<ZView> SubviewAt(std::int32_t index) const;
    /// -1 when it is none of the children.
    [[nodiscard]] std::int32_t IndexOfSubview(const ZView* view) const;
    [[nodiscard]] std::int32_t GetSubviewCount() const;
    /// The first of that name below this view, depth first; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZView> FindSubview(std::string_view name) const;
    void SendToSubviews(const boost::shared_ptr<const ZMessage>& message);
    void Broadcast(std::int32_t messageId);
    void Show();
    void Hide();
    [[nodiscard]] bool IsVisible() const { return mVisible; }
    void SetAnimated(bool animated);
    [[nodiscard]] bool IsAnimated() const { return mAnimated; }
    void AttachToElement(const boost::shared_ptr<ZElement>& element);
    /// With toWindow the window captures the mouse for this view, and where it has an element the
    /// host learns that an edit of it begins or ends.
    void SetMouseCapture(bool capture, bool toWindow);
    [[nodiscard]] bool HasMouseCapture() const { return mMouseCaptured; }
    void Resize(std::int32_t width, std::int32_t height);
    void MoveTo(const ZPoint& point);
    void SetBoundsSize(std::int32_t width, std::int32_t height);
    void MarkSubtreeDirty();
    [[nodiscard]] bool IsDirty() const { return mDirty; }
    /// Gives the context to the whole tree below, too; null takes it away.
    void SetContext(const boost::shared_ptr<ZDrawingContext>& context);
    [[nodiscard]] const boost::shared_ptr<ZDrawingContext>& GetContext() const { return mContext; }
    [[nodiscard]] const ZRect& GetBounds() const { return mBounds; }
    [[nodiscard]] const ZPoint& GetWindowOrigin() const { return mWindowOrigin; }
    [[nodiscard]] ZView* GetParent() const { return mParent; }
    [[nodiscard]] ZWindow* GetWindow() const { return mWindow; }
    [[nodiscard]] ZDocument* GetDocument() const { return mDocument; }
    [[nodiscard]] std::int32_t GetStretchMask() const { return mStretchMask; }
    void SetStretchMask(std::int32_t mask) { mStretchMask = mask; }

protected:
    /// Makes the views under a `subviews` tag by their classes; a class that nobody knows becomes a
    /// label with its name.
    void LayoutSubviews(const ZXMLElement& xml);
    /// The element of that name in the document; null without one.
    [[nodiscard]] boost::shared_ptr<ZElement> FindElement(std::string_view name) const;
    [[nodiscard]] ZApplication* GetApplication() const;

    // Drawing with the view's own pen, brush and font, into mContext.
    void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    void DrawLine(const ZPoint& from, const ZPoint& to);
    void DrawRect(const ZRect& rect);
    void FillRect(const ZRect& rect);
    void DrawString(const ZString& text, const ZRect& rect, std::int32_t verticalAlign,
                    std::int32_t horizontalAlign, std::int32_t flags);
    void DrawBitmap(ZBitmap& bitmap, std::int32_t x, std::int32_t y);
    // Ellipse, arc and parts of bitmaps follow.

    // Fields in the order of the class's record.
    ZRect mBounds{0, 0, 1, 1};
    ZRect mFrame{0, 0, 1, 1};
    ZPoint mWindowOrigin;
    std::uint32_t mViewFlags = 0;
    std::int32_t mStretchMask = 0;
    bool mVisible = true;
    std::vector<boost::shared_ptr<ZView>> mSubviews;
    ZView* mParent = nullptr;
    ZWindow* mWindow = nullptr;
    ZDocument* mDocument = nullptr;
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
    ZString mShaderName;
    ZString mTooltipText;
    bool mAnimated = false;
    bool mHasTooltip = false;
    boost::shared_ptr<ZElement> mElement;
    bool mDirty = true;
};

}  // namespace orvane
