// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZObservedElement.h"
#include "zlib/common/views/ZGraphAxisView.h"

#include <string>
#include <vector>

namespace orvane
{

class ZPath;

/// The pitches of the last frames, as they came in and as they go out, scrolling to the left over a
/// frequency axis with names of notes or Hz. Ends of the axis follow the pitch range.
///
/// Elements, named by `<element inputPitch= outputPitch= axisType= pitchRange=>`: two pitches in
/// Hz, which the graph looks at each frame; the axis, 0 for notes; and the index of the range. Each
/// may be missing.
class KestrunePitchGraph : public ZGraphAxisView
{
public:
    /// Frames that the graph goes back.
    static constexpr std::size_t kHistoryLength = 150;

    KestrunePitchGraph(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException -2: the graph cannot be written back.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    void ElementChanged(std::uint64_t elementId) override;
    void DetachFromElements() override;
    void OnDocumentChanged() override;
    void OnDocumentClosed() override;
    /// Takes the next pitches in and scrolls.
    void IdleTick() override;
    /// Frames a second, which tell how many seconds the horizontal axis goes back.
    void SetFrameRate(float rate) override;
    void Draw(const ZRect& rect) override;
    void DrawYAxis() override;
    /// As far as the rectangle reaches.
    virtual void DrawCurves(const ZRect& rect);

    /// Oldest first, in Hz, 0 for no voice.
    [[nodiscard]] const std::vector<float>& GetInputHistory() const { return mInputHistory; }
    [[nodiscard]] const std::vector<float>& GetOutputHistory() const { return mOutputHistory; }
    [[nodiscard]] float GetMinFrequency() const { return mMinFrequency; }
    [[nodiscard]] float GetMaxFrequency() const { return mMaxFrequency; }
    [[nodiscard]] bool HasNoteAxis() const { return mNoteAxis; }
    /// The height of a frequency in the plot, from its upper edge; the lower edge for what lies
    /// below the range, such as no voice.
    [[nodiscard]] std::int32_t HeightOf(float frequency) const;
    /// The frequency at a height of the plot.
    [[nodiscard]] float FrequencyAt(std::int32_t y) const;

protected:
    /// With the legend.
    void PaintBackground() override;

private:
    void ShowAxisType();
    void ShowPitchRange();
    void DrawNoteAxis();
    void DrawHertzAxis();
    /// Height of one of so many rows, from the plot's upper edge.
    [[nodiscard]] std::int32_t RowAt(std::int32_t k, std::int32_t rows) const;
    void DrawCurve(const std::vector<float>& history, const ZColor& color);
    [[nodiscard]] ZPoint PlaceOf(float x, float frequency) const;

    std::string mInputPitchName;
    std::string mOutputPitchName;
    std::string mAxisTypeName;
    std::string mPitchRangeName;
    boost::shared_ptr<ZElement> mInputPitch;
    boost::shared_ptr<ZElement> mOutputPitch;
    ZObservedElement mAxisType;
    ZObservedElement mPitchRange;
    std::vector<float> mInputHistory;
    std::vector<float> mOutputHistory;
    bool mNoteAxis = true;
    float mMinFrequency = 10.0f;
    float mMaxFrequency = 600.0f;
};

}  // namespace orvane
