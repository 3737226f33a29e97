// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"
#include "kestrune/common/engine/PsolaClass.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <array>
#include <cassert>
#include <cstddef>
#include <stdexcept>
#include <vector>

namespace orvane
{

/// A correcting engine that processes a mono signal on both channels, in the blocks of the pitch
/// bay.
class WetEngine
{
public:
    /// rate in Hz; source: a choice of the element `sourceType`. Throws std::runtime_error when the
    /// engine does not support the rate.
    explicit WetEngine(float rate, KestruneTracking tracking = KestruneTracking::kClassic,
                       int source = 0)
        : mHop(static_cast<int>(rate * 0.0116f + 0.5f))
        , mOutput{std::vector<float>(static_cast<std::size_t>(mHop)),
                  std::vector<float>(static_cast<std::size_t>(mHop))}
    {
        mEngine.SetTracking(tracking);
        if (!mEngine.Initialize(rate, mHop))
            throw std::runtime_error("the engine does not support this sample rate");
        const KestruneSourceRange range = sourceRange(source);
        mEngine.SetFrequencyRange(range.lowHz, range.highHz);
        mEngine.SetPitchReference(2);
        mEngine.SetIgnoredNotes(&mIgnoredNotes);
        mEngine.SetCorrectionEnabled(true);
    }

    [[nodiscard]] PsolaClass& Engine() { return mEngine; }

    /// Number of whole blocks in a signal.
    [[nodiscard]] std::size_t BlocksIn(const std::vector<float>& signal) const
    {
        return signal.size() / static_cast<std::size_t>(mHop);
    }
    /// Frames of a block.
    [[nodiscard]] int Hop() const { return mHop; }

    /// Processes the block with that index.
    void Process(const std::vector<float>& signal, std::size_t block)
    {
        assert(block < BlocksIn(signal));
        const float* const from = signal.data() + block * static_cast<std::size_t>(mHop);
        const std::array<const float*, 2> inputs{from, from};
        const std::array<float*, 2> outputs{mOutput[0].data(), mOutput[1].data()};
        mEngine.Process(inputs.data(), outputs.data(), mHop);
    }

private:
    int mHop;
    std::array<std::vector<float>, 2> mOutput;
    ZBuffer mIgnoredNotes{12, "ZBuffer"};
    PsolaClass mEngine;
};

}  // namespace orvane
