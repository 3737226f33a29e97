// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

/// A file of which one stretch is kept in memory, for data that is read or written in small steps.
/// What was written reaches the disk when the stretch is full, at Seek, Flush and Close.
class ZBufferedFile : public ZFile
{
public:
    /// Names the same file; closed. bufferSize: in bytes, at least 1.
    ZBufferedFile(const ZFile& file, std::int32_t bufferSize);
    ZBufferedFile(const ZBufferedFile&) = delete;
    ZBufferedFile& operator=(const ZBufferedFile&) = delete;
    /// Closes the file; what cannot be written is reported.
    ~ZBufferedFile() override;

    /// As ZFile::Open, but closes an open file first, and goes to the start. A file that is empty
    /// and was not opened with create keeps the position it had. Raises as Close and Seek do.
    bool Open(std::int32_t mode, bool create) override;
    /// Writes what is held back and closes. Raises code -1 when it cannot be written: the file is
    /// closed all the same.
    void Close() override;
    /// Writes what is held back. Raises code -1 when it cannot be written.
    void Flush() override;
    /// Goes to a position, in an empty file nowhere. A file that may be read is not left at its
    /// end: a position there leads to its last byte. Raises as ZFile::Seek, Read and Write do.
    void Seek(std::int64_t position) override;
    [[nodiscard]] std::int64_t GetPosition() const override;
    /// As ZFile::Read, but raises code 0 for a file open for writing only. Short at the end of the
    /// file, and before the last byte where a stretch begins with it.
    std::int32_t Read(void* buffer, std::int32_t bytes) override;
    void ReadLong(std::int32_t& out) override;
    void ReadShort(std::int16_t& out) override;
    /// As ZFile::Write. A failure to write may show later, when the bytes go to the disk.
    std::int32_t Write(const void* buffer, std::int32_t bytes) override;
    void WriteLong(std::int32_t value) override;
    void WriteShort(std::int16_t value) override;

    /// Forgets the stretch held, with all positions at 0.
    virtual void Reset();
    /// The size of the file on the disk, with what was held back. Raises as Flush does.
    virtual std::int64_t GetFileSize();

private:
    [[nodiscard]] bool IsWritable() const;
    /// Holds no byte: an empty stretch at a position.
    void HoldNothingAt(std::int64_t position);
    /// Reads the stretch that begins at a position before the end of the file.
    void Fill(std::int64_t position, std::int64_t fileSize);
    /// Reads all of out or raises.
    void ReadWhole(std::span<std::byte> out);

    std::int64_t mBufferStart = 0;  // position in the file of the first byte held
    std::int64_t mBufferEnd = 0;    // behind the last byte held; start <= end <= start + size
    std::int64_t mCursor = 0;       // from mBufferStart to the position of this file
    std::int32_t mBufferSize;
    std::unique_ptr<std::byte[]> mBuffer;
    bool mDirty = false;  // the file on the disk lacks bytes held
};

}  // namespace orvane
