// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/lv2/ZLV2Parameter.h"

#include "pluginwrappers/core/HostParameter.h"
#include "zlib/common/elements/ZElement.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

namespace orvane
{

ZLV2Parameter::ZLV2Parameter(boost::shared_ptr<ZElement> element)
    : mElement(std::move(element))
    , mPort(plainValueOf(*mElement))
    , mKnown(mPort)
    , mGraceFrames(0)
{
    assert(mElement);
}

bool ZLV2Parameter::ReadPort(float value, bool force, std::uint32_t frames) noexcept
{
    std::uint32_t grace = mGraceFrames.load(std::memory_order_relaxed);
    // Fails when the window has just set it anew: then the new time counts from the next block on.
    if (grace > 0)
        mGraceFrames.compare_exchange_strong(grace, grace - std::min(grace, frames),
                                             std::memory_order_relaxed);
    if (!force && (value == mPort || grace > 0 || mIsHeld.load(std::memory_order_relaxed)))
        return false;
    if (std::isnan(value))
        return false;
    mPort = value;
    const bool isChanged = setPlainFromHost(*mElement, value);
    mKnown.store(plainValueOf(*mElement), std::memory_order_relaxed);
    return isChanged;
}

std::optional<float> ZLV2Parameter::TakeNews(std::uint32_t graceFrames) noexcept
{
    const float value = plainValueOf(*mElement);
    if (value == mKnown.load(std::memory_order_relaxed))
        return std::nullopt;
    mGraceFrames.store(graceFrames, std::memory_order_relaxed);
    mKnown.store(value, std::memory_order_relaxed);
    return value;
}

}  // namespace orvane
