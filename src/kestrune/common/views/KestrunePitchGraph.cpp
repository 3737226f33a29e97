// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestrunePitchGraph.h"

#include "kestrune/common/engine/FrequencyToNote.h"
#include "zlib/common/controls/ZBWKeys.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/elements/ZValueText.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

struct Range
{
    float min;
    float max;
};

/// Frequencies in Hz, indexed by the pitch range.
constexpr std::array<Range, 5> kRanges{
    {{73.0f, 1300.0f}, {73.0f, 494.0f}, {165.0f, 1300.0f}, {20.0f, 330.0f}, {330.0f, 2500.0f}}};
constexpr Range kOtherRange{10.0f, 600.0f};

constexpr float kC0Hz = 16.35f;  // as FrequencyToNote() counts

constexpr ZColor kInputColor{250, 201, 103, 255};
constexpr ZColor kOutputColor{250, 142, 99, 255};
constexpr ZColor kLegendText{255, 255, 255, 255};

void append(std::vector<float>& history, const ZElement* pitch)
{
    if (!pitch)
        return;
    const float frequency = pitch->GetZFloat();
    history.push_back(std::isfinite(frequency) ? frequency : 0.0f);
    if (history.size() > KestrunePitchGraph::kHistoryLength)
        history.erase(history.begin());
}

bool hasNote(float frequency)
{
    constexpr float kNoNoteBelowHz = 1.0f;
    return std::isfinite(frequency) && frequency >= kNoNoteBelowHz;
}

/// The distance from the nearest note, in [-50, 50].
float centsFromNote(float frequency)
{
    assert(hasNote(frequency));
    const float cents = 1200.0f * std::log2(frequency / kC0Hz);
    return std::remainder(cents, 100.0f);
}

ZString noteAt(float frequency)
{
    if (!hasNote(frequency))
        return {};
    int octave = 0;
    int pitchClass = 0;
    FrequencyToNote(frequency, nullptr, &octave, &pitchClass);
    return ZString(ZBWKeys::NoteName(pitchClass) + std::to_string(octave));
}

/// Returns the pitch in a frame of a history that fills the last frames of the graph.
std::string pitchText(const std::vector<float>& history, std::size_t frame)
{
    const std::size_t first = KestrunePitchGraph::kHistoryLength - history.size();
    const float frequency = frame < first ? 0.0f : history[frame - first];
    if (!hasNote(frequency))
        return "-";
    const float cents = std::round(centsFromNote(frequency));
    const float hertz = std::round(frequency * 10.0f) / 10.0f;
    return noteAt(frequency).ToNarrow() + " " +
           signedValueText(cents, ZElement::kCents).ToNarrow() + " (" +
           valueText(hertz, ZElement::kHertz).ToNarrow() + ")";
}

}  // namespace

KestrunePitchGraph::KestrunePitchGraph(const boost::shared_ptr<ZXMLElement>& xml,
                                       ZApplication* application)
    : ZGraphAxisView(xml, application)
    , mInputPitchName(readElementName(*xml, "inputPitch"))
    , mOutputPitchName(readElementName(*xml, "outputPitch"))
    , mAxisTypeName(readElementName(*xml, "axisType"))
    , mPitchRangeName(readElementName(*xml, "pitchRange"))
    , mAxisType(*this)
    , mPitchRange(*this)
    , mTip(*this, [this] { return TellPitches(); })
{
    SetAnimated(true);
}

bool KestrunePitchGraph::IsKindOf(std::string_view className) const
{
    return className == "KestrunePitchGraphClass" || ZGraphAxisView::IsKindOf(className);
}

const char* KestrunePitchGraph::GetClassName() const
{
    return "KestrunePitchGraphClass";
}

boost::shared_ptr<ZXMLElement> KestrunePitchGraph::ExtractHeader() const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractHeader\n");
}

void KestrunePitchGraph::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractBody\n");
}

void KestrunePitchGraph::DetachFromElements()
{
    ZGraphAxisView::DetachFromElements();
    mInputPitch.reset();
    mOutputPitch.reset();
    mAxisType.Release();
    mPitchRange.Release();
}

void KestrunePitchGraph::OnDocumentChanged()
{
    ZGraphAxisView::OnDocumentChanged();
    mInputPitch = FindElement(mInputPitchName);
    mOutputPitch = FindElement(mOutputPitchName);
    mAxisType.Observe(FindElement(mAxisTypeName));
    mPitchRange.Observe(FindElement(mPitchRangeName));
}

void KestrunePitchGraph::OnDocumentClosed()
{
    DetachFromElements();
    ZGraphAxisView::OnDocumentClosed();
}

void KestrunePitchGraph::ElementChanged(std::uint64_t elementId)
{
    if (mAxisType.Is(elementId))
        ShowAxisType();
    if (mPitchRange.Is(elementId))
        ShowPitchRange();
}

void KestrunePitchGraph::ShowAxisType()
{
    mNoteAxis = mAxisType->GetDiscrete() == 0;
    DropAxes();
}

void KestrunePitchGraph::ShowPitchRange()
{
    const auto index = static_cast<std::size_t>(mPitchRange->GetDiscrete());
    const Range range = index < kRanges.size() ? kRanges[index] : kOtherRange;
    mMinFrequency = range.min;
    mMaxFrequency = range.max;
    DropAxes();
}

void KestrunePitchGraph::IdleTick()
{
    append(mInputHistory, mInputPitch.get());
    append(mOutputHistory, mOutputPitch.get());
    Invalidate(mGraphFrame.left, mGraphFrame.top, mGraphFrame.right, mGraphFrame.bottom);
    mTip.Update();
}

void KestrunePitchGraph::MouseEntered(const ZPoint& point)
{
    mLastMove = point;
    mTip.Enter();
}

ZHoverTip::Content KestrunePitchGraph::TellPitches() const
{
    // Above the plot, where it covers no curve.
    const std::int32_t x = mLastMove.x;
    return {TipAt(x), {x, mGraphFrame.top, x, mGraphFrame.bottom}};
}

ZString KestrunePitchGraph::TipAt(std::int32_t x) const
{
    const std::int32_t width = std::max(mGraphFrame.GetWidth(), 1);
    const std::int32_t place = std::clamp(x - mGraphFrame.left, 0, width - 1);
    const std::size_t frame =
        static_cast<std::size_t>(place) * kHistoryLength / static_cast<std::size_t>(width);
    return ZString("in " + pitchText(mInputHistory, frame) + ", out " +
                   pitchText(mOutputHistory, frame));
}

void KestrunePitchGraph::SetFrameRate(float rate)
{
    ZGraphAxisView::SetFrameRate(rate);
    if (!(rate > 0.0f))
        return;
    const float seconds = static_cast<float>(kHistoryLength) / rate;
    SetXMin(-seconds);
    SetXWidth(seconds);
}

void KestrunePitchGraph::Draw(const ZRect& rect)
{
    DrawBackground();
    DrawCurves(rect);
    DrawAxes();
}

void KestrunePitchGraph::PaintBackground()
{
    ZGraphAxisView::PaintBackground();
    const std::int32_t width = mGraphFrame.GetWidth();
    mPenColor = kLegendText;
    mBrushColor = kInputColor;
    FillRect({289, 10, 298, 16});
    DrawString("INPUT PITCH", {301, 10, width, 15}, 0, kAlignBegin, 1);
    mBrushColor = kOutputColor;
    FillRect({289, 21, 298, 27});
    DrawString("OUTPUT PITCH", {301, 21, width, 26}, 0, kAlignBegin, 1);
}

// The range fills the plot from edge to edge. FrequencyAt(), which gives the labels, is the
// inverse, so curves and labels line up in every range.
std::int32_t KestrunePitchGraph::HeightOf(float frequency) const
{
    assert(mMaxFrequency > mMinFrequency);
    constexpr float kFarAbove = -1e6f;
    const auto height = static_cast<float>(mGraphFrame.GetHeight());
    const float part = (frequency - mMinFrequency) / (mMaxFrequency - mMinFrequency);
    return static_cast<std::int32_t>(std::clamp(height - part * height, kFarAbove, height));
}

float KestrunePitchGraph::FrequencyAt(std::int32_t y) const
{
    const auto height = static_cast<float>(mGraphFrame.GetHeight());
    const float fromTop = static_cast<float>(y - ToPlot({0, 0}).y) / mVerticalScale;
    return mMaxFrequency - fromTop / height * (mMaxFrequency - mMinFrequency);
}

ZPoint KestrunePitchGraph::PlaceOf(float x, float frequency) const
{
    return ToPlot({static_cast<std::int32_t>(x + 0.5f), HeightOf(frequency)});
}

void KestrunePitchGraph::DrawCurves(const ZRect& rect)
{
    const ZSavedStateScope saved(*mContext);
    mContext->SetClip(mGraphFrame.Intersection(rect));
    mContext->Translate(mGraphFrame.left, mGraphFrame.top);
    mContext->SetAntiAlias(true);
    mContext->SetPenWidth(2.0f);
    DrawCurve(mInputHistory, kInputColor);
    DrawCurve(mOutputHistory, kOutputColor);
    mContext->SetAntiAlias(false);
}

void KestrunePitchGraph::DrawCurve(const std::vector<float>& history, const ZColor& color)
{
    assert(history.size() <= kHistoryLength);
    if (history.empty())
        return;
    const auto width = static_cast<float>(mGraphFrame.GetWidth());
    const float step = width / static_cast<float>(kHistoryLength);
    float x = static_cast<float>(kHistoryLength - history.size()) * step;
    ZPath path;
    path.MoveTo(PlaceOf(x, history.front()));
    for (const float frequency : history) {
        path.LineTo(PlaceOf(x, frequency));
        x += step;
    }
    path.LineTo(PlaceOf(width, history.back()));
    mContext->SetPenColor(color);
    mContext->ResetPath();
    mContext->AddPath(path);
    mContext->StrokePath();
    mContext->ResetPath();
}

void KestrunePitchGraph::DrawYAxis()
{
    if (mNoteAxis)
        DrawNoteAxis();
    else
        DrawHertzAxis();
}

void KestrunePitchGraph::DrawNoteAxis()
{
    constexpr std::int32_t kRows = 12;
    for (std::int32_t k = 1; k <= kRows; ++k) {
        const std::int32_t y = ToPlot({0, RowAt(k, kRows)}).y;
        DrawYTick(mGraphFrame.top + y);
        DrawYLabel(noteAt(FrequencyAt(y)), mGraphFrame.top + y);
    }
}

void KestrunePitchGraph::DrawHertzAxis()
{
    constexpr float kRowsUnscaled = 5.0f;
    const auto most = static_cast<float>(mFrame.GetHeight());
    const float rows = std::min(std::max(0.0f, mVerticalScale * kRowsUnscaled), most);
    const auto count = static_cast<std::int32_t>(rows);
    for (std::int32_t k = 1; k <= count; ++k) {
        const std::int32_t y = RowAt(k, count);
        DrawYTick(mGraphFrame.top + y);
        DrawYLabel(YLabel(FrequencyAt(y)), mGraphFrame.top + y);
    }
}

std::int32_t KestrunePitchGraph::RowAt(std::int32_t k, std::int32_t rows) const
{
    assert(k >= 1 && k <= rows);
    return static_cast<std::int32_t>(std::int64_t{mGraphFrame.GetHeight()} * k / (rows + 1));
}

}  // namespace orvane
