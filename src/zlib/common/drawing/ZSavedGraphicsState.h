// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

class ZGraphics;

/// What ZDrawingContext::SaveState hands out: a mark in the target's saved states, with the scales
/// that belong to the transform it keeps.
class ZSavedGraphicsState
{
    friend class ZDrawingContext;

    ZSavedGraphicsState(const ZGraphics* graphics, std::int32_t level, float horizontalScale,
                        float verticalScale)
        : mGraphics(graphics)
        , mLevel(level)
        , mHorizontalScale(horizontalScale)
        , mVerticalScale(verticalScale)
    {
    }

    const ZGraphics* mGraphics;  // to be compared, not to be used: it may be gone
    std::int32_t mLevel;
    float mHorizontalScale;
    float mVerticalScale;
};

}  // namespace orvane
