// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace orvane
{

/// What the platform supplies for files: one open file, of which the object is the sole owner, and
/// what the system does to files by their paths. Paths are UTF-8. Calls that a signal interrupts
/// are taken up again, and runs of bytes are read and written whole.
/// One object belongs to one thread at a time.
class ZNativeFile
{
public:
    using Handle = int;
    static constexpr Handle kClosed = -1;
    enum class Access
    {
        kRead,
        kWrite,
        kReadWrite,
    };
    /// What the calls by path give back: 0, or the system's number of the failure.
    using Error = std::int32_t;

    ZNativeFile() = default;
    ZNativeFile(const ZNativeFile&) = delete;
    ZNativeFile& operator=(const ZNativeFile&) = delete;
    ~ZNativeFile() { Close(); }

    /// Opens what is at path, which is made when it is missing; with cut, what it holds is dropped.
    /// False for a folder, and where the user may not. The object must be closed.
    [[nodiscard]] bool Open(const std::string& path, Access access, bool cut);
    void Close();
    [[nodiscard]] bool IsOpen() const { return mHandle != kClosed; }
    [[nodiscard]] Handle GetHandle() const { return mHandle; }

    /// In bytes; 0 when closed.
    [[nodiscard]] std::int64_t GetSize() const;
    /// In bytes from the start; 0 when closed.
    [[nodiscard]] std::int64_t GetPosition() const;
    [[nodiscard]] bool Seek(std::int64_t position);
    /// The number of bytes read, less than asked for at the end of the file only; empty on a
    /// failure.
    [[nodiscard]] std::optional<std::size_t> Read(std::span<std::byte> out);
    /// False when not all could be written.
    [[nodiscard]] bool Write(std::span<const std::byte> bytes);

    /// True unless the system knows that nothing is there: what merely cannot be looked at counts
    /// as there.
    [[nodiscard]] static bool Exists(const std::string& path);
    static Error Delete(const std::string& path);
    /// Copies what a file holds. A file cannot be copied onto itself.
    [[nodiscard]] static Error Copy(const std::string& from, const std::string& to, bool overwrite);
    /// Moves a file, over what is at the target and to another volume if need be, and waits until
    /// that is on the disk. What is at the target is at all times the old file or the whole new
    /// one. A source on another volume that cannot be deleted stays.
    [[nodiscard]] static Error Move(const std::string& from, const std::string& to);
    /// Puts a file that holds text in the place of what is at path, in one step and through to the
    /// disk. A link is followed.
    [[nodiscard]] static Error Replace(const std::string& path, const std::string& text);
    /// Makes the folder that path stands in, and those around it, where they are missing.
    [[nodiscard]] static Error MakeFolderOf(const std::string& path);
    /// Makes an empty file with a name that nobody else has, which only this user may read:
    /// prefix, some letters, suffix. Its path, or empty on a failure.
    [[nodiscard]] static std::optional<std::string>
    MakeUnique(const std::string& folder, const std::string& prefix, const std::string& suffix);
    /// The folder for files that nobody misses later; empty when there is none.
    [[nodiscard]] static std::optional<std::string> GetTempFolder();
    /// The folder of the user's settings; empty when the user has no home.
    [[nodiscard]] static std::optional<std::string> GetSettingsFolder();

private:
    Handle mHandle = kClosed;
};

}  // namespace orvane
