// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PitchPlot.h"

#include "tools/render/Failure.h"
#include "tools/render/OfflineRender.h"
#include "tools/render/RenderReport.h"
#include "tools/render/ScaleGrid.h"

#include <cairo.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace orvane
{

namespace
{

// The frame around the curves, in pixels.
constexpr double kLeft = 84.0;
constexpr double kTop = 104.0;
constexpr double kRight = kPlotWidth - 32.0;
constexpr double kBottom = kPlotHeight - 70.0;

constexpr double kTitleMiddle = 38.0;

// Colours, as 0xRRGGBB.
constexpr unsigned kPaper = 0xFFFFFF;
constexpr unsigned kInk = 0x1B2430;
constexpr unsigned kPaleInk = 0x66707E;
constexpr unsigned kOffScaleInk = 0x9AA3AF;
constexpr unsigned kOffScaleRow = 0xF5F6F8;
constexpr unsigned kOffScaleLine = 0xE6E9ED;
constexpr unsigned kScaleLine = 0xB4BECB;
constexpr unsigned kRootLine = 0x55647A;
constexpr unsigned kTimeLine = 0xECEEF2;
constexpr unsigned kFrameLine = 0xC5CCD6;

constexpr double kInputWidth =
    6.0;  // wider and below the other curve, so that it shows where both agree
constexpr double kOutputWidth = 2.5;
constexpr double kFewestSemitones = 14.0;
constexpr double kMarginSemitones = 1.6;
/// Points further apart than this are not joined: they are separate notes or detection errors.
constexpr double kJoinedSemitones = 3.0;

/// A longer sound is drawn as bands: so many lines beside each other would fill the plot.
constexpr double kMostPointsPerPixel = 4.0;
constexpr double kBandRow = 2.0;         // pixels; height of a cell of the bands
constexpr double kFullBandShare = 0.25;  // of a column's points in one cell, drawn opaque

struct CairoFreer
{
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
struct GObjectFreer
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

struct Span
{
    double low;
    double high;
};

enum class Align
{
    kStart,
    kCentre,
    kEnd
};

struct TextStyle
{
    double size;  // pixels
    unsigned colour;
    bool isBold = false;
    Align align = Align::kStart;
};

/// Semitones to show: the voiced pitches without the outermost 1 % at each end, and a margin.
Span pitchSpan(const std::vector<PitchPoint>& points)
{
    std::vector<double> positions;
    for (const PitchPoint& point : points) {
        if (!point.isVoiced)
            continue;
        for (const float hz : {point.inputHz, point.outputHz})
            positions.push_back(ScaleGrid::Position(static_cast<double>(hz)));
    }
    if (positions.empty())
        return {35.3, 60.7};  // C3 to C5
    std::sort(positions.begin(), positions.end());
    const std::size_t cut = positions.size() / 100;
    const double low = positions[cut] - kMarginSemitones;
    const double high = positions[positions.size() - 1 - cut] + kMarginSemitones;
    const double missing = std::max(kFewestSemitones - (high - low), 0.0);
    return {low - missing / 2, high + missing / 2};
}

/// Distance of the time lines: 1, 2 or 5 times a power of ten, at most 16 for the duration.
double timeStep(double seconds)
{
    const double least = seconds / 16.0;
    const double decade = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * decade >= least)
            return factor * decade;
    }
    return 10.0 * decade;
}

class PitchPlot
{
public:
    PitchPlot(const RenderRequest& request, const RenderResult& result)
        : mRequest(request)
        , mResult(result)
        , mSpan(pitchSpan(result.points))
        , mSeconds(std::max(result.Seconds(), 1e-3))
        , mSurface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, kPlotWidth, kPlotHeight))
        , mContext(cairo_create(mSurface.get()))
    {
    }

    void Draw()
    {
        SetColour(kPaper);
        cairo_paint(mContext.get());
        DrawTimes();
        DrawNotes();
        DrawFrame();
        if (static_cast<double>(mResult.points.size()) > kMostPointsPerPixel * (kRight - kLeft)) {
            DrawBands(&PitchPoint::inputHz, kInputCurveColour);
            DrawBands(&PitchPoint::outputHz, kOutputCurveColour);
        } else {
            DrawCurve(&PitchPoint::inputHz, kInputCurveColour, kInputWidth);
            DrawCurve(&PitchPoint::outputHz, kOutputCurveColour, kOutputWidth);
        }
        DrawHeading();
    }

    [[nodiscard]] cairo_status_t Write(const std::filesystem::path& path) const
    {
        return cairo_surface_write_to_png(mSurface.get(), path.c_str());
    }

private:
    [[nodiscard]] double X(double seconds) const
    {
        return kLeft + (kRight - kLeft) * seconds / mSeconds;
    }

    [[nodiscard]] double Y(double position) const
    {
        return kBottom - (kBottom - kTop) * (position - mSpan.low) / (mSpan.high - mSpan.low);
    }

    void SetColour(unsigned colour, double opacity = 1.0)
    {
        const auto part = [colour](int shift) { return ((colour >> shift) & 0xFFu) / 255.0; };
        cairo_set_source_rgba(mContext.get(), part(16), part(8), part(0), opacity);
    }

    void Line(double x1, double y1, double x2, double y2, unsigned colour, double width)
    {
        SetColour(colour);
        cairo_set_line_width(mContext.get(), width);
        cairo_move_to(mContext.get(), x1, y1);
        cairo_line_to(mContext.get(), x2, y2);
        cairo_stroke(mContext.get());
    }

    /// Draws one line of text centred vertically at y and returns its width. Text wider than limit
    /// is shortened in its middle.
    double Text(const std::string& text, double x, double y, const TextStyle& style,
                double limit = kRight - kLeft)
    {
        const std::unique_ptr<PangoLayout, GObjectFreer> layout(
            pango_cairo_create_layout(mContext.get()));
        PangoFontDescription* font =
            pango_font_description_from_string("Liberation Sans, DejaVu Sans, Sans");
        pango_font_description_set_absolute_size(font, style.size * PANGO_SCALE);
        pango_font_description_set_weight(font,
                                          style.isBold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
        pango_layout_set_font_description(layout.get(), font);
        pango_font_description_free(font);
        pango_layout_set_text(layout.get(), text.c_str(), -1);
        int width = 0;
        int height = 0;
        pango_layout_get_pixel_size(layout.get(), &width, &height);
        if (width > limit) {
            pango_layout_set_width(layout.get(), static_cast<int>(limit * PANGO_SCALE));
            pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_MIDDLE);
            width = static_cast<int>(limit);
        }
        const double shift = style.align == Align::kStart    ? 0.0
                             : style.align == Align::kCentre ? width / 2.0
                                                             : width;
        SetColour(style.colour);
        cairo_move_to(mContext.get(), x - shift, y - height / 2.0);
        pango_cairo_show_layout(mContext.get(), layout.get());
        return width;
    }

    void DrawTimes()
    {
        const double step = timeStep(mSeconds);
        const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
        for (int i = 0; i * step <= mSeconds * (1.0 + 1e-9); ++i) {
            const double x = std::round(X(i * step)) + 0.5;
            Line(x, kTop, x, kBottom, kTimeLine, 1.0);
            Line(x, kBottom, x, kBottom + 6, kFrameLine, 1.0);
            Text(fmt::format("{:.{}f}", i * step, decimals), x, kBottom + 19,
                 {14.0, kPaleInk, false, Align::kCentre});
        }
        Text("seconds", (kLeft + kRight) / 2, kBottom + 47,
             {15.0, kPaleInk, false, Align::kCentre});
    }

    void DrawNotes()
    {
        const ScaleGrid grid(mResult.settings, mResult.scale);
        const double row = (kBottom - kTop) / (mSpan.high - mSpan.low);  // height of a semitone
        const auto notes = grid.Notes(mSpan.low - 1, mSpan.high + 1);
        cairo_save(mContext.get());
        cairo_rectangle(mContext.get(), kLeft, kTop, kRight - kLeft, kBottom - kTop);
        cairo_clip(mContext.get());
        for (const ScaleGrid::Note& note : notes) {
            if (!note.isInScale)
                DrawOffScaleRow(note, row);
        }
        for (const ScaleGrid::Note& note : notes)
            DrawNoteLine(note);
        cairo_restore(mContext.get());
        DrawNoteNames(grid.Notes(mSpan.low, mSpan.high), row);
    }

    void DrawOffScaleRow(const ScaleGrid::Note& note, double row)
    {
        SetColour(kOffScaleRow);
        cairo_rectangle(mContext.get(), kLeft, Y(note.position) - row / 2, kRight - kLeft, row);
        cairo_fill(mContext.get());
    }

    void DrawNoteLine(const ScaleGrid::Note& note)
    {
        const double y = std::round(Y(note.position)) + (note.isRoot ? 0.0 : 0.5);
        const unsigned colour = note.isRoot      ? kRootLine
                                : note.isInScale ? kScaleLine
                                                 : kOffScaleLine;
        Line(kLeft, y, kRight, y, colour, note.isRoot ? 2.0 : 1.0);
    }

    /// Draws names that do not overlap: first the roots, then notes of the scale, then all others.
    void DrawNoteNames(const std::vector<ScaleGrid::Note>& notes, double row)
    {
        const double size = std::clamp(row * 0.9, 11.0, 16.0);
        std::vector<double> taken;
        const auto drawAll = [&](const auto& isMeant) {
            for (const ScaleGrid::Note& note : notes) {
                const double y = Y(note.position);
                const bool isFree = std::none_of(taken.begin(), taken.end(), [=](double other) {
                    return std::fabs(other - y) < size;
                });
                if (!isMeant(note) || !isFree)
                    continue;
                Text(note.name, kLeft - 12, y,
                     {size, note.isInScale ? kInk : kOffScaleInk, note.isRoot, Align::kEnd});
                taken.push_back(y);
            }
        };
        drawAll([](const ScaleGrid::Note& note) { return note.isRoot; });
        drawAll([](const ScaleGrid::Note& note) { return note.isInScale; });
        drawAll([](const ScaleGrid::Note&) { return true; });
    }

    void DrawFrame()
    {
        SetColour(kFrameLine);
        cairo_set_line_width(mContext.get(), 1.0);
        cairo_rectangle(mContext.get(), kLeft + 0.5, kTop + 0.5, kRight - kLeft, kBottom - kTop);
        cairo_stroke(mContext.get());
    }

    void DrawCurve(float PitchPoint::*pitch, unsigned colour, double width)
    {
        cairo_save(mContext.get());
        cairo_rectangle(mContext.get(), kLeft, kTop, kRight - kLeft, kBottom - kTop);
        cairo_clip(mContext.get());
        cairo_set_line_cap(mContext.get(), CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(mContext.get(), CAIRO_LINE_JOIN_ROUND);
        bool isJoined = false;
        double last = 0.0;
        for (const PitchPoint& point : mResult.points) {
            const double position = ScaleGrid::Position(static_cast<double>(point.*pitch));
            isJoined = isJoined && std::fabs(position - last) <= kJoinedSemitones;
            if (point.isVoiced)
                Continue(X(point.seconds), Y(position), isJoined);
            isJoined = point.isVoiced;
            last = position;
        }
        SetColour(colour);
        cairo_set_line_width(mContext.get(), width);
        cairo_stroke(mContext.get());
        cairo_restore(mContext.get());
    }

    /// Draws how often each pitch occurs: columns of one pixel, each with rows of cells that are
    /// the more opaque the more of the column's voiced points they hold.
    void DrawBands(float PitchPoint::*pitch, unsigned colour)
    {
        const auto rows = static_cast<std::size_t>((kBottom - kTop) / kBandRow);
        const auto columns = static_cast<std::size_t>(kRight - kLeft);
        std::vector<int> counts(rows * columns);
        std::vector<int> totals(columns);
        for (const PitchPoint& point : mResult.points) {
            if (!point.isVoiced || point.*pitch <= 0.0f)
                continue;
            const double x = X(point.seconds) - kLeft;
            const double row =
                (Y(ScaleGrid::Position(static_cast<double>(point.*pitch))) - kTop) / kBandRow;
            if (x < 0.0 || x >= static_cast<double>(columns) || row < 0.0 ||
                row >= static_cast<double>(rows))
                continue;
            ++totals[static_cast<std::size_t>(x)];
            ++counts[static_cast<std::size_t>(x) * rows + static_cast<std::size_t>(row)];
        }
        for (std::size_t column = 0; column < columns; ++column) {
            for (std::size_t row = 0; row < rows; ++row) {
                if (const int count = counts[column * rows + row]; count > 0)
                    DrawCell(column, row, colour, count / (kFullBandShare * totals[column]));
            }
        }
    }

    void DrawCell(std::size_t column, std::size_t row, unsigned colour, double opacity)
    {
        SetColour(colour, std::min(opacity, 1.0));
        cairo_rectangle(mContext.get(), kLeft + static_cast<double>(column),
                        kTop + kBandRow * static_cast<double>(row), 1.0, kBandRow);
        cairo_fill(mContext.get());
    }

    void Continue(double x, double y, bool isJoined)
    {
        if (!isJoined)
            cairo_move_to(mContext.get(), x, y);
        cairo_line_to(mContext.get(), x, y);  // draws a dot when nothing precedes it
    }

    void DrawHeading()
    {
        const double legend = DrawLegend();
        Text(mRequest.input.filename().string(), kLeft, kTitleMiddle, {25.0, kInk, true},
             legend - 40 - kLeft);
        const std::string found = mResult.before.median ? "" : "  ·  no voice found";
        Text(fmt::format("{}{}", fmt::join(describeSettings(mResult), "  ·  "), found), kLeft, 74,
             {16.0, kPaleInk});
    }

    /// Draws the legend from the right edge and returns its left edge.
    double DrawLegend()
    {
        const double output =
            DrawLegendEntry("output", mResult.after, kRight, kOutputCurveColour, kOutputWidth);
        return DrawLegendEntry("input", mResult.before, output - 40, kInputCurveColour,
                               kInputWidth);
    }

    double DrawLegendEntry(const std::string& name, const ScaleDistance& distance, double right,
                           unsigned colour, double width)
    {
        constexpr double kSample = 34.0;
        constexpr double kGap = 12.0;
        const std::string text =
            distance.median ? fmt::format("{}, {:.1f} cents off", name, *distance.median) : name;
        const double textLeft =
            right - Text(text, right, kTitleMiddle, {16.0, kInk, false, Align::kEnd});
        cairo_set_line_cap(mContext.get(), CAIRO_LINE_CAP_ROUND);
        Line(textLeft - kGap - kSample, kTitleMiddle, textLeft - kGap, kTitleMiddle, colour, width);
        return textLeft - kGap - kSample;
    }

    const RenderRequest& mRequest;
    const RenderResult& mResult;
    Span mSpan;  // semitones above C0
    double mSeconds;
    std::unique_ptr<cairo_surface_t, CairoFreer> mSurface;
    std::unique_ptr<cairo_t, CairoFreer> mContext;
};

/// Frees the process-wide font data, so that a leak checker reports real leaks only.
void releaseFonts()
{
    pango_cairo_font_map_set_default(nullptr);
    cairo_debug_reset_static_data();
    FcFini();
}

}  // namespace

void writePitchPlot(const std::filesystem::path& path, const std::string& name,
                    const RenderRequest& request, const RenderResult& result)
{
    PitchPlot plot(request, result);
    plot.Draw();
    const cairo_status_t status = plot.Write(path);
    // A plug-in that has drawn its window still uses fonts of the same libraries.
    if (request.window.file.empty())
        releaseFonts();
    if (status != CAIRO_STATUS_SUCCESS)
        fail("cannot write {}: {}", name, cairo_status_to_string(status));
}

}  // namespace orvane
