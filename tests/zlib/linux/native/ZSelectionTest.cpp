// SPDX-License-Identifier: GPL-3.0-or-later
// The clipboard between the library's windows and other programs.

#include "support/ClipboardProbe.h"
#include "support/DisplayTest.h"
#include "zlib/common/objects/ZClipboard.h"
#include "zlib/linux/native/ZDisplayConnection.h"

using namespace orvane;

namespace
{

using Texts = std::map<std::string, std::string>;

struct ZSelectionTest : DisplayTest
{
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
        locked([this] { connection = ZDisplayConnection::Get(); });
    }
    /// As when the last window closes.
    void CloseWindow()
    {
        locked([this] { connection.reset(); });
    }
    [[nodiscard]] static bool Write(const std::string& text)
    {
        return locked([&] { return ZClipboard::Get()->Write(text); });
    }
    void BeginRead()
    {
        ended = false;
        ZInterfaceThread::Post([this] {
            text = ZClipboard::Get()->Read(this);
            ended = true;
        });
    }
    /// What the library reads while the other program answers in parts of some bytes.
    std::optional<std::string> Read(std::size_t partBytes = 1U << 20)
    {
        BeginRead();
        EXPECT_TRUE(other->Serve([&] { return ended.load(); }, partBytes));
        return text;
    }

    std::optional<ClipboardProbe> other;
    std::shared_ptr<ZDisplayConnection> connection;
    std::atomic<bool> ended = false;
    std::optional<std::string> text;  // that was read
};

}  // namespace

TEST_F(ZSelectionTest, AnotherProgramPastesWhatWasCopiedAsText)
{
    const std::string written = "Skala \xc3\xa4 " + std::string(300000, 'x');
    ASSERT_TRUE(Write(written));
    EXPECT_EQ(other->PasteTargets(),
              (std::vector<std::string>{"TARGETS", "UTF8_STRING", "text/plain;charset=utf-8"}));
    EXPECT_EQ(other->Paste("UTF8_STRING"), written);
    EXPECT_EQ(other->Paste("text/plain;charset=utf-8"), written);
    EXPECT_EQ(other->Paste("image/png"), std::nullopt);
    ASSERT_TRUE(Write("later"));
    EXPECT_EQ(other->Paste("UTF8_STRING"), "later");
}

TEST_F(ZSelectionTest, TextOfAnotherProgramComesWholeOrInPartsUnlessItIsTooLong)
{
    std::string theirs;
    for (int i = 0; theirs.size() < 200000; ++i)
        theirs += std::to_string(i) + " ";
    ASSERT_TRUE(Write("ours"));
    other->Copy(Texts{{"UTF8_STRING", theirs}});
    for (const std::size_t partBytes : {theirs.size(), std::size_t{4096}, theirs.size() - 1})
        EXPECT_EQ(Read(partBytes), theirs) << "in parts of " << partBytes;
    other->Copy(Texts{{"UTF8_STRING", ""}});
    EXPECT_EQ(Read(), "");
    other->Copy(Texts{{"image/png", "no text"}});
    EXPECT_EQ(Read(), std::nullopt);
    const std::string most(std::size_t{32} << 20U, 'x');
    other->Copy(Texts{{"UTF8_STRING", most}});
    EXPECT_TRUE(Read(most.size()) == most);
    other->Copy(Texts{{"UTF8_STRING", most + "y"}});
    EXPECT_TRUE(Read(most.size() + 1) == std::nullopt);
    other->Copy(Texts{{"UTF8_STRING", "short"}});
    EXPECT_EQ(Read(), "short");
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

TEST_F(ZSelectionTest, AnAnswerThatComesTooLateIsNotTakenForTheNextOne)
{
    other->Copy(Texts{{"UTF8_STRING", ""}});
    for (const bool isLast : {false, true}) {
        BeginRead();
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
        text = "unset";
        BeginRead();
        ASSERT_TRUE(other->IgnoreRequest());
        if (byDisplay)
            display->Kill();
        else
            ZInterfaceThread::EndModalRuns(this);
        EXPECT_TRUE(waitFor([&] { return ended.load(); }));
        EXPECT_EQ(text, std::nullopt);
    }
}
