// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZControl.h"
#include "zlib/common/views/ZHoverTip.h"

#include <utility>

namespace orvane
{

/// A bar that shows by how many cents the pitch of the voice is being corrected, upwards or
/// downwards from its middle. The engine writes the element far more often than a window repaints,
/// so the meter does not observe it but reads it once a frame. It has no ballistics: it shows the
/// value as it is. While it is pointed at, the window's value tip tells the cents.
/// [interface thread]
class KestruneCorrectionMeter : public ZControl
{
public:
    /// Reads the bar's rectangle from `<rect name="meterframe">`; the default is the whole view.
    KestruneCorrectionMeter(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException kNotImplemented: the meter cannot be written to XML.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Repaints the bar if the value has changed since the last frame.
    void IdleTick() override;
    void MouseEntered(const ZPoint& /*point*/) override { mTip.Enter(); }
    void MouseLeft() override { mTip.Leave(); }
    void Draw(const ZRect& rect) override;

private:
    /// The element's value, or 0 if that is not finite.
    [[nodiscard]] float ReadCents() const;
    /// The length of the bar in pixels; positive values go upwards from the middle.
    [[nodiscard]] std::int32_t BarLength() const;
    /// The bar's ends; the upper one first.
    [[nodiscard]] std::pair<std::int32_t, std::int32_t> BarRows() const;
    /// The cents, beside the bar.
    [[nodiscard]] ZHoverTip::Content TellCents() const;
    void DrawBar();
    void DrawScale();
    void DrawTick(std::int32_t y);
    /// Draws a label left of the ticks, in a rectangle of that top and height.
    void DrawLabel(const ZString& text, std::int32_t top, std::int32_t height);

    ZRect mMeterFrame;         // the bar's rectangle, in the view's coordinates
    float mShownCents = 0.0f;  // the value at the last frame
    ZHoverTip mTip;
};

}  // namespace orvane
