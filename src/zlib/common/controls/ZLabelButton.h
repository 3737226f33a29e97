// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZStringView.h"

#include <functional>

namespace orvane
{

/// A push button with the text that the tag `label` gives. The Tab key can move the focus to it.
/// [interface thread]
class ZLabelButton : public ZStringView
{
public:
    ZLabelButton(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;

    /// Sets what a click on the button does, and Return or the space bar while it has the focus.
    /// The action may destroy the button.
    void SetAction(std::function<void()> action) { mAction = std::move(action); }

    void Draw(const ZRect& rect) override;
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    void MouseEntered(const ZPoint& point) override;
    void MouseLeft() override;
    void SetFocus(bool focus) override;
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent& key) const override;
    /// Return and the space bar run the action.
    void KeyDown(const ZNativeKeyEvent& key) override;

private:
    void SetOver(bool over);
    void Act() const;

    bool mOver = false;
    bool mFocused = false;
    std::function<void()> mAction;
};

}  // namespace orvane
