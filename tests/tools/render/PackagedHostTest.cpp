// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginInstance.h"
#include "tools/render/RenderProgram.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

namespace fs = std::filesystem;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kNeedsSanitizer = true;
#else
constexpr bool kNeedsSanitizer = false;
#endif

/// The scanner of the host qtractor; empty where it is not installed.
fs::path hostScanner()
{
    std::vector<fs::path> folders{"/usr/lib", "/usr/local/lib", "/usr/libexec"};
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/usr/lib", error))
        folders.push_back(entry.path());
    for (const fs::path& folder : folders) {
        const fs::path scanner = folder / "qtractor" / "qtractor_plugin_scan";
        if (fs::exists(scanner, error))
            return scanner;
    }
    return {};
}

/// What a shell command writes.
std::string outputOf(const std::string& command)
{
    std::string output;
    std::FILE* const pipe = popen(command.c_str(), "r");
    std::array<char, 256> piece{};
    while (pipe && std::fgets(piece.data(), piece.size(), pipe))
        output += piece.data();
    EXPECT_TRUE(pipe && pclose(pipe) == 0) << command;
    return output;
}

const fs::path kLibrary = fs::path(KESTRUNE_RENDER_PROGRAM).parent_path() / "CantorelMini.so";

}  // namespace

TEST(PackagedHostTest, QtractorFindsTheEffectWithItsPortsAndParameters)
{
    const fs::path scanner = hostScanner();
    if (scanner.empty())
        GTEST_SKIP() << "the host qtractor is not installed";
    if (kNeedsSanitizer)
        GTEST_SKIP() << "no host loads a library that is built with a sanitizer";
    const std::string line =
        outputOf("echo 'vst:" + kLibrary.string() + "' | timeout 60 '" + scanner.string() + "'");
    // Kind, name, audio and MIDI ports, parameters, habits, file, index and id of the effect.
    const std::string pattern = "VST\\|CantorelMini\\|2:2\\|[^|]*\\|7:0\\|[^|]*\\|" +
                                kLibrary.string() + "\\|[^|]*\\|0x6f636d6e\n";
    EXPECT_TRUE(std::regex_match(line, std::regex(pattern))) << line;
}

TEST(PackagedHostTest, ArdourListsTheProgramsByTheirNames)
{
    const fs::path folder = "/usr/lib/ardour7";
    if (!fs::exists(folder / "ardour-vst-scanner") || !fs::exists("/usr/bin/ardour7-lua"))
        GTEST_SKIP() << "the host Ardour 7 is not installed";
    if (kNeedsSanitizer)
        GTEST_SKIP() << "no host loads a library that is built with a sanitizer";
    const PrivateFolder home;
    const std::string environment =
        "HOME='" + home.Path("") + "' LXVST_PATH='" + kLibrary.parent_path().string() + "' ";
    outputOf(environment + "LD_LIBRARY_PATH=" + folder.string() + " timeout 60 " +
             (folder / "ardour-vst-scanner").string() + " -f '" + kLibrary.string() + "' 2>&1");
    std::ofstream(home.Path("list.lua"))
        << "AudioEngine:set_backend('None (Dummy)', '', '')\n"
           "create_session('"
        << home.Path("session")
        << "', 'session', 48000)\n"
           "local info = ARDOUR.LuaAPI.new_plugin_info('CantorelMini', ARDOUR.PluginType.LXVST)\n"
           "for preset in info:get_presets(false):iter() do print('> ' .. preset.label) end\n"
           "close_session()\nquit()\n";
    const std::string said =
        outputOf(environment + "timeout 60 ardour7-lua '" + home.Path("list.lua") + "' 2>&1");
    const PluginInstance plugin(kLibrary);
    ASSERT_EQ(plugin.ProgramCount(), 7);
    for (int program = 0; program < plugin.ProgramCount(); ++program) {
        const std::string line =
            "> " + std::to_string(program) + " - " + plugin.ProgramName(program) + "\n";
        EXPECT_NE(said.find(line), std::string::npos) << line << said;
    }
}

}  // namespace orvane
