// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZBufferedFile.h"

#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

std::size_t bufferedSize(std::int32_t bytes)
{
    return bytes > 0 ? static_cast<std::size_t>(bytes) : 0;
}

}  // namespace

ZBufferedFile::ZBufferedFile(const ZFile& file, std::int32_t bufferSize)
    : ZFile(file.GetName(), file.GetPath(), file.GetExtension())
    , mBufferSize(bufferSize)
    , mBuffer(std::make_unique<std::byte[]>(static_cast<std::size_t>(mBufferSize)))
{
    assert(bufferSize >= 1);
}

ZBufferedFile::~ZBufferedFile()
{
    try {
        if (IsOpen())
            ZBufferedFile::Close();
    } catch (...) {
        reportCurrentException();
    }
}

bool ZBufferedFile::IsWritable() const
{
    return GetMode() == kModeWrite || GetMode() == kModeReadWrite;
}

void ZBufferedFile::HoldNothingAt(std::int64_t position)
{
    mBufferStart = position;
    mBufferEnd = position;
    mCursor = 0;
}

void ZBufferedFile::Fill(std::int64_t position, std::int64_t fileSize)
{
    ZFile::Seek(position);
    HoldNothingAt(position);
    const std::int64_t bytes = std::min<std::int64_t>(mBufferSize, fileSize - position);
    assert(bytes > 0);
    mBufferEnd += ZFile::Read(mBuffer.get(), static_cast<std::int32_t>(bytes));
}

bool ZBufferedFile::Open(std::int32_t mode, bool create)
{
    if (IsOpen())
        Close();
    if (!ZFile::Open(mode, create))
        return false;
    if (create)
        Reset();
    Seek(0);
    return true;
}

void ZBufferedFile::Close()
{
    try {
        if (IsWritable())
            Flush();
    } catch (const ZException&) {
        mDirty = false;
        ZFile::Close();
        throw;
    }
    // Keeps the position but not the bytes, which another program may change until the next Open.
    HoldNothingAt(GetPosition());
    ZFile::Close();
}

void ZBufferedFile::Flush()
{
    if (mDirty && mBufferEnd != mBufferStart) {
        ZFile::Seek(mBufferStart);
        ZFile::Write(mBuffer.get(), static_cast<std::int32_t>(mBufferEnd - mBufferStart));
    }
    mDirty = false;
}

void ZBufferedFile::Seek(std::int64_t position)
{
    if (!IsOpen())
        throw ZException("Unable to seek file as it has not been opened");
    if (IsWritable())
        Flush();
    // A position inside the buffer needs no system call: the file cannot be empty.
    if (GetMode() != kModeWrite && mBufferStart <= position && position < mBufferEnd) {
        mCursor = position - mBufferStart;
        return;
    }
    const std::int64_t size = GetSize();
    if (size == 0)
        return;
    if (GetMode() != kModeWrite && position < size) {
        Fill(position, size);
        return;
    }
    const std::int64_t target = GetMode() == kModeWrite ? position : size - 1;
    ZFile::Seek(target);
    HoldNothingAt(target);
}

std::int64_t ZBufferedFile::GetPosition() const
{
    return mBufferStart + mCursor;
}

std::int32_t ZBufferedFile::Read(void* buffer, std::int32_t bytes)
{
    if (GetMode() == kModeWrite)
        throw ZException(ZException::kWriteOnlyFile,
                         "Unable to read from write-only buffered file.");
    if (!IsOpen())
        throw ZException("Unable to read file.");
    const std::span out(static_cast<std::byte*>(buffer), bufferedSize(bytes));
    std::size_t done = 0;
    for (;;) {
        assert(GetPosition() <= mBufferEnd && mBufferEnd <= mBufferStart + mBufferSize);
        const auto held = static_cast<std::size_t>(mBufferEnd - GetPosition());
        const std::size_t taken = std::min(out.size() - done, held);
        std::copy_n(mBuffer.get() + mCursor, taken, out.data() + done);
        done += taken;
        mCursor += static_cast<std::int64_t>(taken);
        if (done == out.size())
            break;
        Seek(mBufferEnd);
        if (mBufferStart >= GetSize() - 1)
            break;
    }
    return static_cast<std::int32_t>(done);
}

std::int32_t ZBufferedFile::Write(const void* buffer, std::int32_t bytes)
{
    if (!IsWritable())
        throw ZException("Unable to write to file.");
    const std::span whole(static_cast<const std::byte*>(buffer), bufferedSize(bytes));
    std::size_t done = 0;
    for (;;) {
        assert(mCursor >= 0 && mCursor <= mBufferSize);
        const auto room = static_cast<std::size_t>(mBufferSize - mCursor);
        const std::size_t taken = std::min(whole.size() - done, room);
        std::copy_n(whole.data() + done, taken, mBuffer.get() + mCursor);
        done += taken;
        mDirty = mDirty || taken > 0;
        mCursor += static_cast<std::int64_t>(taken);
        mBufferEnd = std::max(mBufferEnd, GetPosition());
        if (done == whole.size())
            break;
        Flush();
        HoldNothingAt(mBufferEnd);
    }
    return static_cast<std::int32_t>(done);
}

void ZBufferedFile::ReadWhole(std::span<std::byte> out)
{
    // A read may stop before the last byte; only a read of no bytes is the end.
    while (!out.empty()) {
        const std::int32_t got = Read(out.data(), static_cast<std::int32_t>(out.size()));
        if (got == 0)
            throw ZException("Unable to read file.");
        out = out.subspan(bufferedSize(got));
    }
}

void ZBufferedFile::ReadLong(std::int32_t& out)
{
    std::int32_t value = 0;
    ReadWhole(std::as_writable_bytes(std::span(&value, 1)));
    out = value;
}

void ZBufferedFile::ReadShort(std::int16_t& out)
{
    std::int16_t value = 0;
    ReadWhole(std::as_writable_bytes(std::span(&value, 1)));
    out = value;
}

void ZBufferedFile::WriteLong(std::int32_t value)
{
    Write(&value, sizeof(value));
}

void ZBufferedFile::WriteShort(std::int16_t value)
{
    Write(&value, sizeof(value));
}

void ZBufferedFile::Reset()
{
    HoldNothingAt(0);
}

std::int64_t ZBufferedFile::GetFileSize()
{
    if (IsWritable())
        Flush();
    return GetSize();
}

}  // namespace orvane
