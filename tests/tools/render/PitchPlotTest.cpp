// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PitchPlot.h"

#include "tools/render/OfflineRender.h"
#include "tools/render/RenderProgram.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace orvane
{

TEST(PitchPlotTest, AnHourIsDrawnAsBandsAtThePitchesThatOccur)
{
    // The output moves between five notes, two semitones apart, every half second.
    RenderResult result;
    result.format = {44100, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16};
    result.frames = 3600 * 44100;
    result.scale = builtInScale(1);
    for (int i = 0; i < 3600 * 80; ++i) {
        const double seconds = i / 80.0;
        const double note = 2.0 * std::fmod(std::floor(2.0 * seconds), 5.0);
        const auto hz = static_cast<float>(220.0 * std::exp2(note / 12.0));
        result.points.push_back({seconds, hz * 1.01f, hz, 0.5f, 1.0f, true});
    }
    const PrivateFolder folder;
    writePitchPlot(folder.Path("plot.png"), "plot.png", {}, result);
    const Picture picture = readPicture(folder.Path("plot.png"));

    constexpr std::size_t kHeading = 100;  // pixels, with the legend in it
    std::set<std::size_t> rows;
    for (std::size_t i = kHeading * picture.width; i < picture.pixels.size(); ++i) {
        // The output's blue prevails over paper, lines and the input's orange.
        const std::uint32_t pixel = picture.pixels[i];
        if ((pixel & 0xFF) > ((pixel >> 16) & 0xFF) + 0x40)
            rows.insert(i / picture.width);
    }
    EXPECT_GE(rows.size(), 5u);
    EXPECT_LE(rows.size(), 20u) << "of about 630 rows";
}

}  // namespace orvane
