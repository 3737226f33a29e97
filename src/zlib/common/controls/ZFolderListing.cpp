// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZFolderListing.h"

#include "zlib/common/objects/ZString.h"

#include <algorithm>
#include <system_error>
#include <tuple>

namespace orvane
{

namespace
{

std::string lowerCase(std::string text)
{
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

bool isShown(const std::string& name)
{
    return !name.starts_with('.') && ZString(name).ToNarrow() == name;
}

bool comesBefore(const ZFolderEntry& a, const ZFolderEntry& b)
{
    const std::string lowerA = lowerCase(a.name);
    const std::string lowerB = lowerCase(b.name);
    return std::tie(b.isFolder, lowerA, a.name) < std::tie(a.isFolder, lowerB, b.name);
}

}  // namespace

std::vector<ZFolderEntry> listFolder(const std::filesystem::path& folder,
                                     const std::string& extension)
{
    std::vector<ZFolderEntry> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error))
    {
        std::error_code gone;  // an entry may go while it is looked at
        const bool isFolder = it->is_directory(gone);
        const std::filesystem::path name = it->path().filename();
        const bool fits =
            extension.empty() || lowerCase(name.extension().string()) == "." + lowerCase(extension);
        if (isShown(name.string()) && (isFolder || (fits && it->is_regular_file(gone))))
            entries.push_back({name.string(), isFolder});
    }
    std::ranges::sort(entries, comesBefore);
    if (folder.has_relative_path())
        entries.insert(entries.begin(), {"..", true});
    return entries;
}

}  // namespace orvane
