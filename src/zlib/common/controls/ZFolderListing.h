// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvane
{

/// A line in the list of a file dialog.
struct ZFolderEntry
{
    std::string name;  // without its folder; ".." for the parent folder
    bool isFolder = false;

    bool operator==(const ZFolderEntry&) const = default;
};

/// Lists a folder for a file dialog: the parent, the folders, then the files with that extension,
/// each sorted without regard to case. The extension has no dot; the empty one fits every file.
/// Leaves out hidden entries and names that are no UTF-8. A folder that cannot be read lists only
/// its parent. [any thread but the audio thread]
[[nodiscard]] std::vector<ZFolderEntry> listFolder(const std::filesystem::path& folder,
                                                   const std::string& extension);

}  // namespace orvane
