#include "kestrune/ProductApplication.h"
#include "kestrune/common/KestruneFonts.h"
#include "support/PrivateFolder.h"
#include "zlib/Canvas.h"
#include "zlib/common/ZElement.h"
#include "zlib/common/ZFont.h"
#include "zlib/common/ZInterfaceLock.h"
#include "zlib/common/ZView.h"
#include "zlib/common/ZWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

struct Row
{
    const char* name;
    const char* className;
    const char* parent;
    ZRect bounds;  // left, top, width, height
    const char* element = "";
};

// The window as users and the pictures know it, in the order in which it is painted.
constexpr Row kRows[] = {
    {"Background", "ZPluginBackgroundClass", "main", {-2, -2, 456, 432}},
    {"ProductLogo", "ZPluginLogoViewClass", "Background", {10, 5, 150, 25}},
    {"OrvaneLogo", "ZViewClass", "Background", {414, 3, 31, 27}},
    {"SourceLabel", "ZStringViewClass", "Background", {14, 47, 96, 10}},
    {"TypeMenu", "ZMetalPopupMenuClass", "Background", {12, 57, 170, 20}, "sourceType"},
    {"WorkArea", "ZViewClass", "Background", {5, 86, 444, 330}},
    {"Transpose Group", "ZBevelViewClass", "WorkArea", {6, 2, 387, 58}},
    {"Transpose Enable", "ZCheckBoxClass", "Transpose Group", {6, 5, 100, 14}, "transposeOnOff"},
    {"TransposePitchLabel", "ZStringViewClass", "Transpose Group", {8, 32, 30, 10}},
    {"TransposePitchPopup",
     "ZMetalPopupMenuClass",
     "Transpose Group",
     {40, 26, 110, 20},
     "pitchTranspose"},
    {"TransposePitchLabel", "ZStringViewClass", "Transpose Group", {161, 32, 25, 10}},
    {"TransposeFormantPopup",
     "ZMetalPopupMenuClass",
     "Transpose Group",
     {188, 26, 100, 20},
     "formantTranspose"},
    {"Pitch Correction Group", "ZBevelViewClass", "WorkArea", {6, 68, 387, 262}},
    {"Pitch Correction Enable",
     "ZCheckBoxClass",
     "Pitch Correction Group",
     {6, 5, 120, 14},
     "pitchCorrectionOnOff"},
    {"ScaleLabel", "ZStringViewClass", "Pitch Correction Group", {153, 47, 46, 10}},
    {"ScaleMenu", "ZMetalPopupMenuClass", "Pitch Correction Group", {188, 40, 100, 20}, "scale"},
    {"KeyLabel", "ZStringViewClass", "Pitch Correction Group", {297, 47, 46, 10}},
    {"KeyMenu", "ZMetalPopupMenuClass", "Pitch Correction Group", {320, 40, 47, 20}, "key"},
    {"PitchCorrectionTimeLabel", "ZStringViewClass", "Pitch Correction Group", {15, 33, 94, 10}},
    {"PitchCorrectionTimeSlider",
     "ZMetalSliderClass",
     "Pitch Correction Group",
     {6, 42, 110, 20},
     "pitchCorrectionTime"},
    {"MorePitchCorrectionLabel", "ZStringViewClass", "Pitch Correction Group", {6, 62, 27, 10}},
    {"LessPitchCorrectionLabel", "ZStringViewClass", "Pitch Correction Group", {93, 62, 27, 10}},
    {"IgnoreKeysLabel", "ZStringViewClass", "Pitch Correction Group", {3, 90, 75, 10}},
    {"IgnoreKeys", "KestruneIgnoreKeysViewClass", "Pitch Correction Group", {87, 85, 296, 21}},
    {"CustomScaleLabel", "ZStringViewClass", "Pitch Correction Group", {8, 135, 75, 10}},
    {"AcceptsMIDIButton",
     "ZBitmapButtonClass",
     "Pitch Correction Group",
     {7, 151, 74, 17},
     "AcceptMIDI"},
    {"CustomScaleCancelButton", "ZBitmapButtonClass", "Pitch Correction Group", {7, 172, 74, 17}},
    {"CustomScaleDoneButton", "ZBitmapButtonClass", "Pitch Correction Group", {7, 193, 74, 17}},
    {"PianoKeyboard", "KestruneKeyboardViewClass", "Pitch Correction Group", {87, 106, 296, 147}},
    {"MeterContainer", "ZViewClass", "WorkArea", {395, 4, 42, 360}},
    {"correctionMeterLabel", "ZStringViewClass", "MeterContainer", {6, 6, 36, 20}},
    {"correctionMeter",
     "KestruneCorrectionMeterClass",
     "MeterContainer",
     {0, 30, 42, 270},
     "correctionMeter"},
};

void collect(const ZView& view, std::vector<boost::shared_ptr<ZView>>& out)
{
    for (std::int32_t i = 0; i < view.GetSubviewCount(); ++i) {
        out.push_back(view.SubviewAt(i));
        collect(*view.SubviewAt(i), out);
    }
}

/// The mean of each channel over squares of 8 by 8 pixels, row by row: what stays when another
/// version of the font library shades the edges of letters otherwise.
std::vector<std::array<double, 3>> meansOf(const ZImage& image)
{
    constexpr std::int32_t kSide = 8;
    const std::int32_t columns = (image.GetWidth() + kSide - 1) / kSide;
    const std::int32_t rows = (image.GetHeight() + kSide - 1) / kSide;
    std::vector<std::array<double, 3>> means(static_cast<std::size_t>(columns * rows));
    const auto pixels = image.GetPremultipliedPixels();
    for (std::int32_t y = 0; y < image.GetHeight(); ++y)
        for (std::int32_t x = 0; x < image.GetWidth(); ++x) {
            const auto pixel = pixels[static_cast<std::size_t>(y * image.GetWidth() + x)];
            auto& mean = means[static_cast<std::size_t>(y / kSide * columns + x / kSide)];
            for (std::size_t i = 0; i < mean.size(); ++i)
                mean[i] += (pixel >> (8 * i) & 0xFF) / double{kSide * kSide};
        }
    return means;
}

bool areAlike(const std::array<double, 3>& a, const std::array<double, 3>& b)
{
    constexpr double kTolerance = 24.0;
    return std::equal(a.begin(), a.end(), b.begin(),
                      [](double x, double y) { return std::abs(x - y) < kTolerance; });
}

std::string elementOf(const ZView& view)
{
    const auto element = view.GetElement();
    return element ? element->GetName() : "";
}

/// The shipped product with its window, as the host shell starts it.
class MainWindowTest : public testing::Test
{
protected:
    const ZInterfaceLock mLock;
    const std::unique_ptr<ZPlugin> mProduct = startProduct();
    ZWindow& mWindow = *mProduct->GetMainWindow();
};

std::int32_t widthIn(const char* typeface)
{
    Canvas canvas(10, 10);
    canvas.SetFont(boost::make_shared<ZFont>(typeface, 5));
    return canvas.StringWidth("PITCH RANGE:");
}

}  // namespace

TEST_F(MainWindowTest, IsBuiltWithItsDocumentAndWaitsForAHost)
{
    EXPECT_EQ(mWindow.GetName(), "KestruneWindow");
    EXPECT_EQ(mWindow.GetRootView()->GetBounds(), (ZRect{0, 0, 454, 430}));
    EXPECT_TRUE(mWindow.IsChild());
    EXPECT_FALSE(mWindow.IsResizable());
    EXPECT_EQ(mWindow.GetMaxFramesPerSecond(), 12);
    EXPECT_EQ(mWindow.GetDocument(), mProduct->GetCurrentDocument().get());
    EXPECT_NE(mWindow.FindDocumentMap(*mProduct->GetCurrentDocument()), nullptr);
    EXPECT_FALSE(mWindow.IsAttached());
    EXPECT_EQ(mWindow.GetNativeWindow(), nullptr);
    EXPECT_EQ(mWindow.GetFrameTimer(), ZWindow::kNoTimer);
}

TEST_F(MainWindowTest, HoldsItsViewsInOrder)
{
    std::vector<boost::shared_ptr<ZView>> views;
    collect(*mWindow.GetRootView(), views);
    ASSERT_EQ(views.size(), std::size(kRows));
    for (std::size_t i = 0; i < views.size(); ++i) {
        const Row& row = kRows[i];
        const ZRect bounds = views[i]->GetBounds();
        SCOPED_TRACE(row.name);
        EXPECT_EQ(views[i]->GetName(), row.name);
        EXPECT_STREQ(views[i]->GetClassName(), row.className);
        EXPECT_EQ(views[i]->GetParent()->GetName(), row.parent);
        EXPECT_EQ((ZRect{bounds.left, bounds.top, bounds.GetWidth(), bounds.GetHeight()}),
                  row.bounds);
        EXPECT_EQ(elementOf(*views[i]), row.element);
    }
    EXPECT_EQ(mWindow.GetRootView()->FindSubview("TransposePitchLabel"), views[8]);
}

TEST_F(MainWindowTest, ItsLabelsAreSetInTheFontThatTheLibraryCarries)
{
    ASSERT_TRUE(mProduct->GetFonts().empty());
    const std::int32_t fallback = widthIn("No Such Typeface");
    addProductFonts(*mProduct);
    EXPECT_EQ(widthIn("No Such Typeface"), fallback);
    EXPECT_NE(widthIn("Kolm 5pt"), fallback);
}

// The picture is what `kestrune-render --window` makes; it is made anew when the window is meant to
// look otherwise.
TEST_F(MainWindowTest, LooksAsItDid)
{
    addProductFonts(*mProduct);
    const auto now = meansOf(*mWindow.RenderOffscreen().GetNative());
    const std::string png = readTextFile(KESTRUNE_WINDOW_PICTURE);
    const auto stored = ZImage::Decode(std::as_bytes(std::span(png)));
    ASSERT_NE(stored, nullptr);
    const auto then = meansOf(*stored);
    ASSERT_EQ(now.size(), then.size());
    std::size_t unlike = 0;
    for (std::size_t i = 0; i < now.size(); ++i)
        unlike += areAlike(now[i], then[i]) ? 0 : 1;
    EXPECT_LE(unlike, 2u) << "squares of " << now.size();
}

}  // namespace orvane
