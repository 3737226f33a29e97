// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZUserSettings.h"

#include "zlib/common/objects/ZFileLock.h"
#include "zlib/common/objects/ZNativeFile.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <optional>
#include <span>
#include <string_view>

namespace orvane
{

namespace
{

// A longer file is not ours.
constexpr std::int64_t kLongestFile = 1 << 20;

// The longest wait for other writers, each of which needs some milliseconds.
constexpr std::chrono::seconds kLongestWait{2};

/// The file name for an identifier: without path separators and without a leading dot.
std::string fileNameOf(std::string identifier)
{
    std::replace_if(
        identifier.begin(), identifier.end(),
        [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' '; }, '_');
    if (identifier.starts_with('.'))
        identifier.front() = '_';
    return identifier + ".conf";
}

/// The file's text, empty for a missing file; no value when it cannot be read.
std::optional<std::string> readText(const std::string& path)
{
    if (!ZNativeFile::Exists(path))
        return std::string();
    ZNativeFile file;
    if (!file.Open(path, ZNativeFile::Access::kRead, false) || file.GetSize() > kLongestFile)
        return std::nullopt;
    std::string text(static_cast<std::size_t>(file.GetSize()), '\0');
    const auto got = file.Read(std::as_writable_bytes(std::span(text)));
    if (!got)
        return std::nullopt;
    text.resize(*got);
    return text;
}

std::string_view takeSettingLine(std::string_view& text)
{
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

/// The text behind the last "=" of a line, if the name stands before it. Names may contain "=".
std::optional<std::string_view> valueOf(std::string_view line, std::string_view name)
{
    const std::size_t equals = line.rfind('=');
    if (equals == std::string_view::npos || line.substr(0, equals) != name)
        return std::nullopt;
    return line.substr(equals + 1);
}

std::optional<std::int32_t> numberIn(std::string_view text)
{
    constexpr std::string_view kSpaces = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(kSpaces), text.size()));
    text = text.substr(0, text.find_last_not_of(kSpaces) + 1);
    std::int32_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size())
        return std::nullopt;
    return number;
}

/// The text with line in place of the first line for the name and without the other ones.
std::string withLine(std::string_view text, std::string_view name, const std::string& line)
{
    std::string result;
    bool placed = false;
    while (!text.empty()) {
        const std::string_view before = takeSettingLine(text);
        if (!valueOf(before, name)) {
            result.append(before) += '\n';
        } else if (!placed) {
            result.append(line) += '\n';
            placed = true;
        }
    }
    if (!placed)
        result.append(line) += '\n';
    return result;
}

}  // namespace

ZUserSettings::ZUserSettings(const ZString& identifier)
{
    if (const auto folder = ZNativeFile::GetSettingsFolder())
        mPath = *folder + "/Orvane/" + fileNameOf(identifier.ToNarrow());
}

bool ZUserSettings::SetInt(const ZString& name, std::int32_t value) const
{
    const std::string key = name.ToNarrow();
    if (mPath.empty() || key.empty() || key.find('\n') != std::string::npos)
        return false;
    if (ZNativeFile::MakeFolderOf(mPath) != 0)
        return false;
    // Writes even without the lock: a suspended program must not keep this user from storing.
    const ZFileLock lock(mPath + ".lock", kLongestWait);
    const auto text = readText(mPath);
    return text && ZNativeFile::Replace(
                       mPath, withLine(*text, key, key + "=" + std::to_string(value))) == 0;
}

bool ZUserSettings::GetInt(const ZString& name, std::int32_t& out) const
{
    const auto text = mPath.empty() ? std::nullopt : readText(mPath);
    if (!text)
        return false;
    const std::string key = name.ToNarrow();
    std::optional<std::int32_t> number;
    for (std::string_view rest = *text; !rest.empty();) {
        if (const auto value = valueOf(takeSettingLine(rest), key))
            number = numberIn(*value);
    }
    out = number.value_or(out);
    return number.has_value();
}

}  // namespace orvane
