// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZControl.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace orvane
{

/// Shows a float element as a thumb on a track that spans the element's range. The mouse drags the
/// thumb, the wheel and keys move it; with Shift held all of them move it by a tenth of that. The
/// maximum is at the right end of a horizontal slider and at the top of a vertical one. While the
/// thumb is dragged, pointed at or has the keyboard, the window's value tip tells the value.
///
/// Without an element all mouse input is ignored. Functions that read the element throw ZException
/// kGeneral if it is not a float. [interface thread]
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
    /// Begins a drag. A press on the thumb, edges included, holds it at that point; a press beside
    /// the thumb first moves the thumb's middle to the mouse. With Alt held the press does nothing.
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    /// Sets the element to its default; for desktops that keep Alt-click for themselves.
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    /// Ends a drag. With Alt held, the element returns to its default.
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    /// Moves the value by 1 % of the range for each notch.
    void MouseWheel(const ZPoint& point, std::uint32_t mods, std::int32_t axis,
                    std::int32_t delta) override;
    void MouseEntered(const ZPoint& point) override;
    void MouseLeft() override;
    void OnCaptureLost() override;
    void SetFocus(bool focus) override;
    /// Arrows move the value by 1 % of the range, Page Up and Page Down by 10 %, and Home and End
    /// to the ends.
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent& key) const override;
    void KeyDown(const ZNativeKeyEvent& key) override;

    /// Writes the value that puts the thumb's origin the grab offset before the point, less what
    /// moves with Shift held have put back.
    virtual void TrackMouse(const ZPoint& point, std::uint32_t mods);
    [[nodiscard]] virtual float Range() const { return mMax - mMin; }
    /// Copies minimum and maximum from the element, if there is one.
    virtual void ReadRange();
    virtual void ComputeTrackLength();
    /// The distance from the thumb's origin to the point where the mouse holds it, in pixels.
    [[nodiscard]] virtual std::int32_t GetGrabOffset() const { return mGrabOffset; }
    /// The thumb's rectangle in the view's coordinates.
    [[nodiscard]] virtual ZRect GetThumbRect() const;
    virtual void SetThumbSize(std::int32_t size);
    virtual void SetThumbHeight(std::int32_t height);
    /// Sets the thumb's picture; with null the thumb is drawn as a square of lines.
    virtual void SetThumbBitmap(const boost::shared_ptr<ZBitmap>& bitmap);
    virtual void SetScaleMarkCount(std::int32_t count);

    [[nodiscard]] bool IsVertical() const { return mVertical; }

protected:
    virtual void DrawTrack(const ZRect& update);
    virtual void DrawThumb(const ZRect& update);
    /// Draws the scale marks; ZSlider has none.
    virtual void DrawScale(const ZRect& /*update*/) {}

    /// The value at a point, not clamped to the range.
    [[nodiscard]] float ValueAt(const ZPoint& point) const;
    /// Clamps the value to the range and writes it; does nothing without an element.
    void WriteValue(float value);
    [[nodiscard]] float GetMin() const { return mMin; }
    [[nodiscard]] float GetMax() const { return mMax; }
    [[nodiscard]] std::int32_t GetThumbSize() const { return mThumbSize; }
    [[nodiscard]] std::int32_t GetThumbHeight() const { return mThumbHeight; }
    [[nodiscard]] std::int32_t GetScaleMarkCount() const { return mScaleMarkCount; }
    [[nodiscard]] bool DrawsScaleText() const { return mDrawScaleText; }

private:
    /// The point's coordinate along the track.
    [[nodiscard]] std::int32_t Along(const ZPoint& point) const;
    /// The distance of the thumb's origin from the start of the track, in [0, mTrackLength].
    [[nodiscard]] std::int32_t ThumbOffset() const;
    void RestoreDefault();
    /// The value after a key; nothing for a key that the slider does not use. Not clamped.
    [[nodiscard]] std::optional<float> ValueAfter(const ZNativeKeyEvent& key) const;
    /// Shows or hides the value tip, and keeps it at the thumb.
    void UpdateTip();
    /// The element, or null while a drag has already begun an edit of it.
    [[nodiscard]] boost::shared_ptr<ZElement> ElementUnlessHeld() const;
    void DrawTrail();

    float mValue = 0.0f;            // the value last read from the element
    std::int32_t mTrackLength = 0;  // how far the thumb's origin can travel, in pixels
    std::int32_t mThumbRange;       // track length given by the description, 0 for none
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
    float mLastAt = 0.0f;          // the value at the point where the drag was last
    float mPutBack = 0.0f;         // by how much the thumb stays behind after moves with Shift
    bool mPointedAt = false;
    bool mHasFocus = false;
};

}  // namespace orvane
