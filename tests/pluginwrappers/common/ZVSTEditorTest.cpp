// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTEditor.h"

#include "pluginwrappers/common/ZVSTPlugin.h"
#include "support/BoxRecorder.h"
#include "support/SmallPlugin.h"
#include "support/TestHost.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLDocument.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace orvane
{

namespace
{

/// A window without a display, which records its messages and throws at a chosen step.
class BareWindow : public ZWindow
{
public:
    explicit BareWindow(const boost::shared_ptr<ZXMLElement>& xml)
        : ZWindow(xml, nullptr)
    {
    }

    bool Create(ZWindow* /*parent*/, ZNativeHandle /*nativeParent*/) override
    {
        FailAt("create");
        return true;
    }
    void Invalidate(const ZRect& /*rect*/) override {}
    void Show() override { FailAt("show"); }
    void Hide() override { FailAt("hide"); }
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        messages.push_back(message);
    }

    std::string failsAt;
    std::vector<boost::shared_ptr<const ZMessage>> messages;

private:
    void FailAt(const std::string& step) const
    {
        if (step == failsAt)
            throw ZException("No " + step);
    }
};

boost::shared_ptr<BareWindow> makeWindow()
{
    const std::string text =
        "<windowtype><rect left=\"0\" top=\"0\" width=\"64\" height=\"25\"></rect></windowtype>";
    return boost::make_shared<BareWindow>(
        ZXMLDocument(text.data(), static_cast<std::int32_t>(text.size())).GetChild(0));
}

class ZVSTEditorTest : public testing::Test
{
protected:
    /// With the shift key held.
    bool Press(int virt, int character)
    {
        window->messages.clear();
        VstKeyCode key{character, static_cast<std::uint8_t>(virt), 1};
        return editor.onKeyDown(key);
    }
    /// Returns the window's last message: "8", "16 shift", "text 5" or "nothing".
    [[nodiscard]] std::string Told() const
    {
        if (window->messages.empty())
            return "nothing";
        const ZMessage& message = *window->messages.back();
        ZString text;
        if (message.GetId() == ZTEXTINPUT && message.Find<ZString>("Text", text))
            return "text " + text.ToNarrow();
        std::uint8_t key = 0;
        bool shift = false;
        EXPECT_EQ(message.GetId(), ZKEYDOWN);
        EXPECT_TRUE(message.Find<std::uint8_t>("Key", key));
        EXPECT_TRUE(message.Find<bool>("shift", shift));
        return std::to_string(key) + (shift ? " shift" : "");
    }

    const ZInterfaceLock lock;
    BoxRecorder recorder;
    boost::shared_ptr<BareWindow> window = makeWindow();
    ZVSTEditor editor{nullptr, window};
};

}  // namespace

TEST_F(ZVSTEditorTest, AFailureIsReportedAndLeavesTheEditorClosed)
{
    int parent = 0;
    for (const char* const step : {"create", "show", "hide"}) {
        window->failsAt = step;
        EXPECT_EQ(editor.open(&parent), step == std::string("hide")) << step;
        editor.close();
        EXPECT_FALSE(editor.isOpen()) << step;
    }
    window->failsAt.clear();
    EXPECT_EQ(recorder.boxes.size(), 3u);
}

TEST_F(ZVSTEditorTest, TextAndEditingKeysReachTheWindowAndTheOthersStayWithTheHost)
{
    const std::tuple<int, int, const char*> rows[] = {
        {1, 'x', "8"},         {2, 'x', "9"},      {9, 'x', "35"},      {10, 'x', "36"},
        {11, 'x', "37"},       {12, 'x', "38"},    {13, 'x', "39"},     {14, 'x', "40"},
        {22, 'x', "46"},       {55, 'x', "17"},    {54, 0, "16 shift"}, {24, 0, "text 0"},
        {29, 'x', "text 5"},   {33, 0, "text 9"},  {19, 0, "text \3"},  {4, 0, "text \r"},
        {38, 0, "text ."},     {0, 'a', "text a"}, {0, 0xe9, "text é"}, {0, 0x141, "text A"},
        {23, 0, "nothing"},    {34, 0, "nothing"}, {7, 0, "nothing"},   {0, ' ', "nothing"},
        {0, 0x100, "nothing"}, {255, 0, "nothing"}};
    for (const auto& [virt, character, told] : rows) {
        const bool taken = Press(virt, character);
        EXPECT_EQ(Told(), told) << virt;
        EXPECT_EQ(taken, Told() != "nothing") << virt;
    }
}

TEST(ZVSTEditorlessTest, ADescriptionWithoutAWindowHasNoEditor)
{
    const ZInterfaceLock lock;
    ZVSTPlugin plugin(nullptr, SmallPlugin::Make());
    AEffect* const effect = plugin.getAeffect();
    EXPECT_EQ(effect->flags, 0x38);
    ERect* rect = nullptr;
    EXPECT_EQ(ask(effect, effEditGetRect, 0, 0, &rect), 0);
    EXPECT_EQ(rect, nullptr);
}

}  // namespace orvane
