// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZDeviceScale.h"

#include <array>
#include <cstdint>
#include <optional>

namespace orvane
{

class ZApp;

/// Decides on the device scale of a window. What the user has chosen counts first, then what the
/// host says, then what the display says, else it is 1. The user's choice stands in the user
/// settings as a percentage, 0 for none.
/// [interface thread, or any other but the audio thread under the interface lock]
class ZWindowScale
{
public:
    /// What the user can choose, in percent.
    static constexpr std::array<std::int32_t, 7> kChoices{100, 125, 150, 175, 200, 250, 300};
    /// The limits of what a host can say.
    static constexpr double kLeastOfHost = 0.5;
    static constexpr double kMostOfHost = 4.0;

    /// Returns the user's choice; nothing where there is none, and for other numbers than kChoices.
    [[nodiscard]] static std::optional<std::int32_t> GetChoice(const ZApp& app);
    /// Keeps one of kChoices, or 0 for none. Returns false when it cannot be stored.
    [[nodiscard]] static bool SetChoice(ZApp& app, std::int32_t percent);

    /// Takes what the host says, moved into the limits; a number that is not above 0 is ignored.
    void SetHost(double scale);
    /// Returns the scale that counts now. app may be null. Looks at the display, unless the user or
    /// the host has decided.
    [[nodiscard]] ZDeviceScale Find(const ZApp* app) const;

private:
    std::optional<double> mHost;
};

}  // namespace orvane
