// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/WetEngine.h"
#include "tools/singer/Singer.h"

#include <cstdlib>
#include <vector>

/// Runs the correcting engine over a sung voice for a number of seconds of audio. Two runs of
/// different length differ by the engine's work alone: engine_load SECONDS [RATE [TRACKING
/// [SOURCE]]], the last two as values of the elements `tracking` and `sourceType`.
int main(int argc, char** argv)
{
    using namespace orvane;
    const double seconds = argc > 1 ? std::atof(argv[1]) : 0.0;
    const auto rate = static_cast<float>(argc > 2 ? std::atof(argv[2]) : 44100.0);
    const KestruneTracking tracking = trackingOf(argc > 3 ? std::atoi(argv[3]) : 0);
    const int source = argc > 4 ? std::atoi(argv[4]) : 0;
    // The whole song whatever the length of the run, so that its rendering costs the same.
    const std::vector<float> voice = renderSong(demoSong(), rate);
    WetEngine engine(rate, tracking, source);
    const auto count = static_cast<std::size_t>(seconds * static_cast<double>(rate) / engine.Hop());
    for (std::size_t block = 0; block < count; ++block)
        engine.Process(voice, block % engine.BlocksIn(voice));
    return 0;
}
