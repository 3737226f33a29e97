// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZPopupMenu.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string_view>

namespace orvane
{

/// A popup menu drawn as a metal button with an up and a down arrow at its right end. The picture
/// is built at the first paint and kept. [interface thread]
class ZMetalPopupMenu : public ZPopupMenu
{
public:
    ZMetalPopupMenu(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void Draw(const ZRect& update) override;

protected:
    /// As the description gives it, but ending before the arrows.
    [[nodiscard]] ZRect GetTextRect() const override;
    /// Builds the button's picture at the view's size and sets it as the menu bitmap.
    virtual void DrawMetal();

private:
    ZColor mTintColor{233, 233, 233, 255};
};

}  // namespace orvane
