// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZStringView.h"

#include <functional>

namespace orvane
{

/// A push button with a text; the tag `label` gives the text. The Tab key takes the focus to it.
class ZLabelButton : public ZStringView
{
public:
    ZLabelButton(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;

    /// ZKEYDOWN with "Key". Throws ZException -1 when that is missing.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// What the release over the button does, or Return or the space bar while it has the focus;
    /// the button may be gone after it.
    void SetAction(std::function<void()> action) { mAction = std::move(action); }

    void Draw(const ZRect& rect) override;
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    void MouseEntered(const ZPoint& point) override;
    void MouseLeft() override;
    void SetFocus(bool focus) override;

private:
    void SetOver(bool over);
    void Act() const;

    bool mOver = false;
    bool mFocused = false;
    std::function<void()> mAction;
};

}  // namespace orvane
