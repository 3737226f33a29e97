// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZMetalSlider.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

/// A horizontal slider for cents that snaps to whole semitones, and with control held takes any
/// value. No window of this edition has one. [interface thread]
class KestruneCentsSlider : public ZMetalSlider
{
public:
    using ZMetalSlider::ZMetalSlider;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException -2: not implemented.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    void TrackMouse(const ZPoint& point, std::uint32_t mods) override;

protected:
    /// Throws ZException -1 for a vertical slider.
    void DrawScale(const ZRect& update) override;
    /// Semitones with their sign: the steps that the thumb takes, in words short enough to stand
    /// side by side over two octaves.
    [[nodiscard]] ZString GetMarkText(float cents) const override;
};

}  // namespace orvane
