// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/XmlOf.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

/// Fills itself with its brush and writes what happens to it as "name event" into a log that all
/// test views share.
struct TestView : ZView
{
    using Log = std::vector<std::string>;
    using ZView::ZView;

    /// Returns and empties the log.
    static Log TakeLog() { return std::exchange(log, {}); }

    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        messages.push_back(message);
        ZView::HandleZMessage(message);
    }
    void Draw(const ZRect& rect) override
    {
        Add("draw", rect.left, rect.top);
        FillRect(rect);
    }
    void DrawOver() override { Add("over"); }
    void IdleTick() override { Add("tick"); }
    void SetFrameRate(float rate) override { Add("rate " + std::to_string(std::lround(rate))); }
    void SetFocus(bool focus) override { Add(focus ? "focus" : "blur"); }
    void MouseDoubleClick(const ZPoint& at, std::uint32_t) override { Add("double", at.x, at.y); }
    void MouseDown(const ZPoint& at, std::uint32_t mods) override
    {
        Add("down" + std::to_string(mods), at.x, at.y);
    }
    void MouseUp(const ZPoint& at, std::uint32_t) override { Add("up", at.x, at.y); }
    void MouseMoved(const ZPoint& at, std::uint32_t) override { Add("moved", at.x, at.y); }
    void MouseEntered(const ZPoint& at) override { Add("entered", at.x, at.y); }
    void MouseLeft() override { Add("left"); }
    void MouseWheel(const ZPoint& at, std::uint32_t, std::int32_t axis, std::int32_t delta) override
    {
        Add("wheel" + std::to_string(axis) + std::to_string(delta), at.x, at.y);
    }
    bool OnTimer(std::int64_t) override
    {
        Add("timer");
        return takesTimers;
    }
    void ElementChanged(std::uint64_t) override { Add("changed"); }
    void OnAttached() override { Add("attached"); }
    void OnDetached() override { Add("detached"); }
    void OnDocumentChanged() override { Add(mElement ? "bound" : "unbound"); }
    void OnDocumentClosed() override { Add("closed"); }
    void OnShown() override { Add("shown"); }
    void OnHidden() override { Add("hidden"); }
    void SizeChanged() override { Add("sized", GetBounds().GetWidth(), GetBounds().GetHeight()); }
    void PositionChanged() override { Add("placed", GetBounds().left, GetBounds().top); }
    void ChildResized() override { Add("child resized"); }
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent&) const override { return wantsKeys; }
    ZRegion GetOpaqueRegion() const override { return isOpaque ? ZRegion(GetFrame()) : ZRegion(); }

    void SetDirty() { mDirty = true; }

    inline static Log log;
    std::vector<boost::shared_ptr<const ZMessage>> messages;
    bool takesTimers = false;
    bool isOpaque = false;
    bool wantsKeys = true;

private:
    void Add(const std::string& what) { log.push_back(GetName() + " " + what); }
    void Add(const std::string& what, std::int32_t x, std::int32_t y)
    {
        Add(what + " " + std::to_string(x) + "," + std::to_string(y));
    }
};

}  // namespace orvane
