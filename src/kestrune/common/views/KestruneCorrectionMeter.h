// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZControl.h"

namespace orvane
{

/// The bar that tells by how many cents the voice is bent at this moment, up or down from the
/// middle. The engine writes its element far more often than a window repaints, so the meter does
/// not listen but looks at it at each frame. It has no ballistics: what it finds is what it shows.
class KestruneCorrectionMeter : public ZControl
{
public:
    /// Reads `<rect name="meterframe">`, the bar's place; without one it is all of the view.
    KestruneCorrectionMeter(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException -2: the meter cannot be written back.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Asks for a repaint of the bar when the value is another than at the last frame.
    void IdleTick() override;
    void Draw(const ZRect& rect) override;

    [[nodiscard]] const ZRect& GetMeterFrame() const { return mMeterFrame; }

private:
    /// The element's, 0 for what is no number.
    [[nodiscard]] float ReadCents() const;
    /// Pixels up from the middle, down where negative.
    [[nodiscard]] std::int32_t BarLength() const;
    void DrawBar();
    void DrawScale();
    void DrawTick(std::int32_t y);
    /// In the column left of the ticks, which is as high as the text and a pixel.
    void DrawLabel(const ZString& text, std::int32_t top, std::int32_t height);

    ZRect mMeterFrame;
    // The meter's own, since the editors of all instances share the process.
    float mShownCents = 0.0f;
};

}  // namespace orvane
