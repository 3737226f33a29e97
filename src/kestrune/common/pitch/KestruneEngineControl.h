// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/pitch/KestruneEngineSettings.h"
#include "zlib/common/objects/ZMailbox.h"

namespace orvane
{

class PsolaClass;

/// Passes settings from the interface to an engine that may be running: as a whole, and between two
/// blocks. At most one thread at a time posts, and at most one applies.
class KestruneEngineControl
{
public:
    /// Makes the settings those of the next block. [any thread but the audio thread, under the
    /// interface lock]
    void Post(const KestruneEngineSettings& settings) noexcept { mMailbox.Post(settings); }

    /// Applies the newest settings to a new engine. [setup]
    void ApplyAll(PsolaClass& engine) noexcept;
    /// Applies the settings that changed, and no others: some setters of the engine are slow, and
    /// SetCorrectionEnabled restarts the correction. [audio thread]
    void ApplyChanges(PsolaClass& engine) noexcept;

    /// The settings applied last. [audio thread]
    [[nodiscard]] const KestruneEngineSettings& InForce() const noexcept { return mInForce; }

private:
    ZMailbox<KestruneEngineSettings> mMailbox;
    KestruneEngineSettings mInForce;  // written and read by the applying thread only
};

}  // namespace orvane
