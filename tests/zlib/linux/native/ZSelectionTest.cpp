// SPDX-License-Identifier: GPL-3.0-or-later
// The clipboard between the library's windows and other programs.

#include "support/ClipboardProbe.h"
#include "support/DisplayTest.h"
#include "zlib/common/objects/ZClipboard.h"
#include "zlib/linux/native/ZDisplayConnection.h"

namespace orvane
{

namespace
{

using Texts = std::map<std::string, std::string>;

class ZSelectionTest : public DisplayTest
{
protected:
    void Begin() override
    {
        other.emplace();
        OpenWindow();
    }
    void TearDown() override
    {
        CloseWindow();
        other.reset();
    }

    void OpenWindow()
    {
        const ZInterfaceLock lock;
        connection = ZDisplayConnection::Get();
    }
    /// As when the last window closes.
    void CloseWindow()
    {
        const ZInterfaceLock lock;
        connection.reset();
    }
    [[nodiscard]] bool Write(const std::string& text)
    {
        const ZInterfaceLock lock;
        return ZClipboard::Get()->Write(text);
    }
    /// What the library reads while the other program answers in parts of some bytes.
    std::optional<std::string> Read(std::size_t partBytes = 1U << 20)
    {
        std::atomic<bool> ended = false;
        std::optional<std::string> text;
        ZInterfaceThread::Post([&] {
            text = ZClipboard::Get()->Read(this);
            ended = true;
        });
        EXPECT_TRUE(other->Serve([&] { return ended.load(); }, partBytes));
        return text;
    }

    std::optional<ClipboardProbe> other;
    std::shared_ptr<ZDisplayConnection> connection;
};

}  // namespace

TEST_F(ZSelectionTest, AnotherProgramPastesWhatWasCopiedAsText)
{
    const std::string text = "Skala \xc3\xa4 " + std::string(300000, 'x');
    ASSERT_TRUE(Write(text));
    EXPECT_EQ(other->PasteTargets(),
              (std::vector<std::string>{"TARGETS", "UTF8_STRING", "text/plain;charset=utf-8"}));
    EXPECT_EQ(other->Paste("UTF8_STRING"), text);
    EXPECT_EQ(other->Paste("text/plain;charset=utf-8"), text);
    EXPECT_EQ(other->Paste("image/png"), std::nullopt);
    ASSERT_TRUE(Write("later"));
    EXPECT_EQ(other->Paste("UTF8_STRING"), "later");
}

TEST_F(ZSelectionTest, TextOfAnotherProgramComesWholeOrInParts)
{
    std::string text;
    for (int i = 0; text.size() < 200000; ++i)
        text += std::to_string(i) + " ";
    ASSERT_TRUE(Write("ours"));
    other->Copy(Texts{{"UTF8_STRING", text}});
    EXPECT_EQ(Read(), text) << "whole";
    EXPECT_EQ(Read(4096), text) << "in parts";
    EXPECT_EQ(Read(text.size() - 1), text) << "in two parts";
    other->Copy(Texts{{"UTF8_STRING", ""}});
    EXPECT_EQ(Read(), "");
    other->Copy(Texts{{"image/png", "no text"}});
    EXPECT_EQ(Read(), std::nullopt);
}

TEST_F(ZSelectionTest, TheLibraryKeepsWhatItHasCopiedUntilAnotherProgramCopies)
{
    ASSERT_TRUE(Write("ours"));
    EXPECT_EQ(Read(), "ours");
    CloseWindow();
    EXPECT_EQ(other->Paste("UTF8_STRING"), std::nullopt) << "no program has the clipboard";
    OpenWindow();
    EXPECT_EQ(Read(), "ours");
    other->Copy(Texts{{"UTF8_STRING", "theirs"}});
    EXPECT_EQ(Read(), "theirs");
    ASSERT_TRUE(Write("ours again"));
    other->Copy(Texts{{"UTF8_STRING", "theirs"}});
    other.emplace();
    EXPECT_TRUE(waitFor([&] { return Read() == std::nullopt; })) << "theirs is gone, ours is old";
}

TEST_F(ZSelectionTest, ATextThatIsTooLongIsNotFetchedWhole)
{
    const std::string most(std::size_t{32} << 20U, 'x');
    other->Copy(Texts{{"UTF8_STRING", most}});
    EXPECT_TRUE(Read(most.size()) == most);
    other->Copy(Texts{{"UTF8_STRING", most + "y"}});
    EXPECT_TRUE(Read(most.size() + 1) == std::nullopt);
    other->Copy(Texts{{"UTF8_STRING", "short"}});
    EXPECT_EQ(Read(), "short");
}

TEST_F(ZSelectionTest, AnAnswerThatComesTooLateIsNotTakenForTheNextOne)
{
    other->Copy(Texts{{"UTF8_STRING", ""}});
    std::optional<std::string> text;
    for (const bool isLast : {false, true}) {
        std::atomic<bool> ended = false;
        ZInterfaceThread::Post([&] {
            text = ZClipboard::Get()->Read(this);
            ended = true;
        });
        ASSERT_TRUE(other->IgnoreRequest());
        if (isLast)
            for (const char* const answer : {"too late", "in time"})
                other->AnswerIgnored(answer);
        else
            ZInterfaceThread::EndModalRuns(this);
        EXPECT_TRUE(waitFor([&] { return ended.load(); }));
    }
    EXPECT_EQ(text, "in time");
}

TEST_F(ZSelectionTest, AWaitForASilentProgramEndsWithItsOwnerOrTheDisplay)
{
    other->Copy(Texts{{"UTF8_STRING", "never given"}});
    for (const bool byDisplay : {false, true}) {
        std::atomic<bool> ended = false;
        std::optional<std::string> text = "unset";
        ZInterfaceThread::Post([&] {
            text = ZClipboard::Get()->Read(this);
            ended = true;
        });
        ASSERT_TRUE(other->IgnoreRequest());
        if (byDisplay)
            display->Kill();
        else
            ZInterfaceThread::EndModalRuns(this);
        EXPECT_TRUE(waitFor([&] { return ended.load(); }));
        EXPECT_EQ(text, std::nullopt);
    }
}

}  // namespace orvane
