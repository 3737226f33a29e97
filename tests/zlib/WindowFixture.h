#pragma once

#include "zlib/DocumentFixture.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZView.h"
#include "zlib/common/ZViewClasses.h"
#include "zlib/common/ZWindow.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace orvane
{

/// A view that tells in the common log what reaches it, as "name:event".
class ProbeView : public ZView
{
public:
    using ZView::ZView;
    ~ProbeView() override { log.push_back(GetName() + ":gone"); }

    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        messages.push_back(message);
        ZView::HandleZMessage(message);
    }
    void Draw(const ZRect& /*rect*/) override { Tell("draw"); }
    void OnAttached() override { Tell("attached"); }
    void OnDetached() override { Tell("detached"); }
    void IdleTick() override { Tell("tick"); }
    void SetFrameRate(float rate) override { Tell("rate " + std::to_string(std::lround(rate))); }
    void SetFocus(bool focus) override { Tell(focus ? "focus" : "blur"); }
    void MouseDown(const ZPoint& point, std::uint32_t mods) override
    {
        Tell("down " + Text(point) + " " + std::to_string(mods));
    }
    void MouseUp(const ZPoint& point, std::uint32_t /*mods*/) override
    {
        Tell("up " + Text(point));
    }
    void MouseMoved(const ZPoint& point, std::uint32_t /*mods*/) override
    {
        Tell("moved " + Text(point));
    }
    void MouseEntered(const ZPoint& point) override { Tell("entered " + Text(point)); }
    void MouseLeft() override { Tell("left"); }
    void MouseWheel(const ZPoint& point, std::uint32_t /*mods*/, std::int32_t axis,
                    std::int32_t delta) override
    {
        Tell("wheel " + Text(point) + " " + std::to_string(axis) + " " + std::to_string(delta));
    }
    bool OnTimer(std::int64_t id) override
    {
        Tell("timer " + std::to_string(id));
        return true;
    }

    /// What was told since the last call.
    static std::vector<std::string> TakeLog() { return std::exchange(log, {}); }

    inline static std::vector<std::string> log;
    std::vector<boost::shared_ptr<const ZMessage>> messages;

private:
    void Tell(const std::string& event) { log.push_back(GetName() + ":" + event); }
    static std::string Text(const ZPoint& point)
    {
        return std::to_string(point.x) + "," + std::to_string(point.y);
    }
};

inline std::string probe(const std::string& name, const std::string& bounds,
                         const std::string& attributes = "")
{
    return "<view name=\"" + name + "\" class=\"ProbeViewClass\"" + attributes +
           "><rect name=\"bounds\" " + bounds + " /></view>";
}

/// 100 by 50, with two views of 20 by 20 at the left and at the right.
inline std::string windowType(const std::string& attributes = "", const std::string& more = "")
{
    return "<windowtype name=\"Main\" class=\"ZWindowClass\"" + attributes +
           "><rect left=\"5\" top=\"6\" width=\"100\" height=\"50\" />" + more + "<subviews>" +
           probe("a", "left=\"10\" top=\"10\" width=\"20\" height=\"20\"") +
           probe("b", "left=\"60\" top=\"10\" width=\"20\" height=\"20\"") +
           "</subviews></windowtype>";
}

inline void registerWindowClasses(ZClassRegistry& registry)
{
    registerViewClasses(registry);
    registry.AddStandard<ProbeView>("ProbeViewClass");
}

}  // namespace orvane
