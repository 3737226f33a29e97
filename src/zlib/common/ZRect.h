#pragma once

#include <cstdint>

namespace orvane
{

/// A rectangle in pixels by its edges; right and bottom are the first pixels outside.
struct ZRect
{
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    bool operator==(const ZRect&) const = default;
};

}  // namespace orvane
