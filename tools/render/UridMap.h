// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <lv2/urid/urid.h>

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace orvane
{

/// The numbers that a host gives to the names of LV2. [any thread but the audio thread]
class UridMap
{
public:
    UridMap() = default;
    UridMap(const UridMap&) = delete;
    UridMap& operator=(const UridMap&) = delete;

    /// Returns the number of a name, the same for each call.
    LV2_URID operator()(const std::string& uri)
    {
        const std::lock_guard lock(mMutex);
        const auto [entry, isNew] = mNumbers.try_emplace(uri, 0);
        if (isNew) {
            mNames.push_back(&entry->first);
            entry->second = static_cast<LV2_URID>(mNames.size());
        }
        return entry->second;
    }
    /// Returns the name of a number; null for one that was not given.
    [[nodiscard]] const char* Name(LV2_URID urid)
    {
        const std::lock_guard lock(mMutex);
        return urid >= 1 && urid <= mNames.size() ? mNames[urid - 1]->c_str() : nullptr;
    }

    // As a plug-in takes it; valid as long as this object.
    LV2_URID_Map map{this, [](LV2_URID_Map_Handle self, const char* uri) {
                         return (*static_cast<UridMap*>(self))(uri);
                     }};
    LV2_URID_Unmap unmap{this, [](LV2_URID_Unmap_Handle self, LV2_URID urid) {
                             return static_cast<UridMap*>(self)->Name(urid);
                         }};

private:
    std::mutex mMutex;
    std::map<std::string, LV2_URID> mNumbers;
    std::vector<const std::string*> mNames;  // keys of the map, which do not move
};

}  // namespace orvane
