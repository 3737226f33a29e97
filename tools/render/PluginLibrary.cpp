// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginLibrary.h"

#include "tools/render/Failure.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace orvane
{

namespace
{

namespace fs = std::filesystem;

constexpr const char* kProductLibrary = "CantorelMini.so";

void* loaded(const fs::path& file)
{
    std::error_code error;
    if (!fs::exists(file, error))
        fail("{}: no such plug-in file", file.string());
    // dlopen searches the system's library folders for a name without a slash.
    void* const handle = ::dlopen(fs::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        fail("{} cannot be loaded: {}", file.string(), ::dlerror());
    return handle;
}

void* entryIn(void* handle, const fs::path& file)
{
    for (const char* name : {"VSTPluginMain", "main"}) {
        if (void* const entry = ::dlsym(handle, name))
            return entry;
    }
    if (::dlsym(handle, "lv2_descriptor"))
        fail("{} is the library of an LV2 plug-in: name its bundle instead, {}", file.string(),
             fs::absolute(file).parent_path().string());
    fail("{} is no plug-in: it has neither VSTPluginMain nor main", file.string());
}

/// Appends the folders of a colon-separated environment variable.
void addFolders(std::vector<fs::path>& folders, const char* variable)
{
    const char* const list = std::getenv(variable);
    std::istringstream words(list ? list : "");
    for (std::string folder; std::getline(words, folder, ':');) {
        if (!folder.empty())
            folders.emplace_back(folder);
    }
}

std::vector<fs::path> foldersOfHosts()
{
    std::vector<fs::path> folders;
    addFolders(folders, "VST_PATH");
    addFolders(folders, "LXVST_PATH");
    if (const char* const home = std::getenv("HOME"))
        folders.insert(folders.end(), {fs::path(home) / ".vst", fs::path(home) / ".lxvst"});
    folders.insert(folders.end(), {"/usr/lib/lxvst", "/usr/local/lib/lxvst", "/usr/lib/vst",
                                   "/usr/local/lib/vst"});
    return folders;
}

}  // namespace

void PluginLibrary::Unloader::operator()(void* handle) const
{
    ::dlclose(handle);
}

PluginLibrary::PluginLibrary(const fs::path& file)
    : mHandle(loaded(file))
    , mEntry(reinterpret_cast<EntryProc>(entryIn(mHandle.get(), file)))
{
}

fs::path findProductLibrary()
{
    std::error_code error;
    std::vector<fs::path> folders{fs::read_symlink("/proc/self/exe", error).parent_path()};
    const std::vector<fs::path> shared = foldersOfHosts();
    folders.insert(folders.end(), shared.begin(), shared.end());
    for (const fs::path& folder : folders) {
        if (fs::exists(folder / kProductLibrary, error))
            return folder / kProductLibrary;
    }
    fail("{} is neither beside the program nor where plug-ins are "
         "installed: name it with --plugin",
         kProductLibrary);
}

}  // namespace orvane
