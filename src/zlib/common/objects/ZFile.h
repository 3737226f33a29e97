// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZNativeFile.h"
#include "zlib/common/objects/ZObject.h"
#include "zlib/common/objects/ZString.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

struct ZFiletype;

/// Names a file on disk and wraps the platform's handle of it. The object exists before the file
/// is opened and after it is closed, so a dialog can hand a document the file that was chosen.
/// Reading and writing raise ZException; opening, closing, deleting, copying and moving report by
/// a boolean. No locks: one thread at a time, which is the interface thread.
class ZFile : public ZObject
{
public:
    using Handle = ZNativeFile::Handle;
    enum Mode : std::int32_t
    {
        kModeClosed = 0,
        kModeRead = 1,
        kModeWrite = 2,
        kModeReadWrite = 3,
    };

    ZFile() = default;
    /// Names the same file, and deletes it as well if the other does; closed, with no file type.
    ZFile(const ZFile& other);
    /// name: without folder and extension. path: the whole path, which all operations use.
    ZFile(const ZString& name, const ZString& path, const ZString& extension);
    ZFile& operator=(const ZFile&) = delete;
    /// Closes the file, and deletes it when that was asked for.
    ~ZFile() override;

    /// A Mode; closed whenever the file is.
    [[nodiscard]] virtual std::int32_t GetMode() const;
    virtual void SetMode(std::int32_t mode);
    virtual void SetDeleteOnClose(bool deleteOnClose);
    /// True unless the system knows that there is no such file: one that merely cannot be read
    /// counts as there.
    [[nodiscard]] virtual bool Exists() const;
    [[nodiscard]] virtual bool IsOpen() const;
    /// ZNativeFile::kClosed when closed.
    [[nodiscard]] virtual Handle GetHandle() const;
    [[nodiscard]] virtual ZString GetName() const;
    [[nodiscard]] virtual ZString GetPath() const;
    [[nodiscard]] virtual ZString GetExtension() const;
    /// True when name, path and extension are the same, character by character.
    [[nodiscard]] virtual bool Equals(const ZFile& other) const;

    /// Opens the file; a missing one is made, for reading too, and with create one that is there
    /// is emptied. Leaves an open file as it is, whatever the mode. False when it cannot be
    /// opened. Raises code -1 for a mode that is none.
    virtual bool Open(std::int32_t mode, bool create);
    virtual void Close();
    /// Deletes the file at the path; false on a failure.
    virtual bool Delete();
    /// Not implemented: raises code -2.
    virtual void Rename();

    /// In bytes; 0 when closed.
    [[nodiscard]] virtual std::int64_t GetSize() const;
    /// From the start. Raises code -1 when closed or on a failure.
    virtual void Seek(std::int64_t position);
    /// From the start; 0 when closed.
    [[nodiscard]] virtual std::int64_t GetPosition() const;

    /// Fills buffer, of at least that many bytes, and gives back the bytes read: less at the end
    /// of the file. Raises code -1 for a file open for writing only, and on a failure.
    virtual std::int32_t Read(void* buffer, std::int32_t bytes);
    /// Reads 4 or 2 bytes in the machine's order. A file that ends before them is a failure, since
    /// half a number is none: raises code -1 and leaves out as it was.
    virtual void ReadLong(std::int32_t& out);
    virtual void ReadShort(std::int16_t& out);
    /// Writes all and gives back the bytes written. Raises code -1 on a failure.
    virtual std::int32_t Write(const void* buffer, std::int32_t bytes);
    /// Writes 4 or 2 bytes in the machine's order. Raises code -1 on a failure.
    virtual void WriteLong(std::int32_t value);
    virtual void WriteShort(std::int16_t value);
    /// Nothing is held back here.
    virtual void Flush();

    /// True when the extensions are the same but for case; false for null.
    [[nodiscard]] virtual bool IsOfFiletype(const boost::shared_ptr<ZFiletype>& filetype) const;
    virtual void SetFiletype(const boost::shared_ptr<ZFiletype>& filetype);
    /// What a save dialog chose, or null.
    [[nodiscard]] virtual boost::shared_ptr<ZFiletype> GetFiletype() const;

    /// Copies the file at the path to the path of the other, and closes neither. False on a
    /// failure, which the standard error stream tells, and without overwrite for a target that is
    /// there.
    virtual bool CopyTo(const boost::shared_ptr<ZFile>& other, bool overwrite);
    /// Closes both and moves the file at the path to the path of the other, to another volume if
    /// need be; the result is on the disk. False on a failure, which the standard error stream
    /// tells or, when closing could not write, a message box. What is at the target is replaced
    /// whatever overwrite says: it makes the call read as CopyTo does.
    virtual bool MoveTo(const boost::shared_ptr<ZFile>& other, bool overwrite);
    /// Closes both and swaps the two files on the disk by way of a temporary one. False on a
    /// failure, with both files as they were. Where they cannot be brought back either, what would
    /// be lost stays in the temporary file.
    virtual bool Exchange(const boost::shared_ptr<ZFile>& other);

private:
    /// Moves the file, or copies it where it may be read but not removed.
    bool BringTo(const boost::shared_ptr<ZFile>& target);

    ZNativeFile mNative;
    std::int32_t mMode = kModeClosed;
    boost::shared_ptr<ZFiletype> mFiletype;
    bool mDeleteOnClose = false;
    ZString mName;
    ZString mPath;
    ZString mExtension;
};

}  // namespace orvane
