#pragma once

#include "zlib/common/ZDrawingContext.h"
#include "zlib/common/ZHandler.h"
#include "zlib/common/ZNativeWindow.h"
#include "zlib/common/ZPoint.h"
#include "zlib/common/ZRect.h"
#include "zlib/common/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZBitmap;
class ZDocument;
class ZView;

/// A window of a description: owns the root view, the drawing context that all its views share and
/// the picture they are painted into, and turns events of the system into messages. It lives
/// without a window of the system until Create, and again after that one is gone.
/// [interface thread, with the interface lock]
///
/// What views and the editor call of it.
class ZWindow : public ZHandler, private ZNativeWindowClient
{
public:
    using TimerId = std::int64_t;
    static constexpr TimerId kNoTimer = -1;

    ZWindow(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZWindow() override;

    /// Makes the window of the system inside nativeParent (or above parent's) and the offscreen
    /// picture. False, with all else as it was, where there is no display or no such parent.
    virtual bool Create(ZWindow* parent, ZNativeHandle nativeParent);
    virtual void Detach();
    virtual void Show();
    virtual void Hide();
    [[nodiscard]] virtual bool IsVisible() const;
    virtual void Invalidate(const ZRect& rect);
    void RedrawAll();
    /// Attaches the views, paints all of the window with no window of the system, and lends the
    /// picture.
    [[nodiscard]] const ZBitmap& RenderOffscreen();

    /// Calls the handler with ZTIMER, field "TimerID" (int64), every period until StopTimer.
    TimerId StartTimer(std::int64_t microseconds, ZHandler& handler);
    void StopTimer(TimerId id);
    void AddIdleView(ZView* view);
    void RemoveIdleView(ZView* view);
    void AddNavigableView(ZView* view);
    void RemoveNavigableView(ZView* view);
    /// Null for none.
    void SetCapturedView(ZView* view);
    [[nodiscard]] ZView* GetCapturedView() const;
    void SetHoverView(ZView* view);
    [[nodiscard]] ZView* GetHoverView() const;
    void SetFocusView(ZView* view);
    [[nodiscard]] ZView* GetFocusView() const;
    /// A view that dies: the window forgets it as hover, captured, focus, idle and navigable view.
    void ForgetView(ZView* view);
    /// The tip of a view with a tooltip; rect in window coordinates.
    void AddTool(ZView* view, const ZRect& rect);
    void RemoveTool(ZView* view);

    [[nodiscard]] const boost::shared_ptr<ZView>& GetRootView() const;
    [[nodiscard]] const boost::shared_ptr<ZDrawingContext>& GetContext() const;
    [[nodiscard]] ZDocument* GetDocument() const;
    [[nodiscard]] std::int32_t GetWidth() const;
    [[nodiscard]] std::int32_t GetHeight() const;
    /// Null while there is none.
    [[nodiscard]] ZNativeWindow* GetNativeWindow() const;
    /// Where a point of the window lies on the screen; the point itself without a window of the
    /// system.
    [[nodiscard]] ZPoint ToScreen(const ZPoint& point) const;
};

}  // namespace orvane
