// SPDX-License-Identifier: GPL-3.0-or-later
// The plain file dialog on a display of the test's own, with a user's keys.
#include "zlib/common/controls/ZFileChooserWindow.h"

#include "support/DisplayTest.h"
#include "support/PrivateFolder.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <atomic>

namespace orvane
{

namespace
{

class ZFileChooserWindowTest : public DisplayTest
{
protected:
    [[nodiscard]] xcb_window_t Dialog()
    {
        const auto windows = probe->GetChildren(probe->GetRoot());
        return windows.empty() ? xcb_window_t{XCB_NONE} : windows.back();
    }
    void OpenIn(const char* folder)
    {
        ended = false;
        const std::string home = folder;
        ZInterfaceThread::Post([this, home] {
            const EnvironmentVariable variable("HOME", home.c_str());
            ZFileRequest request;
            request.purpose = ZFileRequest::kSave;
            request.owner = this;
            chosen = ZFileChooserWindow::Run(request);
            ended = true;
        });
        ASSERT_TRUE(waitFor([this] {
            const auto place = Dialog() != XCB_NONE ? probe->GetPlace(Dialog()) : xcb_rectangle_t{};
            return place.x > 0 && probe->PixelAt(place.x + 5, place.y + 5) == 0x262629;
        }));
        probe->Focus(Dialog());
    }
    [[nodiscard]] bool Ends()
    {
        return waitFor([this] { return ended.load(); });
    }

    std::atomic<bool> ended{false};
    std::optional<std::string> chosen;
};

}  // namespace

TEST_F(ZFileChooserWindowTest, SavesUnderTheTypedNameAndEndsWithItsOwner)
{
    const PrivateFolder folder;
    OpenIn(folder.Path().c_str());
    probe->TypeKey(XKB_KEY_x);
    probe->TypeKey(XKB_KEY_Return);
    ASSERT_TRUE(Ends());
    EXPECT_EQ(chosen, folder.Path("x"));

    OpenIn(folder.Path().c_str());
    ZInterfaceThread::EndModalRuns(this);
    ASSERT_TRUE(Ends());
    EXPECT_EQ(chosen, std::nullopt);
}

}  // namespace orvane
