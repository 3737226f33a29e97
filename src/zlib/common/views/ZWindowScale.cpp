// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowScale.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/native/ZDisplayScale.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr const char* kSetting = "WindowScale";

bool isChoice(std::int32_t percent)
{
    return std::ranges::find(ZWindowScale::kChoices, percent) != ZWindowScale::kChoices.end();
}

/// The choice that is nearest to a scale.
double nearestChoice(double scale)
{
    const auto nearest =
        std::ranges::min_element(ZWindowScale::kChoices, {}, [=](std::int32_t percent) {
            return std::abs(percent / 100.0 - scale);
        });
    return *nearest / 100.0;
}

}  // namespace

std::optional<std::int32_t> ZWindowScale::GetChoice(const ZApp& app)
{
    std::int32_t percent = 0;
    if (!app.GetRegistryInt(kSetting, percent) || !isChoice(percent))
        return std::nullopt;
    return percent;
}

bool ZWindowScale::SetChoice(ZApp& app, std::int32_t percent)
{
    assert(percent == 0 || isChoice(percent));
    return app.SetRegistryInt(kSetting, percent);
}

void ZWindowScale::SetHost(double scale)
{
    if (scale > 0.0)
        mHost = std::clamp(scale, kLeastOfHost, kMostOfHost);
}

ZDeviceScale ZWindowScale::Find(const ZApp* app) const
{
    if (const auto choice = app ? GetChoice(*app) : std::nullopt)
        return ZDeviceScale(*choice / 100.0);
    if (mHost)
        return ZDeviceScale(*mHost);
    return ZDeviceScale(nearestChoice(readDisplayScale().value_or(1.0)));
}

}  // namespace orvane
