// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZSlider.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace orvane
{

/// A slider with an engraved groove as its track and engraved scale marks, which may have labels.
/// [interface thread]
class ZMetalSlider : public ZSlider
{
public:
    ZMetalSlider(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZMetalSlider() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void OnDetached() override;
    void SizeChanged() override;
    void ReadRange() override;
    void SetThumbSize(std::int32_t size) override;
    void SetThumbHeight(std::int32_t height) override;
    void SetScaleMarkCount(std::int32_t count) override;

protected:
    void DrawTrack(const ZRect& update) override;
    /// Draws the marks from a picture that is built at the first call and after each change of
    /// size, range, thumb or mark count.
    void DrawScale(const ZRect& update) override;
    /// The label of the mark at a value; here the number.
    [[nodiscard]] virtual ZString GetMarkText(float value) const;

private:
    /// The view's size along the track, in pixels.
    [[nodiscard]] std::int32_t GetLength() const;
    /// The mark's coordinate along the track, in the view's coordinates. Marks are spaced evenly
    /// from one end of the groove to the other.
    [[nodiscard]] std::int32_t GetMarkPosition(std::int32_t index) const;
    [[nodiscard]] float GetMarkValue(std::int32_t index) const;
    [[nodiscard]] std::unique_ptr<ZBitmap> BuildScale() const;
    void DrawMark(ZBitmap& scale, std::int32_t index) const;
    void DrawMarkLabel(ZBitmap& scale, std::int32_t index) const;

    std::unique_ptr<ZBitmap> mScale;  // null until it is painted next
};

/// The number with at most two decimals and no trailing zeros, such as "-12.5".
[[nodiscard]] std::string textWithTwoDecimals(float value);

}  // namespace orvane
