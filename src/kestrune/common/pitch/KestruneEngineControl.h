// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/pitch/KestruneEngineSettings.h"
#include "zlib/common/objects/ZMailbox.h"

namespace orvane
{

class PsolaClass;

/// Brings settings from the interface to an engine that may be running: whole, and between two
/// blocks. One thread at a time posts, one at a time applies.
class KestruneEngineControl
{
public:
    /// In force from the next block on. [interface lock]
    void Post(const KestruneEngineSettings& settings) noexcept { mMailbox.Post(settings); }

    /// Tells a new engine all of the newest settings. [setup]
    void ApplyAll(PsolaClass& engine) noexcept;
    /// Tells the engine what is new: some setters are not free, others start something.
    /// [audio thread]
    void ApplyChanges(PsolaClass& engine) noexcept;

    /// What the engine has been told last. [audio thread]
    [[nodiscard]] const KestruneEngineSettings& InForce() const noexcept { return mInForce; }

private:
    ZMailbox<KestruneEngineSettings> mMailbox;
    KestruneEngineSettings mInForce;  // of the applying side
};

}  // namespace orvane
