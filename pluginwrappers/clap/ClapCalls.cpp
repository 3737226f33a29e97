// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/clap/ClapCalls.h"

#include "pluginwrappers/clap/ZCLAPPlugin.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace orvane
{

namespace
{

ZCLAPPlugin& pluginOf(const clap_plugin* record)
{
    assert(record != nullptr && record->plugin_data != nullptr);
    return *static_cast<ZCLAPPlugin*>(record->plugin_data);
}

}  // namespace

ZCLAPPlugin& onMainThread(const clap_plugin* record, const char* function)
{
    ZCLAPPlugin& plugin = pluginOf(record);
    plugin.GetHost().ExpectMainThread(function);
    return plugin;
}

ZCLAPPlugin& onAudioThread(const clap_plugin* record, const char* function)
{
    ZCLAPPlugin& plugin = pluginOf(record);
    plugin.GetHost().ExpectAudioThread(function);
    return plugin;
}

void writeText(char* target, std::size_t capacity, std::string_view text)
{
    if (capacity == 0)
        return;
    const std::size_t length = std::min(text.size(), capacity - 1);
    std::memcpy(target, text.data(), length);
    target[length] = '\0';
}

}  // namespace orvane
