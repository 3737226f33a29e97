// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZStringView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

/// The product's logo. A click shows its version in the logo's place, until the next click or for
/// ten seconds. [interface thread]
class ZPluginLogoView : public ZStringView
{
public:
    ZPluginLogoView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZPluginLogoView() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void OnDetached() override;
    void Draw(const ZRect& update) override;
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    bool OnTimer(std::int64_t timerId) override;

    [[nodiscard]] bool ShowsVersion() const { return mShowVersion; }

private:
    void StopVersionTimer();

    bool mShowVersion = false;
    std::int64_t mVersionTimer;
    boost::shared_ptr<ZBitmap> mProductNameBitmap;  // null for none
};

}  // namespace orvane
