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
    const std::uint32_t rest = grace - std::min(grace, frames);
    // Fails when the window has just set it anew: then the new time counts from the next block on.
    const bool isCounted =
        grace > 0 && mGraceFrames.compare_exchange_strong(grace, rest, std::memory_order_relaxed);
    // What the port holds at the end is the host's word, even if it is what it held before: a host
    // that plays automation does not take the user's value.
    const bool isAnswered = isCounted && rest == 0;
    const bool isNews = isAnswered || (grace == 0 && value != mPort);
    if (!force && (!isNews || mIsHeld.load(std::memory_order_relaxed)))
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
