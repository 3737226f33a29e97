// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZObservedElement.h"
#include "zlib/common/views/ZGraphAxisView.h"
#include "zlib/common/views/ZHoverTip.h"

#include <string>
#include <vector>

namespace orvane
{

class ZPath;

/// A graph of the input and output pitch of the last frames, which scrolls to the left. Its
/// vertical axis is a frequency axis, labelled with names of notes or in Hz, whose ends follow the
/// pitch range.
///
/// Its elements are named by `<element inputPitch= outputPitch= axisType= pitchRange=>`: two
/// pitches in Hz, which the graph reads once a frame; the labels of the axis, 0 for notes; and the
/// index of the pitch range. Each may be missing. While it is pointed at, the window's value tip
/// tells both pitches at the pointer's time as notes with their deviation in cents, and in Hz.
/// [interface thread]
class KestrunePitchGraph : public ZGraphAxisView
{
public:
    /// The number of frames that the graph shows.
    static constexpr std::size_t kHistoryLength = 150;

    KestrunePitchGraph(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException kNotImplemented: the graph cannot be written to XML.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    void ElementChanged(std::uint64_t elementId) override;
    void DetachFromElements() override;
    void OnDocumentChanged() override;
    void OnDocumentClosed() override;
    /// Appends the current pitches and repaints the plot.
    void IdleTick() override;
    void MouseEntered(const ZPoint& point) override;
    void MouseLeft() override { mTip.Leave(); }
    /// Sets the span of the horizontal axis from the number of frames a second.
    void SetFrameRate(float rate) override;
    void Draw(const ZRect& rect) override;
    void DrawYAxis() override;
    /// Draws both curves inside the rectangle.
    virtual void DrawCurves(const ZRect& rect);

    /// The distance of a frequency, in Hz, from the plot's upper edge. Frequencies below the range,
    /// such as 0 for no voice, lie on the lower edge; those above it are negative.
    [[nodiscard]] std::int32_t HeightOf(float frequency) const;
    /// The frequency, in Hz, at a distance from the plot's upper edge.
    [[nodiscard]] float FrequencyAt(std::int32_t y) const;
    /// What the tip says of the pitches at x in the view: "in A3 -12 cents (218.5 Hz), out A3 +1
    /// cents (220.1 Hz)", and "-" for no voice.
    [[nodiscard]] ZString TipAt(std::int32_t x) const;

protected:
    /// Paints the background and the legend.
    void PaintBackground() override;

    // Pitches in Hz, the oldest first, 0 for no voice; at most kHistoryLength.
    std::vector<float> mInputHistory;
    std::vector<float> mOutputHistory;

private:
    void ShowAxisType();
    void ShowPitchRange();
    void DrawNoteAxis();
    void DrawHertzAxis();
    /// The distance of row k, in [1, rows], from the plot's upper edge.
    [[nodiscard]] std::int32_t RowAt(std::int32_t k, std::int32_t rows) const;
    void DrawCurve(const std::vector<float>& history, const ZColor& color);
    [[nodiscard]] ZPoint PlaceOf(float x, float frequency) const;
    /// The pitches at the pointer, above the plot.
    [[nodiscard]] ZHoverTip::Content TellPitches() const;

    std::string mInputPitchName;
    std::string mOutputPitchName;
    std::string mAxisTypeName;
    std::string mPitchRangeName;
    boost::shared_ptr<ZElement> mInputPitch;
    boost::shared_ptr<ZElement> mOutputPitch;
    ZObservedElement mAxisType;
    ZObservedElement mPitchRange;
    ZHoverTip mTip;
    bool mNoteAxis = true;         // names of notes instead of Hz
    float mMinFrequency = 10.0f;   // in Hz
    float mMaxFrequency = 600.0f;  // in Hz, above mMinFrequency
};

}  // namespace orvane
