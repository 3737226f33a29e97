// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"
#include "kestrune/common/engine/KestruneTracking.h"

#include <cstdint>

namespace orvane
{

class ZBuffer;

/// The user's settings of the engine, in the units of the engine's setters.
struct KestruneEngineSettings
{
    bool correctionOn = false;
    bool transposeOn = false;
    /// Counts the times that correction was switched: a switch to the same state, too, restarts the
    /// correction.
    std::uint32_t correctionSwitches = 0;
    float pitchShiftOctaves = 0.0f;
    float formantShiftOctaves = 0.0f;
    float correctionTimeMs = 50.0f;
    float referenceHz = 440.0f;
    KestruneTones tones;
    ZBuffer* ignoredNotes = nullptr;  // twelve flags, not owned
    KestruneSourceRange range{73.0f, 1318.0f};
    std::int16_t pitchReference = 2;
    KestruneTracking tracking = KestruneTracking::kClassic;

    /// Whether the engine processes the voice; otherwise the voice is only delayed.
    [[nodiscard]] bool IsWet() const noexcept { return correctionOn || transposeOn; }
};

}  // namespace orvane
