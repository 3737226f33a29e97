// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orvane
{

/// Text in UTF-16 units. Narrow text, in and out, is UTF-8: the system's 8-bit encoding on Linux.
/// Bytes that are not UTF-8 and lone surrogates become U+FFFD in a conversion.
/// A value type without locks.
class ZString
{
public:
    ZString() = default;
    /// From UTF-8; a null pointer gives the empty string.
    ZString(const char* narrow);
    ZString(std::string_view narrow);
    ZString(const std::string& narrow);
    explicit ZString(std::u16string units);
    ZString(const ZString&) = default;
    ZString(ZString&&) = default;
    ZString& operator=(const ZString&) = default;
    ZString& operator=(ZString&&) = default;
    virtual ~ZString() = default;

    /// Characters in 16-bit units, without the terminator.
    [[nodiscard]] virtual std::int32_t Length() const;
    /// Room in 16-bit units, the terminator included; 0 for an empty string that never held text.
    [[nodiscard]] virtual std::int32_t Capacity() const;
    /// Compares as the user's locale collates: true where neither text sorts before the other.
    [[nodiscard]] virtual bool Equals(const ZString& other) const;
    [[nodiscard]] virtual bool Equals(const char* narrow) const;
    virtual void Append(const ZString& other);
    virtual void Assign(const ZString& other);
    /// Writes UTF-8 with a terminator, cut at a whole character to the buffer's size.
    /// False, with nothing written, when the string is empty or the buffer is.
    [[nodiscard]] virtual bool ToCString(std::span<char> buffer) const;
    /// The same with a length byte in front and no terminator: at most 255 bytes of text.
    [[nodiscard]] virtual bool ToPString(std::span<unsigned char> buffer) const;
    /// Reads a number in the "C" form from the start of the text, blanks skipped.
    /// False, with out as it was, when there is none.
    [[nodiscard]] virtual bool ToFloat(float& out) const;
    virtual void ToUpper();
    virtual void SetChars(const char16_t* chars, std::int32_t length);
    virtual void SetString(const ZString& other);
    virtual void SetCString(const char* narrow);

    /// The units, terminated; null for the empty string.
    [[nodiscard]] const char16_t* Chars() const;
    /// The whole text as UTF-8.
    [[nodiscard]] std::string ToNarrow() const;
    [[nodiscard]] bool IsEmpty() const { return mUnits.empty(); }

private:
    std::u16string mUnits;
};

/// Exact comparison, unit by unit, for use as a key; Equals is the user's comparison.
[[nodiscard]] bool operator==(const ZString& a, const ZString& b);

}  // namespace orvane
