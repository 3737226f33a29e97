// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

/// A file with a buffer for one stretch of it, for data that is read or written in small steps.
/// Written bytes reach the disk when the buffer is full and at Seek, Flush and Close.
/// [interface thread]
class ZBufferedFile : public ZFile
{
public:
    /// Names the same file, which is closed. bufferSize: in bytes, at least 1.
    ZBufferedFile(const ZFile& file, std::int32_t bufferSize);
    ZBufferedFile(const ZBufferedFile&) = delete;
    ZBufferedFile& operator=(const ZBufferedFile&) = delete;
    /// Closes the file and reports bytes that cannot be written.
    ~ZBufferedFile() override;

    /// As ZFile::Open, but closes an open file first and seeks to the start. An empty file that was
    /// not opened with create keeps its position. Throws as Close and Seek do.
    bool Open(std::int32_t mode, bool create) override;
    /// Writes the buffer and closes the file. Throws ZException when the buffer cannot be written;
    /// the file is closed even then.
    void Close() override;
    /// Writes the buffer. Throws ZException when it cannot be written.
    void Flush() override;
    /// Seeks to a position; does nothing in an empty file. In a file that may be read, a position
    /// at or behind the end leads to the last byte. Throws as ZFile::Seek, Read and Write do.
    void Seek(std::int64_t position) override;
    [[nodiscard]] std::int64_t GetPosition() const override;
    /// As ZFile::Read, but throws kWriteOnlyFile for a file open for writing only. Returns less at
    /// the end of the file, and before the last byte if that byte begins a new stretch.
    std::int32_t Read(void* buffer, std::int32_t bytes) override;
    void ReadLong(std::int32_t& out) override;
    void ReadShort(std::int16_t& out) override;
    /// As ZFile::Write, but a failure may appear only when the buffer goes to the disk.
    std::int32_t Write(const void* buffer, std::int32_t bytes) override;
    void WriteLong(std::int32_t value) override;
    void WriteShort(std::int16_t value) override;

    /// Empties the buffer and sets all positions to 0.
    virtual void Reset();
    /// Writes the buffer and gives the size of the file on the disk. Throws as Flush does.
    virtual std::int64_t GetFileSize();

private:
    [[nodiscard]] bool IsWritable() const;
    /// Empties the buffer and sets its position in the file.
    void HoldNothingAt(std::int64_t position);
    /// Fills the buffer from a position before the end of the file.
    void Fill(std::int64_t position, std::int64_t fileSize);
    /// Reads all of out or throws ZException.
    void ReadWhole(std::span<std::byte> out);

    std::int64_t mBufferStart = 0;  // position in the file of the buffer's first byte
    std::int64_t mBufferEnd = 0;    // position behind its last byte; start <= end <= start + size
    std::int64_t mCursor = 0;       // the file's position, counted from mBufferStart
    std::int32_t mBufferSize;
    std::unique_ptr<std::byte[]> mBuffer;
    bool mDirty = false;  // the buffer holds bytes that the disk lacks
};

}  // namespace orvane
