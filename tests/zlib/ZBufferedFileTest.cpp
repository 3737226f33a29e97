#include "zlib/common/ZBufferedFile.h"

#include "support/BoxRecorder.h"
#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

namespace orvane
{

namespace
{

/// What a buffered file promises, over a text in memory: which stretch is held decides where a
/// read ends, but nothing is ever held back.
class Model
{
public:
    Model(std::string& disk, std::int64_t bufferSize)
        : mDisk(disk)
        , mBufferSize(bufferSize)
    {
    }

    void Open(std::int32_t mode, bool create)
    {
        mMode = mode;
        if (create) {
            mDisk.clear();
            Hold(0, 0);
        }
        Seek(0);
    }

    void Close() { Hold(Position(), Position()); }

    void Seek(std::int64_t position)
    {
        if (mDisk.empty())
            return;
        if (mMode == 2)
            Hold(position, position);
        else if (position >= Size())
            Hold(Size() - 1, Size() - 1);
        else if (position >= mStart && position < mEnd)
            mCursor = position - mStart;
        else
            Hold(position, std::min(position + mBufferSize, Size()));
    }

    [[nodiscard]] std::int64_t Position() const { return mStart + mCursor; }

    std::string Read(std::int64_t bytes)
    {
        std::string result;
        while (mEnd - Position() < bytes) {
            result += Take(mEnd - Position(), bytes);
            Seek(mEnd);
            if (mStart >= Size() - 1)
                return result;
        }
        return result + Take(bytes, bytes);
    }

    void Write(const std::string& text)
    {
        const auto position = static_cast<std::size_t>(Position());
        mDisk.resize(std::max(mDisk.size(), position + text.size()));
        mDisk.replace(position, text.size(), text);
        // Stretches that are full go; what lies behind the last of them stays held.
        const std::int64_t end = mCursor + static_cast<std::int64_t>(text.size());
        const std::int64_t passed = end <= mBufferSize ? 0 : (end - 1) / mBufferSize * mBufferSize;
        if (passed > 0)
            Hold(mStart + passed, mStart + passed);
        mCursor = end - passed;
        mEnd = std::max(mEnd, Position());
    }

private:
    [[nodiscard]] std::int64_t Size() const { return static_cast<std::int64_t>(mDisk.size()); }

    void Hold(std::int64_t start, std::int64_t end)
    {
        mStart = start;
        mEnd = end;
        mCursor = 0;
    }

    std::string Take(std::int64_t bytes, std::int64_t& left)
    {
        const auto position = static_cast<std::size_t>(Position());
        mCursor += bytes;
        left -= bytes;
        return mDisk.substr(std::min(position, mDisk.size()), static_cast<std::size_t>(bytes));
    }

    std::string& mDisk;
    std::int64_t mBufferSize;
    std::int32_t mMode = 0;
    std::int64_t mStart = 0;
    std::int64_t mEnd = 0;
    std::int64_t mCursor = 0;
};

std::string readBytes(ZBufferedFile& file, std::int32_t bytes)
{
    std::string text(static_cast<std::size_t>(bytes), '?');
    text.resize(static_cast<std::size_t>(file.Read(text.data(), bytes)));
    return text;
}

class ZBufferedFileTest : public testing::Test
{
protected:
    std::unique_ptr<ZBufferedFile> Make(std::int32_t bufferSize) const
    {
        return std::make_unique<ZBufferedFile>(ZFile("name", Path(), "raw"), bufferSize);
    }
    [[nodiscard]] std::string Path() const { return mFolder.Path("file"); }

    PrivateFolder mFolder;
};

/// One file and its model through the same random calls.
class RandomCalls
{
public:
    RandomCalls(std::uint32_t seed, std::int32_t bufferSize, const std::string& path)
        : mRandom(seed)
        , mFile(ZFile("name", path, "raw"), bufferSize)
        , mModel(mDisk, bufferSize)
        , mPath(path)
    {
    }

    /// Opens in a random mode, calls, closes and compares what the disk holds.
    void Session()
    {
        const std::int32_t mode = Below(3) + 1;
        const bool create = Below(8) == 0;
        SCOPED_TRACE("mode " + std::to_string(mode) + (create ? ", create" : ""));
        ASSERT_TRUE(mFile.Open(mode, create));
        mModel.Open(mode, create);
        for (int call = 0; call < 12 && !testing::Test::HasFailure(); ++call) {
            OneCall(mode);
            ASSERT_EQ(mFile.GetPosition(), mModel.Position());
        }
        mFile.Close();
        mModel.Close();
        ASSERT_EQ(readTextFile(mPath), mDisk);
        ASSERT_EQ(mFile.GetPosition(), mModel.Position());
    }

private:
    std::int32_t Below(std::int32_t limit)
    {
        return static_cast<std::int32_t>(mRandom() % static_cast<std::uint32_t>(limit));
    }

    void OneCall(std::int32_t mode)
    {
        const std::int32_t bytes = Below(4) == 0 ? Below(70) : Below(9);
        switch (Below(4)) {
        case 0: {
            const auto position = Below(static_cast<std::int32_t>(mDisk.size()) + 4);
            mFile.Seek(position);
            mModel.Seek(position);
            break;
        }
        case 1:
            if (mode != 2) {
                ASSERT_EQ(readBytes(mFile, bytes), mModel.Read(bytes));
            }
            break;
        case 2:
            if (mode != 1)
                Write(static_cast<std::size_t>(bytes));
            break;
        default:
            ASSERT_EQ(mFile.GetFileSize(), static_cast<std::int64_t>(mDisk.size()));
        }
    }

    void Write(std::size_t bytes)
    {
        std::string text(bytes, ' ');
        for (char& character : text)
            character = static_cast<char>('a' + Below(26));
        ASSERT_EQ(mFile.Write(text.data(), static_cast<std::int32_t>(bytes)),
                  static_cast<std::int32_t>(bytes));
        mModel.Write(text);
    }

    std::mt19937 mRandom;
    std::string mDisk;
    ZBufferedFile mFile;
    Model mModel;
    std::string mPath;
};

}  // namespace

TEST_F(ZBufferedFileTest, BehavesAsItsModelUnderRandomCalls)
{
    for (const std::int32_t bufferSize : {1, 2, 3, 8, 50}) {
        for (std::uint32_t seed = 1; seed <= 40; ++seed) {
            SCOPED_TRACE("buffer of " + std::to_string(bufferSize) + ", seed " +
                         std::to_string(seed));
            writeTextFile(Path(), "");
            RandomCalls calls(seed, bufferSize, Path());
            for (int session = 0; session < 10 && !HasFailure(); ++session)
                calls.Session();
        }
    }
}

TEST_F(ZBufferedFileTest, FailuresSayWhatCouldNotBeDone)
{
    const auto file = Make(4);
    char byte = 0;
    expectZException(-1, "Unable to seek file as it has not been opened", [&] { file->Seek(0); });
    expectZException(-1, "Unable to read file.", [&] { file->Read(&byte, 1); });
    expectZException(-1, "Unable to write to file.", [&] { file->Write("a", 1); });
    ASSERT_TRUE(file->Open(ZFile::kModeWrite, true));
    expectZException(0, "Unable to read from write-only buffered file.",
                     [&] { file->Read(&byte, 1); });
    file->Write("abc", 3);
    ASSERT_TRUE(file->Open(ZFile::kModeRead, false));
    expectZException(-1, "Unable to write to file.", [&] { file->Write("a", 1); });
    expectZException(-1, "Unable to seek file", [&] { file->Seek(-1); });
    EXPECT_EQ(readBytes(*file, 3), "abc");
}

TEST_F(ZBufferedFileTest, AFullDiskIsToldAtCloseOrByABoxWhenTheObjectGoes)
{
    BoxRecorder recorder;
    {
        ZBufferedFile full(ZFile("full", "/dev/full", ""), 64);
        ASSERT_TRUE(full.Open(ZFile::kModeWrite, false));
        full.WriteLong(1);
        expectZException(-1, "Unable to write to file.", [&] { full.Flush(); });
        expectZException(-1, "Unable to write to file.", [&] { full.Close(); });
        EXPECT_FALSE(full.IsOpen());
        full.Close();
        EXPECT_TRUE(recorder.boxes.empty());
        ASSERT_TRUE(full.Open(ZFile::kModeWrite, true));
        full.WriteLong(1);
    }
    EXPECT_EQ(recorder.boxes.size(), 1u);
}

}  // namespace orvane
