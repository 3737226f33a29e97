// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZMetalSlider.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

/// A horizontal slider for a value in cents that snaps to whole semitones; with Control held it
/// takes any value. The main window has none, but a description may name the class.
/// [interface thread]
class KestruneCentsSlider : public ZMetalSlider
{
public:
    using ZMetalSlider::ZMetalSlider;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException kNotImplemented: the slider cannot be written to XML.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Writes the value at a point, rounded to a multiple of 100 cents unless Control is held.
    void TrackMouse(const ZPoint& point, std::uint32_t mods) override;

protected:
    /// Throws ZException kGeneral if the description makes the slider vertical.
    void DrawScale(const ZRect& update) override;
    /// Semitones with their sign, such as "+7": short enough that the labels of two octaves do not
    /// overlap.
    [[nodiscard]] ZString GetMarkText(float cents) const override;
};

}  // namespace orvane
