// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"

#include <filesystem>
#include <memory>

namespace orvane
{

/// A plug-in library that stays loaded for the life of the object.
class PluginLibrary
{
public:
    using EntryProc = AEffect* (*)(audioMasterCallback host);

    /// Loads a library and finds its entry function: VSTPluginMain, or else main. Throws ZException
    /// when the file does not exist or is not a plug-in.
    explicit PluginLibrary(const std::filesystem::path& file);

    [[nodiscard]] EntryProc Entry() const { return mEntry; }

private:
    struct Unloader
    {
        void operator()(void* handle) const;
    };

    std::unique_ptr<void, Unloader> mHandle;
    EntryProc mEntry;
};

/// Finds the product's library beside this program or else in the folders that hosts search. Throws
/// ZException when it is in none of them.
[[nodiscard]] std::filesystem::path findProductLibrary();

}  // namespace orvane
