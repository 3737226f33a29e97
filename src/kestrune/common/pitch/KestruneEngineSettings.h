// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"

#include <cstdint>

namespace orvane
{

class ZBuffer;

/// All that the engine is told by its user, in the units of the engine's setters.
struct KestruneEngineSettings
{
    bool correctionOn = false;
    bool transposeOn = false;
    /// Times that correction was switched: each switch starts again from no correction, also one
    /// to the state that was.
    std::uint32_t correctionSwitches = 0;
    float pitchShiftOctaves = 0.0f;
    float formantShiftOctaves = 0.0f;
    float correctionTimeMs = 50.0f;
    float referenceHz = 440.0f;
    KestruneTones tones;
    ZBuffer* ignoredNotes = nullptr;  // not owned; twelve flags
    KestruneSourceRange range{73.0f, 1318.0f};
    std::int16_t pitchReference = 2;

    /// The engine is needed; without it the voice passes as it is.
    [[nodiscard]] bool IsWet() const noexcept { return correctionOn || transposeOn; }
};

}  // namespace orvane
