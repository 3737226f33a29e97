// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/common/RunProgram.h"
#include "tools/resources/ArtworkTable.h"
#include "tools/resources/PixelFont.h"
#include "tools/resources/TrueTypeFile.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

using namespace orvane;

namespace
{

constexpr const char* kFontFamily = "Kolm 5pt";

struct Arguments
{
    std::string drawings;
    std::string resources;
};

void writeFont(const PixelFont& font, const std::filesystem::path& file)
{
    const std::vector<std::uint8_t> bytes = trueTypeFile(font, kFontFamily);
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    if (!out.flush())
        throw std::runtime_error("cannot write " + file.string());
}

void makeArtwork(const Arguments& arguments)
{
    const std::filesystem::path images = std::filesystem::path(arguments.resources) / "images";
    const std::filesystem::path fonts = std::filesystem::path(arguments.resources) / "fonts";
    std::filesystem::create_directories(images);
    std::filesystem::create_directories(fonts);
    const PixelFont font = PixelFont::read(arguments.drawings);
    for (const Artwork& artwork : artworkTable())
        writePng(paintArtwork(artwork, font).get(), images / artwork.name);
    writeFont(font, fonts / (std::string(kFontFamily) + ".ttf"));
}

}  // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    CLI::App app("Makes the pictures and the pixel font of the window.");
    app.add_option("DRAWINGS", arguments.drawings, "glyphs of the pixel font")->required();
    app.add_option("RESOURCES", arguments.resources, "folder that gets images and fonts")
        ->required();
    return runProgram("kestrune-artwork", app, argc, argv, [&] { makeArtwork(arguments); });
}
