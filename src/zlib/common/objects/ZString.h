// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orvane
{

/// Text in UTF-16 units. Narrow text, in and out, is UTF-8, the 8-bit encoding on Linux. A
/// conversion replaces bytes that are not UTF-8 and lone surrogates by U+FFFD. A value type without
/// a lock.
class ZString
{
public:
    ZString() = default;
    /// From UTF-8; null gives the empty string.
    ZString(const char* narrow);
    ZString(std::string_view narrow);
    ZString(const std::string& narrow);
    explicit ZString(std::u16string units);
    ZString(const ZString&) = default;
    ZString(ZString&&) = default;
    ZString& operator=(const ZString&) = default;
    ZString& operator=(ZString&&) = default;
    virtual ~ZString() = default;

    /// The length in 16-bit units, without the terminator.
    [[nodiscard]] virtual std::int32_t Length() const;
    /// The allocated 16-bit units, with the terminator; 0 for an empty string.
    [[nodiscard]] virtual std::int32_t Capacity() const;
    /// Compares under the user's locale: true when neither text sorts before the other.
    [[nodiscard]] virtual bool Equals(const ZString& other) const;
    [[nodiscard]] virtual bool Equals(const char* narrow) const;
    virtual void Append(const ZString& other);
    virtual void Assign(const ZString& other);
    /// Writes UTF-8 with a terminator; a long text is cut at a whole character. Returns false, with
    /// nothing written, when the string or the buffer is empty.
    [[nodiscard]] virtual bool ToCString(std::span<char> buffer) const;
    /// The same with a length byte in front instead of the terminator; at most 255 bytes of text.
    [[nodiscard]] virtual bool ToPString(std::span<unsigned char> buffer) const;
    /// Reads a number in the form of the "C" locale from the start of the text, after blanks.
    /// Returns false, with out unchanged, when there is none.
    [[nodiscard]] virtual bool ToFloat(float& out) const;
    virtual void ToUpper();
    /// Sets the text to length units from chars; chars may be null when length is 0.
    virtual void SetChars(const char16_t* chars, std::int32_t length);
    virtual void SetString(const ZString& other);
    virtual void SetCString(const char* narrow);

    /// The units with a terminator; null for the empty string.
    [[nodiscard]] const char16_t* Chars() const;
    /// The whole text as UTF-8.
    [[nodiscard]] std::string ToNarrow() const;
    [[nodiscard]] bool IsEmpty() const { return mUnits.empty(); }

private:
    std::u16string mUnits;
};

/// Compares unit by unit, unlike Equals, which compares under the user's locale.
[[nodiscard]] bool operator==(const ZString& a, const ZString& b);

}  // namespace orvane
