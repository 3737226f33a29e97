// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZNativeFile.h"
#include "zlib/common/objects/ZObject.h"
#include "zlib/common/objects/ZString.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

struct ZFiletype;

/// The name of a file on disk and, while it is open, the platform's handle. The object exists
/// before the file is opened and after it is closed, so that a dialog can pass a chosen file to a
/// document. Reading and writing throw ZException; opening, closing, deleting, copying and moving
/// return a boolean. There is no lock. [interface thread]
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
    /// Names the same file and takes the other's deletion flag. It is closed and has no file type.
    ZFile(const ZFile& other);
    /// name: the file's name without folder and extension. path: the whole path, which all
    /// operations use.
    ZFile(const ZString& name, const ZString& path, const ZString& extension);
    ZFile& operator=(const ZFile&) = delete;
    /// Closes the file and, after SetDeleteOnClose(true), deletes it.
    ~ZFile() override;

    /// A Mode; kModeClosed while the file is closed.
    [[nodiscard]] virtual std::int32_t GetMode() const;
    virtual void SetMode(std::int32_t mode);
    virtual void SetDeleteOnClose(bool deleteOnClose);
    /// False when the system answers that there is no such file. A file that cannot be looked at
    /// counts as existing.
    [[nodiscard]] virtual bool Exists() const;
    [[nodiscard]] virtual bool IsOpen() const;
    /// ZNativeFile::kClosed when closed.
    [[nodiscard]] virtual Handle GetHandle() const;
    [[nodiscard]] virtual ZString GetName() const;
    [[nodiscard]] virtual ZString GetPath() const;
    [[nodiscard]] virtual ZString GetExtension() const;
    /// True when name, path and extension are equal, character by character.
    [[nodiscard]] virtual bool Equals(const ZFile& other) const;

    /// Opens the file. A missing file is made, also for reading; with create an existing file is
    /// emptied. Does nothing and returns true for an open file, whatever the mode. Returns false
    /// when the file cannot be opened. Throws ZException for an unknown mode.
    virtual bool Open(std::int32_t mode, bool create);
    virtual void Close();
    /// Deletes the file at the path. Returns false on a failure.
    virtual bool Delete();
    /// Throws ZException kNotImplemented.
    virtual void Rename();

    /// In bytes; 0 when closed.
    [[nodiscard]] virtual std::int64_t GetSize() const;
    /// Sets the position, in bytes from the start. Throws ZException when the file is closed and on
    /// a failure.
    virtual void Seek(std::int64_t position);
    /// In bytes from the start; 0 when closed.
    [[nodiscard]] virtual std::int64_t GetPosition() const;

    /// Reads into buffer, which has room for that many bytes. Returns the number of bytes read,
    /// which is less at the end of the file. Throws ZException for a file open for writing only and
    /// on a failure.
    virtual std::int32_t Read(void* buffer, std::int32_t bytes);
    /// Reads 4 or 2 bytes in the machine's byte order. Throws ZException, with out unchanged, when
    /// the file ends before them and on a failure.
    virtual void ReadLong(std::int32_t& out);
    virtual void ReadShort(std::int16_t& out);
    /// Writes all bytes and returns their number. Throws ZException on a failure.
    virtual std::int32_t Write(const void* buffer, std::int32_t bytes);
    /// Gives the file at the path a new content as a whole: a failure leaves the old content, see
    /// ZNativeFile::Replace. The file must be closed and stays so. Returns false when the user
    /// cannot write there. Throws ZException when the disk is full or fails.
    [[nodiscard]] bool ReplaceContent(std::string_view content);
    /// Writes 4 or 2 bytes in the machine's byte order. Throws ZException on a failure.
    virtual void WriteLong(std::int32_t value);
    virtual void WriteShort(std::int16_t value);
    /// Does nothing here: ZFile has no buffer.
    virtual void Flush();

    /// True when the extensions are equal without regard to case. False for null.
    [[nodiscard]] virtual bool IsOfFiletype(const boost::shared_ptr<ZFiletype>& filetype) const;
    virtual void SetFiletype(const boost::shared_ptr<ZFiletype>& filetype);
    /// The type that the user chose in a save dialog, or null.
    [[nodiscard]] virtual boost::shared_ptr<ZFiletype> GetFiletype() const;

    /// Copies the file at the path to the path of the other, and closes neither. Returns false on a
    /// failure, after a line on standard error. Without overwrite an existing target is a failure.
    virtual bool CopyTo(const boost::shared_ptr<ZFile>& other, bool overwrite);
    /// Closes both and moves the file at the path to the path of the other, also to another volume,
    /// and waits until it is on the disk. Returns false on a failure, after a line on standard
    /// error or, when closing could not write, a message box. An existing target is always
    /// replaced: overwrite has no effect.
    virtual bool MoveTo(const boost::shared_ptr<ZFile>& other, bool overwrite);
    /// Closes both and swaps the two files on the disk through a temporary file. Returns false on a
    /// failure, with both files as they were. If even moving them back fails, the temporary file is
    /// kept.
    virtual bool Exchange(const boost::shared_ptr<ZFile>& other);

private:
    /// Moves the file, or copies it if it can be read but not removed.
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
