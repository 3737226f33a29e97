// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the descriptions of an LV2 bundle beside its library: lv2-bundle FOLDER LIBRARY

#include "pluginwrappers/core/PluginStart.h"
#include "pluginwrappers/core/ZPluginCore.h"
#include "tools/bundle/BundleText.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <memory>
#include <string>

namespace
{

using namespace orvane;

class OfflineShell : public ZPluginShell
{
    bool HostIsOffline() override { return true; }
};

void writeFile(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file)
        throw std::ios_base::failure(path + " cannot be written");
}

void writeBundle(const std::string& folder, const std::string& library)
{
    OfflineShell shell;
    std::unique_ptr<ZPluginCore> core;
    {
        const ZInterfaceLock lock;
        core = std::make_unique<ZPluginCore>(shell, startApplication());
        writeFile(folder + "/manifest.ttl", manifestText(*core, library));
        // Before the programs, since the values now are the defaults of the ports.
        writeFile(folder + "/plugin.ttl", pluginText(*core, library));
        writeFile(folder + "/presets.ttl", presetsText(*core));
        core->Release();
    }
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::fprintf(stderr, "usage: lv2-bundle FOLDER LIBRARY\n");
        return 2;
    }
    try {
        writeBundle(arguments[1], arguments[2]);
        return 0;
    } catch (const orvane::ZException& exception) {
        std::fprintf(stderr, "lv2-bundle: %s\n", exception.GetMessage().ToNarrow().c_str());
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "lv2-bundle: %s\n", exception.what());
    }
    return 1;
}
