// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZFile.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZFiletype.h"
#include "zlib/common/objects/ZSystemServices.h"
#include "zlib/common/objects/ZTempFile.h"

#include <boost/make_shared.hpp>

#include <cassert>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <span>

namespace orvane
{

namespace
{

ZNativeFile::Access accessOf(std::int32_t mode)
{
    switch (mode) {
    case ZFile::kModeRead:
        return ZNativeFile::Access::kRead;
    case ZFile::kModeWrite:
        return ZNativeFile::Access::kWrite;
    case ZFile::kModeReadWrite:
        return ZNativeFile::Access::kReadWrite;
    default:
        throw ZException("Unknown File Mode");
    }
}

std::size_t sizeOf(std::int32_t bytes)
{
    return bytes > 0 ? static_cast<std::size_t>(bytes) : 0;
}

template <typename Number>
void readWhole(ZNativeFile& file, Number& out)
{
    Number value{};
    const auto got = file.Read(std::as_writable_bytes(std::span(&value, 1)));
    if (got != sizeof(Number))
        throw ZException("Unable to read file.");
    out = value;
}

template <typename Number>
void writeWhole(ZNativeFile& file, Number value)
{
    if (!file.Write(std::as_bytes(std::span(&value, 1))))
        throw ZException("Unable to write to file.");
}

ZString inCapitals(ZString text)
{
    text.ToUpper();
    return text;
}

/// A closed temporary file for the first file of an exchange; null when it cannot be made.
boost::shared_ptr<ZFile> makeParkingFile(const ZString& extension)
{
    boost::shared_ptr<ZFile> parking;
    try {
        MakeTempFile(boost::make_shared<ZString>(extension), parking);
    } catch (const ZException&) {
        return nullptr;
    }
    if (!parking->IsOpen())
        return nullptr;
    parking->Close();
    return parking;
}

}  // namespace

ZFile::ZFile(const ZFile& other)
    : ZFile(other.mName, other.mPath, other.mExtension)
{
    mDeleteOnClose = other.mDeleteOnClose;
}

ZFile::ZFile(const ZString& name, const ZString& path, const ZString& extension)
    : ZObject(name.ToNarrow())
    , mName(name)
    , mPath(path)
    , mExtension(extension)
{
}

ZFile::~ZFile()
{
    ZFile::Close();
    if (mDeleteOnClose)
        ZFile::Delete();
}

std::int32_t ZFile::GetMode() const
{
    return mNative.IsOpen() ? mMode : kModeClosed;
}

void ZFile::SetMode(std::int32_t mode)
{
    mMode = mode;
}

void ZFile::SetDeleteOnClose(bool deleteOnClose)
{
    mDeleteOnClose = deleteOnClose;
}

bool ZFile::Exists() const
{
    return !mPath.IsEmpty() && ZNativeFile::Exists(mPath.ToNarrow());
}

bool ZFile::IsOpen() const
{
    return mNative.IsOpen();
}

ZFile::Handle ZFile::GetHandle() const
{
    return mNative.GetHandle();
}

ZString ZFile::GetName() const
{
    return mName;
}

ZString ZFile::GetPath() const
{
    return mPath;
}

ZString ZFile::GetExtension() const
{
    return mExtension;
}

bool ZFile::Equals(const ZFile& other) const
{
    return mName == other.mName && mPath == other.mPath && mExtension == other.mExtension;
}

bool ZFile::Open(std::int32_t mode, bool create)
{
    if (mNative.IsOpen())
        return true;
    mMode = mode;
    if (!mNative.Open(mPath.ToNarrow(), accessOf(mode), create))
        mMode = kModeClosed;
    return mNative.IsOpen();
}

void ZFile::Close()
{
    mNative.Close();
    mMode = kModeClosed;
}

bool ZFile::Delete()
{
    return ZNativeFile::Delete(mPath.ToNarrow()) == 0;
}

void ZFile::Rename()
{
    throw ZException(ZException::kNotImplemented, "Implement ZFile::Rename");
}

std::int64_t ZFile::GetSize() const
{
    return mNative.GetSize();
}

void ZFile::Seek(std::int64_t position)
{
    if (!mNative.IsOpen())
        throw ZException("Unable to seek file as it has not been opened");
    if (!mNative.Seek(position))
        throw ZException("Unable to seek file");
}

std::int64_t ZFile::GetPosition() const
{
    return mNative.GetPosition();
}

std::int32_t ZFile::Read(void* buffer, std::int32_t bytes)
{
    assert(buffer || bytes <= 0);
    if (GetMode() == kModeWrite)
        throw ZException("Unable to read file open write-only.");
    const auto got = mNative.Read({static_cast<std::byte*>(buffer), sizeOf(bytes)});
    if (!got)
        throw ZException("Unable to read file.");
    return static_cast<std::int32_t>(*got);
}

void ZFile::ReadLong(std::int32_t& out)
{
    readWhole(mNative, out);
}

void ZFile::ReadShort(std::int16_t& out)
{
    readWhole(mNative, out);
}

std::int32_t ZFile::Write(const void* buffer, std::int32_t bytes)
{
    assert(buffer || bytes <= 0);
    const std::span whole(static_cast<const std::byte*>(buffer), sizeOf(bytes));
    if (!mNative.Write(whole))
        throw ZException("Unable to write to file.");
    return static_cast<std::int32_t>(whole.size());
}

bool ZFile::ReplaceContent(std::string_view content)
{
    assert(!IsOpen());
    const ZNativeFile::Error error = ZNativeFile::Replace(mPath.ToNarrow(), content);
    if (error == ENOSPC || error == EDQUOT || error == EFBIG || error == EIO)
        throw ZException("Unable to write to file.");
    return error == 0;
}

void ZFile::WriteLong(std::int32_t value)
{
    writeWhole(mNative, value);
}

void ZFile::WriteShort(std::int16_t value)
{
    writeWhole(mNative, value);
}

void ZFile::Flush()
{
}

bool ZFile::IsOfFiletype(const boost::shared_ptr<ZFiletype>& filetype) const
{
    return filetype && inCapitals(mExtension) == inCapitals(filetype->extension);
}

void ZFile::SetFiletype(const boost::shared_ptr<ZFiletype>& filetype)
{
    mFiletype = filetype;
}

boost::shared_ptr<ZFiletype> ZFile::GetFiletype() const
{
    return mFiletype;
}

bool ZFile::CopyTo(const boost::shared_ptr<ZFile>& other, bool overwrite)
{
    if (!other)
        return false;
    const ZNativeFile::Error error =
        ZNativeFile::Copy(mPath.ToNarrow(), other->mPath.ToNarrow(), overwrite);
    if (error != 0)
        std::fprintf(stderr, "Last Error = %d", error);
    return error == 0;
}

bool ZFile::MoveTo(const boost::shared_ptr<ZFile>& other, bool /*overwrite*/)
try {
    if (!other)
        return false;
    if (other->IsOpen())
        other->Close();
    if (IsOpen())
        Close();
    const ZNativeFile::Error error = ZNativeFile::Move(mPath.ToNarrow(), other->mPath.ToNarrow());
    if (error != 0)
        std::fprintf(stderr, "Last Error = %d\n", error);
    return error == 0;
} catch (const ZException&) {
    ShowMessageBox(ZMessageBox::kNotice, false, "File Open", "Problem when writing file");
    return false;
}

bool ZFile::BringTo(const boost::shared_ptr<ZFile>& target)
{
    assert(target);
    return MoveTo(target, true) || CopyTo(target, true);
}

bool ZFile::Exchange(const boost::shared_ptr<ZFile>& other)
{
    if (!other)
        return false;
    Close();
    other->Close();
    const auto parking = makeParkingFile(mExtension);
    if (!parking || !BringTo(parking))
        return false;

    const auto self = boost::make_shared<ZFile>(mName, mPath, mExtension);
    const bool otherIsHere = other->BringTo(self);
    if (otherIsHere && parking->BringTo(other))
        return true;
    // Neither overwrite the only copy of the other file nor delete the parked one.
    const bool otherIsBack = !otherIsHere || self->BringTo(other);
    if (!otherIsBack || !parking->BringTo(self))
        parking->SetDeleteOnClose(false);
    return false;
}

}  // namespace orvane
