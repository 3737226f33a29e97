// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZSystemServices.h"

#include <cstdlib>
#include <string_view>

namespace orvane
{

namespace
{

/// The value of the first variable that is set, in the order in which POSIX reads them.
std::string_view messageLocale()
{
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value && *value)
            return value;
    }
    return {};
}

}  // namespace

bool GetWindowsVersion(std::int32_t& /*major*/, std::int32_t& /*minor*/)
{
    return false;
}

std::vector<std::string> GetUserLanguages()
{
    std::string_view locale = messageLocale();
    locale = locale.substr(0, locale.find_first_of(".@"));  // without encoding and modifier
    if (locale.empty() || locale == "C" || locale == "POSIX")
        return {};
    const std::string_view primary = locale.substr(0, locale.find('_'));
    if (primary == locale)
        return {std::string(locale)};
    return {std::string(locale), std::string(primary)};
}

}  // namespace orvane
