// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <memory>
#include <string_view>

namespace orvane
{

/// The background of a plug-in's window: a picture with lines of light along the edges and a band
/// below the title over it. It is opaque, so the window paints nothing under it. [interface thread]
class ZPluginBackground : public ZView
{
public:
    ZPluginBackground(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZPluginBackground() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    [[nodiscard]] ZRegion GetOpaqueRegion() const override;
    void DrawBackground(const ZRect& rect) override;
    void Draw(const ZRect& update) override;
    void OnDetached() override;

private:
    /// The values of `<rect name="titleframe">`.
    struct TitleFrame
    {
        std::int32_t left = 0;
        std::int32_t top = 0;
        std::int32_t width = 0;
        std::int32_t height = 0;
    };

    [[nodiscard]] std::unique_ptr<ZBitmap> BuildPicture() const;
    void DrawTitleLines(ZBitmap& picture) const;
    void DrawTitleBand(ZBitmap& picture) const;

    TitleFrame mTitleFrame;
    std::unique_ptr<ZBitmap> mCache;  // lines and band, null until they are painted
};

}  // namespace orvane
