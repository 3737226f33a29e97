// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"

#include <filesystem>
#include <memory>

namespace orvane
{

/// A plug-in library in memory, for as long as the object lives.
class PluginLibrary
{
public:
    using EntryProc = AEffect* (*)(audioMasterCallback host);

    /// Loads a library and looks its entry up, as VSTPluginMain and then as main. Throws
    /// ZException where there is no such file, or no plug-in in it.
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

/// The product's library: beside this program, else in the folders where hosts look. Throws
/// ZException where it is in none of them.
[[nodiscard]] std::filesystem::path findProductLibrary();

}  // namespace orvane
