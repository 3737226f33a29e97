// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZDialog.h"

#include "support/ExpectZException.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZResources.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

namespace orvane
{

namespace
{

constexpr std::string_view kBare = "<windowtype></windowtype>";
constexpr std::string_view kUnsigned =
    "<?xml version=\"1.0\" standalone=\"yes\" ?>\n<windowtype></windowtype>\n";

}  // namespace

TEST(ZDialogTest, RefusesAResourceThatIsNoSignedDialog)
{
    const std::array entries{
        ZResources::Entry{"XML", "Bare", kBare.begin(), kBare.end()},
        ZResources::Entry{"XML", "Unsigned", kUnsigned.begin(), kUnsigned.end()},
    };
    const ZResources resources{entries};
    const ZInterfaceLock lock;
    const auto app = makePlugin(resources);
    expectZException("WindowManager failed to load XML dialog resource.",
                     [&] { ZDialog(*app, "None"); });
    expectZException("A resource file does not begin with a valid XML document declaration.",
                     [&] { ZDialog(*app, "Bare"); });
    expectZException(ZException::kBadSignature,
                     "XML setup file does not contain a valid signature.",
                     [&] { ZDialog(*app, "Unsigned"); });
}

}  // namespace orvane
