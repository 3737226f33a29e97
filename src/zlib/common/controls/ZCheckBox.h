// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

/// A check box with a title for a discrete element. It shows as checked at index 1 only; a press
/// sets any index above 0 to 0, and 0 to 1. Without an element it shows as unchecked and a press
/// does nothing. The space bar does what a press does. Functions that read the element throw
/// ZException kGeneral if it is not discrete. [interface thread]
class ZCheckBox : public ZView
{
public:
    ZCheckBox(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZELEMENTCHANGED repaints the view; ZView handles all other messages.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Sets the view's height to that of the unchecked picture.
    void OnAttached() override;
    void Draw(const ZRect& update) override;
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent& key) const override;
    void KeyDown(const ZNativeKeyEvent& key) override;

private:
    void Flip();
    void DrawTitle();

    boost::shared_ptr<ZBitmap> mOffBitmap;
    boost::shared_ptr<ZBitmap> mOnBitmap;
    ZString mTitle;
};

}  // namespace orvane
