// SPDX-License-Identifier: GPL-3.0-or-later
#include "resources/KestruneResources.h"
#include "support/Test.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZResources.h"

#include <filesystem>
#include <fstream>

using namespace orvane;

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
    const std::size_t tag = std::min(text.find("<svg "), text.size());
    const auto attribute = [&](const std::string& key) {
        const std::size_t at = text.find(' ' + key + "=\"", tag);
        return at != std::string::npos ? std::atoi(text.c_str() + at + key.size() + 3) : 0;
    };
    return {attribute("width"), attribute("height")};
}

/// Red, green and blue of an opaque pixel, 0 to 255 each.
struct Colour
{
    int red, green, blue;
};

/// A picture with a rectangle of it, in units of the window.
struct Area
{
    const char* picture;
    int left, top, right, bottom;
};

/// The relative luminance of WCAG 2, from 0 to 1.
double luminance(const Colour& colour)
{
    const auto linear = [](int value) {
        const double part = value / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) +
           0.0722 * linear(colour.blue);
}

/// The luminances of an area at a scale, each once; all of its pixels have to be opaque.
std::set<double> luminancesOf(const Area& area, int scale)
{
    const auto picture =
        packedPicture(std::string(area.picture) + (scale == 2 ? "@2x.png" : ".png"));
    const auto pixels = picture->ReadPixels();
    std::set<double> luminances;
    for (int y = area.top * scale; y < area.bottom * scale; ++y) {
        for (int x = area.left * scale; x < area.right * scale; ++x) {
            const auto pixel =
                static_cast<int>(pixels[static_cast<std::size_t>(y * picture->GetWidth() + x)]);
            EXPECT_EQ(pixel >> 24, -1) << area.picture << " " << x << ", " << y;
            luminances.insert(luminance({pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255}));
        }
    }
    return luminances;
}

/// The least contrast ratio of WCAG 2, from 1 to 21, of any luminance to any of others.
double leastContrast(const std::set<double>& luminances, const std::set<double>& others)
{
    double least = 21.0;
    for (const double one : luminances)
        for (const double other : others)
            least = std::min(least, (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05));
    return least;
}

constexpr double kLegible = 4.5;  // what WCAG 2 asks of texts
constexpr double kVisible = 3.0;  // and of controls and their marks

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

TEST(ArtworkTest, MarksContrastWithWhatTheyStandOn)
{
    constexpr Area kPanel{"RedGradientBlackTop", 8, 90, 92, 420};
    std::vector<std::pair<Area, Area>> marks{
        {{"MetalHorizSliderThumb", 3, 4, 9, 13}, kPanel},
        {{"RedGradientBlackTop", 428, 125, 429, 385}, kPanel},  // the meter's rim
        {{"MetalHorizSliderThumb", 16, 5, 17, 12}, {"MetalHorizSliderThumb", 3, 5, 9, 12}},
        {{"nkl4_RedDot", 11, 65, 14, 68}, {"nk4", 6, 60, 19, 72}}};
    for (const char* box : {"GreenCheckBoxOn", "GreenCheckBoxOff", "CheckBoxDisabled"})
        for (const auto& [x, y] : {std::pair{7, 0}, {13, 6}, {7, 12}, {0, 6}})
            marks.push_back({{box, x, y, x + 1, y + 1}, kPanel});
    for (const char* key : {"nkl1_RedDot", "nkl2_RedDot", "nkl3_RedDot"})
        marks.push_back({{key, 17, 120, 23, 122}, {key, 5, 110, 11, 130}});
    for (const int scale : {1, 2})
        for (const auto& [mark, ground] : marks)
            EXPECT_GE(leastContrast(luminancesOf(mark, scale), luminancesOf(ground, scale)),
                      kVisible)
                << mark.picture << " " << mark.left << ", " << mark.top << " at " << scale;
}

TEST(ArtworkTest, TextsContrastWithThePicturesBelow)
{
    constexpr Colour kWhite{255, 255, 255};
    constexpr Colour kLabelGrey{179, 179, 179};
    std::vector<std::tuple<Colour, Area, double>> texts{
        {kLabelGrey, {"RedGradientBlackTop", 8, 90, 92, 420}, kLegible},
        {kLabelGrey, {"RedGradientBlackTop", 8, 48, 200, 78}, kLegible},
        {kWhite, {"nk4", 6, 10, 19, 40}, kLegible},
        {kWhite, {"GreenCheckBoxOn", 11, 7, 12, 9}, kVisible}};  // the tick
    for (const char* key : {"nk1", "nk2", "nk3", "nkd1", "nkd2", "nkd3", "nkd4"})
        texts.push_back({Colour{0, 0, 0}, {key, 18, 10, 20, 40}, kLegible});
    for (const int scale : {1, 2}) {
        for (const auto& [ink, ground, least] : texts)
            EXPECT_GE(leastContrast({luminance(ink)}, luminancesOf(ground, scale)), least)
                << ground.picture << " " << ground.left << ", " << ground.top << " at " << scale;
        // The left stem of the first letter of each label.
        for (const auto& [button, stem] :
             {std::pair{"Reset72_", 24}, {"Add_Scale72_", 15}, {"MIDI_Input72_", 22}})
            for (const char* state : {"Off", "Over", stem == 22 ? "On" : "Down"}) {
                const std::string name = std::string(button) + state;
                EXPECT_GE(leastContrast(luminancesOf({name.c_str(), stem, 6, stem + 1, 9}, scale),
                                        luminancesOf({name.c_str(), 66, 4, 68, 10}, scale)),
                          kLegible)
                    << name;
            }
    }
}
