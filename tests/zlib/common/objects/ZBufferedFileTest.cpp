// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZBufferedFile.h"

#include "support/BoxRecorder.h"
#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"
#include "support/TextMutation.h"

using namespace orvane;

namespace
{

/// Opens the file in a random mode and makes random calls on it and on disk, the expected content.
/// A read may stop before the last byte.
void expectPlainSession(ZBufferedFile& file, std::string& disk, std::mt19937& random)
{
    const auto mode = static_cast<std::int32_t>(pick(random, 3)) + 1;
    SCOPED_TRACE("mode " + std::to_string(mode));
    ASSERT_TRUE(file.Open(mode, false));
    for (int call = 0; call < 12; ++call) {
        const auto position = static_cast<std::size_t>(file.GetPosition());
        const std::size_t bytes = pick(random, pick(random, 4) == 0 ? 70 : 9);
        const auto count = static_cast<std::int32_t>(bytes);
        const std::size_t kind = pick(random, 3);
        if (kind == 0 && !disk.empty()) {
            file.Seek(static_cast<std::int64_t>(pick(random, disk.size())));
        } else if (kind == 1 && mode != ZFile::kModeWrite) {
            std::string read(bytes, '?');
            read.resize(static_cast<std::size_t>(file.Read(read.data(), count)));
            ASSERT_EQ(read, disk.substr(std::min(position, disk.size()), read.size()));
            ASSERT_GE(position + read.size() + 1, std::min(position + bytes, disk.size()));
        } else if (kind == 2 && mode != ZFile::kModeRead) {
            const std::string text(bytes, static_cast<char>('a' + pick(random, 26)));
            ASSERT_EQ(file.Write(text.data(), count), count);
            disk.resize(std::max(disk.size(), position + bytes));
            disk.replace(position, bytes, text);
        }
        ASSERT_EQ(file.GetFileSize(), static_cast<std::int64_t>(disk.size()));
    }
    file.Close();
}

}  // namespace

TEST(ZBufferedFileTest, RandomReadsAndWritesMatchAPlainString)
{
    const PrivateFolder folder;
    const std::string path = folder.Path("file");
    for (const std::int32_t bufferSize : {1, 2, 3, 8, 50}) {
        for (std::uint32_t seed = 1; seed <= 40; ++seed) {
            SCOPED_TRACE(testing::Message() << "buffer of " << bufferSize << ", seed " << seed);
            writeTextFile(path, "");
            std::string disk;
            std::mt19937 random(seed);
            ZBufferedFile file(ZFile("name", path, "raw"), bufferSize);
            for (int session = 0; session < 10; ++session) {
                ASSERT_NO_FATAL_FAILURE(expectPlainSession(file, disk, random));
                ASSERT_EQ(readTextFile(path), disk);
            }
        }
    }
}

TEST(ZBufferedFileTest, ReportsAFullDiskAtCloseOrInTheDestructor)
{
    BoxRecorder recorder;
    {
        ZBufferedFile full(ZFile("full", "/dev/full", ""), 64);
        ASSERT_TRUE(full.Open(ZFile::kModeWrite, false));
        full.WriteLong(1);
        expectZException("Unable to write to file.", [&] { full.Close(); });
        EXPECT_FALSE(full.IsOpen());
        EXPECT_TRUE(recorder.boxes.empty());
        ASSERT_TRUE(full.Open(ZFile::kModeWrite, true));
        full.WriteLong(1);
    }
    EXPECT_EQ(recorder.boxes.size(), 1u);
}
