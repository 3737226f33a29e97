// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

class ZGraphics;

/// The result of ZDrawingContext::SaveState: the level of a saved state of the target, and the
/// scales that belong to the saved transform. [interface thread]
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

    const ZGraphics* mGraphics;  // only compared, never dereferenced: the target may be destroyed
    std::int32_t mLevel;
    float mHorizontalScale;
    float mVerticalScale;
};

}  // namespace orvane
