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

/// A slider whose track is a groove, with scale marks that are engraved likewise and may tell what
/// they stand for. [interface thread]
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
    /// The marks, from a picture that is built once.
    void DrawScale(const ZRect& update) override;
    /// What a mark at that value says: the number.
    [[nodiscard]] virtual ZString GetMarkText(float value) const;

private:
    [[nodiscard]] std::int32_t GetLength() const;
    /// Along the track, in the view's coordinates; the marks lie evenly from one end of the groove
    /// to the other.
    [[nodiscard]] std::int32_t GetMarkPosition(std::int32_t index) const;
    [[nodiscard]] float GetMarkValue(std::int32_t index) const;
    [[nodiscard]] std::unique_ptr<ZBitmap> BuildScale() const;
    void DrawMark(ZBitmap& scale, std::int32_t index) const;
    void DrawMarkLabel(ZBitmap& scale, std::int32_t index) const;

    std::unique_ptr<ZBitmap> mScale;  // null until it is painted
};

/// The number in its shortest form with at most two decimals.
[[nodiscard]] std::string shortNumber(float value);

}  // namespace orvane
