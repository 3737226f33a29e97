// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZFile.h"

#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"
#include "zlib/common/objects/ZTempFile.h"

#include <boost/make_shared.hpp>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

using namespace orvane;

namespace
{

boost::shared_ptr<ZFile> fileAt(const std::string& path)
{
    return boost::make_shared<ZFile>("file", path, "xml");
}

/// A file with text in it, closed.
boost::shared_ptr<ZFile> fileWith(const std::string& path, const std::string& text)
{
    writeTextFile(path, text);
    return fileAt(path);
}

struct ZFileTest : testing::Test
{
    PrivateFolder mFolder;
};

}  // namespace

TEST_F(ZFileTest, OpenMakesMissingFilesAndEmptiesOthersOnlyOnRequest)
{
    for (const std::int32_t mode : {1, 2, 3}) {
        const std::string path = mFolder.Path(std::to_string(mode));
        const auto file = fileAt(path);
        EXPECT_TRUE(file->Open(mode, false));
        writeTextFile(path, "text");
        file->Close();
        EXPECT_TRUE(file->Open(mode, false));
        EXPECT_EQ(file->GetSize(), 4) << mode;
        file->Close();
        EXPECT_TRUE(file->Open(mode, true));
        EXPECT_EQ(file->GetSize(), 0) << mode;
    }
}

TEST_F(ZFileTest, OpenFailsWithoutWaitingForPipesAndFolders)
{
    const std::string pipe = mFolder.Path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {std::string(), mFolder.Path(), mFolder.Path("none/file"), pipe})
    {
        const auto file = fileAt(path);
        EXPECT_FALSE(file->Open(ZFile::kModeWrite, false)) << path;
        EXPECT_EQ(file->GetMode(), ZFile::kModeClosed);
    }
    char byte = 0;
    const auto reader = fileAt(pipe);
    ASSERT_TRUE(reader->Open(ZFile::kModeRead, false)) << "without waiting for the other end";
    EXPECT_EQ(reader->Read(&byte, 1), 0);
}

TEST_F(ZFileTest, ExistsFollowsLinksToTheirFile)
{
    writeTextFile(mFolder.Path("file"), "");
    std::filesystem::create_symlink("nowhere", mFolder.Path("dangling"));
    std::filesystem::create_symlink("circle", mFolder.Path("circle"));
    for (const char* name : {"file", ""})
        EXPECT_TRUE(fileAt(mFolder.Path(name))->Exists()) << name;
    for (const char* name : {"missing", "file/below", "dangling", "circle"})
        EXPECT_FALSE(fileAt(mFolder.Path(name))->Exists()) << name;
}

TEST_F(ZFileTest, ReadsBackWhatItWroteAndReportsFailures)
{
    const auto file = fileAt(mFolder.Path("größe ♪"));
    char text[8] = {};
    std::int32_t number = 0;
    std::int16_t half = 0;
    expectZException("Unknown File Mode", [&] { file->Open(4, true); });
    expectZException("Unable to seek file as it has not been opened", [&] { file->Seek(0); });
    expectZException("Unable to read file.", [&] { file->Read(text, 1); });

    ASSERT_TRUE(file->Open(ZFile::kModeReadWrite, true));
    file->WriteLong(-123456789);
    file->WriteShort(-1234);
    EXPECT_EQ(file->Write("abcdef", 6), 6);
    EXPECT_EQ(file->GetPosition(), 12);
    const ZFile copy(*file);
    EXPECT_TRUE(copy.Equals(*file)) << "names the same file";
    EXPECT_FALSE(copy.IsOpen());
    EXPECT_FALSE(copy.Equals(*fileAt(mFolder.Path("other"))));
    file->Seek(0);
    file->ReadLong(number);
    file->ReadShort(half);
    EXPECT_TRUE(number == -123456789 && half == -1234);
    EXPECT_EQ(file->Read(text, 8), 6);
    EXPECT_STREQ(text, "abcdef");
    expectZException("Unable to read file.", [&] { file->ReadShort(half); });
    expectZException("Unable to seek file", [&] { file->Seek(-1); });

    const auto full = fileAt("/dev/full");
    ASSERT_TRUE(full->Open(ZFile::kModeWrite, false));
    expectZException("Unable to read file open write-only.", [&] { full->Read(text, 1); });
    expectZException("Unable to write to file.", [&] { full->WriteLong(1); });
}

TEST_F(ZFileTest, CopyReplacesAFileOnlyWithOverwrite)
{
    const auto file = fileWith(mFolder.Path("file"), "text");
    const std::string text(200000, 'x');
    const auto from = fileWith(mFolder.Path("from"), text);
    std::filesystem::create_hard_link(mFolder.Path("file"), mFolder.Path("twin"));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(file->CopyTo(file, true));
    EXPECT_FALSE(file->CopyTo(fileAt(mFolder.Path("twin")), true));
    EXPECT_FALSE(fileAt(mFolder.Path("missing"))->CopyTo(file, true));
    // A file that opens, but whose first byte cannot be read.
    EXPECT_FALSE(fileAt("/proc/self/mem")->CopyTo(fileAt(mFolder.Path("new")), true));
    EXPECT_FALSE(from->CopyTo(file, false));
    EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with("Last Error = 17"));
    EXPECT_EQ(readTextFile(mFolder.Path("file")), "text");
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("new")));

    EXPECT_TRUE(from->CopyTo(file, true));
    EXPECT_EQ(readTextFile(mFolder.Path("file")), text);
}

TEST_F(ZFileTest, ReplaceContentKeepsLinksAndPermissions)
{
    const std::string path = mFolder.Path("file");
    writeTextFile(path, "old");
    chmod(path.c_str(), 0640);
    std::filesystem::create_symlink("file", mFolder.Path("link"));
    EXPECT_TRUE(fileAt(mFolder.Path("link"))->ReplaceContent("new"));
    EXPECT_EQ(readTextFile(path), "new");
    struct stat status = {};
    ASSERT_EQ(lstat(mFolder.Path("link").c_str(), &status), 0);
    EXPECT_TRUE(S_ISLNK(status.st_mode));
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);

    EXPECT_FALSE(fileAt(mFolder.Path("none/file"))->ReplaceContent("x"));
    expectZException("Unable to write to file.",
                     [] { static_cast<void>(fileAt("/dev/full")->ReplaceContent("x")); });
}

TEST_F(ZFileTest, FullDiskLeavesTheOldContent)
{
    const std::string path = mFolder.Path("file");
    const auto file = fileWith(path, "old");
    // A limit on the size of files, which makes a write fail after some bytes as a full disk does.
    rlimit limit = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small = {4096, limit.rlim_max};
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    expectZException("Unable to write to file.",
                     [&] { static_cast<void>(file->ReplaceContent(std::string(100000, 'x'))); });
    setrlimit(RLIMIT_FSIZE, &limit);
    signal(SIGXFSZ, handler);
    EXPECT_EQ(readTextFile(path), "old");
    EXPECT_EQ(mFolder.Count(), 1);
}

TEST_F(ZFileTest, MovesToAndExchangesWithAnotherVolume)
{
    struct stat here = {};
    struct stat there = {};
    if (stat(mFolder.Path().c_str(), &here) != 0 || stat("/dev/shm", &there) != 0 ||
        here.st_dev == there.st_dev || access("/dev/shm", W_OK) != 0)
        GTEST_SKIP() << "no second volume to write to";
    const PrivateFolder other("/dev/shm");
    const auto from = fileWith(mFolder.Path("from"), "new");
    chmod(mFolder.Path("from").c_str(), 0640);
    const auto to = fileWith(other.Path("to"), "old");
    EXPECT_TRUE(from->MoveTo(to, true));
    EXPECT_FALSE(from->Exists());
    EXPECT_EQ(readTextFile(other.Path("to")), "new");
    ASSERT_EQ(stat(other.Path("to").c_str(), &there), 0);
    EXPECT_EQ(there.st_mode & 0777, 0640u);

    EXPECT_TRUE(fileWith(mFolder.Path("from"), "here")->Exchange(to));
    EXPECT_EQ(readTextFile(mFolder.Path("from")), "new");
    EXPECT_EQ(readTextFile(other.Path("to")), "here");
    EXPECT_EQ(mFolder.Count() + other.Count(), 2) << "no temporary file stays";
}

TEST_F(ZFileTest, TemporaryFileExistsUntilItsObjectIsDestroyed)
{
    const auto xml = boost::make_shared<ZString>("xml");
    const EnvironmentVariable temporary("TMPDIR", mFolder.Path().c_str());
    boost::shared_ptr<ZFile> file;
    MakeTempFile(xml, file);
    ASSERT_NE(file, nullptr);
    const std::string path = file->GetPath().ToNarrow();
    EXPECT_TRUE(path.starts_with(mFolder.Path("sop")) && path.ends_with(".xml")) << path;
    EXPECT_EQ(mFolder.Count(), 1);
    file.reset();
    EXPECT_EQ(mFolder.Count(), 0);

    const EnvironmentVariable nowhere("TMPDIR", mFolder.Path("missing").c_str());
    expectZException("Unable to GetTempPath.", [&] { MakeTempFile(xml, file); });
    EXPECT_EQ(file, nullptr);
}
