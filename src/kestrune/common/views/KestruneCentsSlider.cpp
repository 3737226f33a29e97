// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneCentsSlider.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <cmath>

namespace orvane
{

namespace
{

constexpr float kCentsPerSemitone = 100.0f;

// Rounds to whole semitones: upwards from half a semitone on. Negative values have a negative
// remainder, so they always round down.
float snapped(float cents)
{
    const float semitones = cents / kCentsPerSemitone;
    const bool goesUp = std::fmod(semitones, 1.0f) >= 0.5f;
    return (goesUp ? std::ceil(semitones) : std::floor(semitones)) * kCentsPerSemitone;
}

}  // namespace

bool KestruneCentsSlider::IsKindOf(std::string_view className) const
{
    return className == "KestruneCentsSliderClass" || ZMetalSlider::IsKindOf(className);
}

const char* KestruneCentsSlider::GetClassName() const
{
    return "KestruneCentsSliderClass";
}

boost::shared_ptr<ZXMLElement> KestruneCentsSlider::ExtractHeader() const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractHeader\n");
}

void KestruneCentsSlider::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractBody\n");
}

void KestruneCentsSlider::TrackMouse(const ZPoint& point, std::uint32_t mods)
{
    if ((mods & kMouseControl) != 0)
        return ZMetalSlider::TrackMouse(point, mods);
    WriteValue(snapped(ValueAt(point)));
    Invalidate();
}

void KestruneCentsSlider::DrawScale(const ZRect& update)
{
    if (IsVertical())
        throw ZException("No Support for Vertical KestruneCentsSlider");
    ZMetalSlider::DrawScale(update);
}

ZString KestruneCentsSlider::GetMarkText(float cents) const
{
    const std::string semitones = textWithTwoDecimals(cents / kCentsPerSemitone);
    return cents > 0.0f ? "+" + semitones : semitones;
}

}  // namespace orvane
