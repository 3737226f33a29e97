// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneFonts.h"
#include "kestrune/common/views/ProductApplication.h"
#include "support/Test.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/views/ZWindowManager.h"

using namespace orvane;

namespace
{

std::int32_t widthIn(const char* typeface)
{
    Canvas canvas(10, 10);
    canvas.SetFont(boost::make_shared<ZFont>(typeface, 5));
    return canvas.StringWidth("PITCH RANGE:");
}

}  // namespace

TEST(MainWindowTest, LabelsUseTheFontThatTheLibraryCarries)
{
    const ZInterfaceLock lock;
    const auto product = startProduct();
    ASSERT_TRUE(product->GetFonts().empty());
    const std::int32_t fallback = widthIn("No Such Typeface");
    addProductFonts(*product);
    EXPECT_EQ(widthIn("No Such Typeface"), fallback);
    EXPECT_NE(widthIn("Kolm 5pt"), fallback);
}
