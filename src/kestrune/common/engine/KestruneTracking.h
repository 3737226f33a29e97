// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvane
{

/// How the engine follows a voice; the values are those of the element `tracking`.
enum class KestruneTracking : std::int32_t
{
    kClassic = 0,
    kFine = 1
};

/// Element `tracking`: the choices, by value of KestruneTracking.
inline constexpr std::array<std::string_view, 2> kTrackingNames{"Classic", "Fine"};

/// The tracking of a value of the element; any other value means classic. [any thread]
[[nodiscard]] constexpr KestruneTracking trackingOf(std::int32_t choice) noexcept
{
    return choice == 1 ? KestruneTracking::kFine : KestruneTracking::kClassic;
}

}  // namespace orvane
