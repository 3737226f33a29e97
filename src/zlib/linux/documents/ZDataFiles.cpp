// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZDataFiles.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <system_error>
#include <vector>

namespace orvane
{

namespace
{

std::string variableOr(const char* name, std::string_view absent)
{
    const char* const value = std::getenv(name);
    return std::string(value && *value ? value : absent);
}

/// Returns the folder of the library or program that contains this code.
std::filesystem::path ownFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&findDataFile), &info) == 0 || !info.dli_fname)
        return {};
    return std::filesystem::path(info.dli_fname).parent_path();
}

/// Returns the data folders of the XDG base directories: the user's, then the system's in order.
std::vector<std::filesystem::path> dataFolders()
{
    const std::string home = variableOr("HOME", "");
    std::vector<std::filesystem::path> folders = {
        variableOr("XDG_DATA_HOME", home.empty() ? "" : home + "/.local/share")};
    std::istringstream system(variableOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share"));
    for (std::string folder; std::getline(system, folder, ':');)
        folders.emplace_back(folder);
    return folders;
}

}  // namespace

std::optional<std::string> findDataFile(const std::string& name)
{
    std::vector<std::filesystem::path> places = {ownFolder() / name};
    for (const auto& folder : dataFolders())
        // A relative folder would depend on the host's working directory; XDG ignores it too.
        if (folder.is_absolute())
            places.push_back(folder / "Orvane" / name);
    std::error_code error;
    for (const auto& place : places)
        if (std::filesystem::is_regular_file(place, error))
            return place.string();
    return std::nullopt;
}

}  // namespace orvane
