#include "tools/render/PluginInstance.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <sstream>
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

std::vector<std::string> fieldsOf(const std::string& line)
{
    std::vector<std::string> fields;
    std::istringstream text(line);
    for (std::string field; std::getline(text, field, '|');)
        fields.push_back(field);
    return fields;
}

}  // namespace

TEST(PackagedHostTest, QtractorFindsTheEffectWithItsPortsAndParameters)
{
    const fs::path scanner = hostScanner();
    if (scanner.empty())
        GTEST_SKIP() << "the host qtractor is not installed";
    if (kNeedsSanitizer)
        GTEST_SKIP() << "no host loads a library that is built with a sanitizer";
    const fs::path library = fs::path(KESTRUNE_RENDER_PROGRAM).parent_path() / "CantorelMini.so";
    const std::string line =
        outputOf("echo 'vst:" + library.string() + "' | timeout 60 '" + scanner.string() + "'");
    // Kind, name, audio and MIDI ports, parameters, habits, file, index and id of the effect.
    const std::vector<std::string> fields = fieldsOf(line);
    ASSERT_EQ(fields.size(), 9u) << line;
    const PluginInstance plugin(library);
    EXPECT_EQ(fields[0], "VST");
    EXPECT_EQ(fields[1], "CantorelMini");
    EXPECT_EQ(fields[2], "2:2");
    EXPECT_EQ(fields[4], std::to_string(plugin.ParameterCount()) + ":0");
    EXPECT_EQ(fields[6], library.string());
    EXPECT_EQ(fields[8], "0x6f636d6e\n");
}

}  // namespace orvane
