// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/PsolaClass.h"
#include "tools/singer/Singer.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

/// Runs a sung voice through the engine, wet, for a number of seconds of audio, so that two runs
/// of different length differ by the engine's work alone: engine_load SECONDS [RATE].
int main(int argc, char** argv)
{
    using namespace orvane;
    const double seconds = argc > 1 ? std::atof(argv[1]) : 0.0;
    const auto rate = static_cast<float>(argc > 2 ? std::atof(argv[2]) : 44100.0);
    const int hop = static_cast<int>(rate * 0.0116f + 0.5f);
    // Always the same piece of song, whatever the length of the run.
    const std::vector<float> voice = renderSong(demoSong(), rate);
    const std::size_t blocks = voice.size() / static_cast<std::size_t>(hop);

    PsolaClass engine;
    ZBuffer ignored(12, "ZBuffer");
    if (!engine.Initialize(rate, hop)) {
        std::fputs("engine_load: the engine does not take this rate\n", stderr);
        return 2;
    }
    engine.SetFrequencyRange(73.0f, 1318.0f);
    engine.SetPitchReference(2);
    engine.SetIgnoredNotes(&ignored);
    engine.SetCorrectionEnabled(true);

    std::vector<float> left(static_cast<std::size_t>(hop));
    std::vector<float> right(static_cast<std::size_t>(hop));
    const auto count = static_cast<std::size_t>(seconds * static_cast<double>(rate) / hop);
    for (std::size_t block = 0; block < count; ++block) {
        const float* const from = voice.data() + block % blocks * static_cast<std::size_t>(hop);
        const float* const inputs[] = {from, from};
        float* const outputs[] = {left.data(), right.data()};
        engine.Process(inputs, outputs, hop);
    }
    return 0;
}
