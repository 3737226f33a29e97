// SPDX-License-Identifier: GPL-3.0-or-later
#include "resources/KestruneResources.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZResources.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <set>
#include <string>

namespace orvane
{

namespace
{

const std::filesystem::path kImages = KESTRUNE_IMAGES_FOLDER;

/// The names of the files with an extension, without it.
std::set<std::string> picturesOfKind(const char* extension)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kImages))
        if (entry.path().extension() == extension)
            names.insert(entry.path().stem().string());
    return names;
}

/// A picture as it is packed into the library; null if there is none or it is no PNG.
std::unique_ptr<ZImage> packedPicture(const std::string& name)
{
    const auto bytes = kestruneResources().Find("IMAGE", name);
    return bytes ? ZImage::Decode(*bytes) : nullptr;
}

/// The size that a source states in its first tag.
ZImage::Size sizeOfSource(const std::string& name)
{
    std::ifstream file(kImages / (name + ".svg"));
    const std::string text(std::istreambuf_iterator<char>(file), {});
    std::smatch size;
    const std::regex tag(R"re(<svg [^>]*width="(\d+)" height="(\d+)")re");
    if (!std::regex_search(text, size, tag))
        return {};
    return {std::stoi(size[1]), std::stoi(size[2])};
}

}  // namespace

// scripts/make-artwork draws what is missing; resources/CMakeLists.txt lists what is packed.
TEST(ArtworkTest, EveryPictureHasASourceAndIsPackedAtItsSizeAndAtTwiceThat)
{
    const std::set<std::string> sources = picturesOfKind(".svg");
    ASSERT_FALSE(sources.empty());
    std::set<std::string> expected;
    for (const std::string& name : sources) {
        const ZImage::Size size = sizeOfSource(name);
        for (const int scale : {1, 2}) {
            const std::string drawn = name + (scale == 2 ? "@2x" : "");
            expected.insert(drawn);
            const auto picture = packedPicture(drawn + ".png");
            ASSERT_NE(picture, nullptr) << drawn;
            EXPECT_EQ(picture->GetWidth(), scale * size.width) << drawn;
            EXPECT_EQ(picture->GetHeight(), scale * size.height) << drawn;
        }
    }
    EXPECT_EQ(picturesOfKind(".png"), expected);
}

}  // namespace orvane
