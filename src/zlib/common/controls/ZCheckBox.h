// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

/// A box with a title that a press switches: to 0 from any index above it, else to 1. It looks on
/// at exactly 1. Without an element it is off and a press does nothing; what reads an element
/// throws ZException -1 when it is not discrete. [interface thread]
class ZCheckBox : public ZView
{
public:
    ZCheckBox(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZELEMENTCHANGED: repaints. The rest as ZView.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Takes the height of its picture.
    void OnAttached() override;
    void Draw(const ZRect& update) override;
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;

private:
    void DrawTitle();

    boost::shared_ptr<ZBitmap> mOffBitmap;
    boost::shared_ptr<ZBitmap> mOnBitmap;
    ZString mTitle;
};

}  // namespace orvane
