// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZControl.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string_view>

namespace orvane
{


/// A thumb on a track, which the mouse drags and the wheel moves; its place tells the value of a
/// float element, whose range the track is. Horizontally the maximum is on the right, vertically at
/// the top.
///
/// Without an element all mouse input is ignored. What reads the element throws ZException -1 when
/// it is not a float. [interface thread]
class ZSlider : public ZControl
{
public:
    ZSlider(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void ElementChanged(std::uint64_t elementId) override;
    void OnElementAttached() override;
    void SizeChanged() override;
    void Draw(const ZRect& update) override;
    /// Beside the thumb its middle jumps to the mouse; on the thumb, edges included, it stays under
    /// the mouse where it was taken. With alt nothing happens before the release.
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    /// With alt: the default.
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    /// Moves by a percent of the range a notch.
    void MouseWheel(const ZPoint& point, std::uint32_t mods, std::int32_t axis,
                    std::int32_t delta) override;

    /// Writes the value at a point, which lies the grab offset behind the thumb's origin.
    virtual void TrackMouse(const ZPoint& point, std::uint32_t mods);
    [[nodiscard]] virtual float Range() const { return mMax - mMin; }
    virtual void ReadRange();
    virtual void ComputeTrackLength();
    [[nodiscard]] virtual std::int32_t GetGrabOffset() const { return mGrabOffset; }
    /// In the view's coordinates.
    [[nodiscard]] virtual ZRect GetThumbRect() const;
    virtual void SetThumbSize(std::int32_t size);
    virtual void SetThumbHeight(std::int32_t height);
    /// Null for a thumb of lines.
    virtual void SetThumbBitmap(const boost::shared_ptr<ZBitmap>& bitmap);
    virtual void SetScaleMarkCount(std::int32_t count);

    /// The value that was read from the element last.
    [[nodiscard]] float GetLastValue() const { return mValue; }
    [[nodiscard]] bool IsVertical() const { return mVertical; }

protected:
    virtual void DrawTrack(const ZRect& update);
    virtual void DrawThumb(const ZRect& update);
    /// Nothing here.
    virtual void DrawScale(const ZRect& /*update*/) {}

    /// The value at a point, not clamped.
    [[nodiscard]] float ValueAt(const ZPoint& point) const;
    /// Writes the value, brought into the range; nothing without an element.
    void WriteValue(float value);
    [[nodiscard]] float GetMin() const { return mMin; }
    [[nodiscard]] float GetMax() const { return mMax; }
    [[nodiscard]] std::int32_t GetThumbSize() const { return mThumbSize; }
    [[nodiscard]] std::int32_t GetThumbHeight() const { return mThumbHeight; }
    [[nodiscard]] std::int32_t GetScaleMarkCount() const { return mScaleMarkCount; }
    [[nodiscard]] bool DrawsScaleText() const { return mDrawScaleText; }

private:
    /// The coordinate that the track runs along.
    [[nodiscard]] std::int32_t Along(const ZPoint& point) const;
    [[nodiscard]] std::int32_t ThumbOffset() const;
    void RestoreDefault();
    /// Null while the mouse holds the thumb.
    [[nodiscard]] boost::shared_ptr<ZElement> ElementUnlessHeld() const;
    void DrawTrail();

    float mValue = 0.0f;
    std::int32_t mTrackLength = 0;  // how far the thumb's origin can travel, in pixels
    std::int32_t mThumbRange;       // track length that the description gives, 0 for none
    boost::shared_ptr<ZBitmap> mBackgroundPicture;
    boost::shared_ptr<ZBitmap> mThumbBitmap;
    bool mVertical;
    float mMin = 0.0f;
    float mMax = 1.0f;
    std::int32_t mThumbSize;
    std::int32_t mThumbHeight;
    std::int32_t mScaleMarkCount;
    bool mDrawScaleText;
    bool mDrawTrail = false;
    ZColor mEnabledTrailColor;
    ZColor mDisabledTrailColor;
    std::int32_t mGrabOffset = 0;  // from the thumb's origin to where the mouse holds it
};

}  // namespace orvane
