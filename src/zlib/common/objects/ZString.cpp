// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZString.h"

#include <locale.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <clocale>
#include <cwchar>
#include <cwctype>
#include <memory>
#include <type_traits>
#include <utility>

namespace orvane
{

namespace
{

constexpr char32_t kReplacement = 0xFFFD;

bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLowSurrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

/// Removes the first code point from a UTF-8 text, which is not empty, and returns it.
char32_t takeUtf8(std::string_view& text)
{
    assert(!text.empty());
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80)
        return lead;

    const int extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    if (extra == 0 || lead > 0xF4 || text.size() < static_cast<std::size_t>(extra))
        return kReplacement;
    char32_t point = lead & (0x3Fu >> extra);
    for (int i = 0; i < extra; ++i) {
        const auto next = static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
        if ((next & 0xC0) != 0x80)
            return kReplacement;
        point = point << 6 | (next & 0x3Fu);
    }
    // Overlong, a surrogate, or beyond the last code point.
    constexpr std::array<char32_t, 4> kSmallest{0, 0x80, 0x800, 0x10000};
    if (point < kSmallest[static_cast<std::size_t>(extra)] || point > 0x10FFFF ||
        (point >= 0xD800 && point < 0xE000))
        return kReplacement;
    text.remove_prefix(static_cast<std::size_t>(extra));
    return point;
}

void appendUtf16(std::u16string& units, char32_t point)
{
    if (point < 0x10000) {
        units += static_cast<char16_t>(point);
        return;
    }
    units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
    units += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
}

std::u16string toUtf16(std::string_view narrow)
{
    std::u16string units;
    units.reserve(narrow.size());
    while (!narrow.empty())
        appendUtf16(units, takeUtf8(narrow));
    return units;
}

/// The text as code points, the C library's wide characters on Linux.
std::wstring toWide(const std::u16string& units)
{
    std::wstring wide;
    wide.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char16_t unit = units[i];
        const bool pair =
            isHighSurrogate(unit) && i + 1 < units.size() && isLowSurrogate(units[i + 1]);
        if (pair) {
            const char32_t point = 0x10000 + ((unit - 0xD800u) << 10) + (units[i + 1] - 0xDC00u);
            wide += static_cast<wchar_t>(point);
            ++i;
        } else {
            const bool lone = isHighSurrogate(unit) || isLowSurrogate(unit);
            wide += static_cast<wchar_t>(lone ? kReplacement : unit);
        }
    }
    return wide;
}

void appendUtf8(std::string& narrow, char32_t point)
{
    if (point < 0x80) {
        narrow += static_cast<char>(point);
        return;
    }
    const int extra = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    constexpr std::array<char32_t, 4> kLead{0, 0xC0, 0xE0, 0xF0};
    narrow += static_cast<char>(kLead[static_cast<std::size_t>(extra)] | point >> (6 * extra));
    for (int i = extra - 1; i >= 0; --i)
        narrow += static_cast<char>(0x80 | (point >> (6 * i) & 0x3F));
}

/// The length of the longest prefix of a UTF-8 text that has whole characters and at most size
/// bytes.
std::size_t wholeCharacters(const std::string& narrow, std::size_t size)
{
    if (narrow.size() <= size)
        return narrow.size();
    while (size > 0 && (static_cast<unsigned char>(narrow[size]) & 0xC0) == 0x80)
        --size;
    return size;
}

// Own locale objects, since the process's locale belongs to the host. They go with the library,
// which hosts load and unload many times.
struct LocaleDeleter
{
    void operator()(locale_t locale) const { freelocale(locale); }
};
using OwnLocale = std::unique_ptr<std::remove_pointer_t<locale_t>, LocaleDeleter>;

OwnLocale makeLocale(int categories, const char* name)
{
    const locale_t wanted = newlocale(categories, name, nullptr);
    return OwnLocale(wanted ? wanted : newlocale(LC_ALL_MASK, "C", nullptr));
}

locale_t collationLocale()
{
    static const OwnLocale locale = makeLocale(LC_COLLATE_MASK | LC_CTYPE_MASK, "");
    return locale.get();
}

locale_t caseLocale()
{
    static const OwnLocale locale = makeLocale(LC_CTYPE_MASK, "C.UTF-8");
    return locale.get();
}

}  // namespace

ZString::ZString(const char* narrow)
    : mUnits(narrow ? toUtf16(narrow) : std::u16string())
{
}

ZString::ZString(std::string_view narrow)
    : mUnits(toUtf16(narrow))
{
}

ZString::ZString(const std::string& narrow)
    : mUnits(toUtf16(narrow))
{
}

ZString::ZString(std::u16string units)
    : mUnits(std::move(units))
{
}

std::int32_t ZString::Length() const
{
    return static_cast<std::int32_t>(mUnits.size());
}

std::int32_t ZString::Capacity() const
{
    return mUnits.empty() ? 0 : static_cast<std::int32_t>(mUnits.capacity() + 1);
}

bool ZString::Equals(const ZString& other) const
{
    if (mUnits == other.mUnits)
        return true;
    return wcscoll_l(toWide(mUnits).c_str(), toWide(other.mUnits).c_str(), collationLocale()) == 0;
}

bool ZString::Equals(const char* narrow) const
{
    return Equals(ZString(narrow));
}

void ZString::Append(const ZString& other)
{
    mUnits += other.mUnits;
}

void ZString::Assign(const ZString& other)
{
    *this = other;
}

bool ZString::ToCString(std::span<char> buffer) const
{
    if (mUnits.empty() || buffer.empty())
        return false;
    const std::string narrow = ToNarrow();
    const std::size_t length = wholeCharacters(narrow, buffer.size() - 1);
    std::copy_n(narrow.begin(), length, buffer.begin());
    buffer[length] = '\0';
    return true;
}

bool ZString::ToPString(std::span<unsigned char> buffer) const
{
    if (mUnits.empty() || buffer.empty())
        return false;
    const std::string narrow = ToNarrow();
    const std::size_t length =
        wholeCharacters(narrow, std::min<std::size_t>(buffer.size() - 1, 255));
    buffer[0] = static_cast<unsigned char>(length);
    std::copy_n(narrow.begin(), length, buffer.begin() + 1);
    return true;
}

bool ZString::ToFloat(float& out) const
{
    const std::string narrow = ToNarrow();
    const std::size_t start = narrow.find_first_not_of(" \t\r\n");
    if (start == std::string::npos)
        return false;
    const char* first = narrow.data() + start;
    if (*first == '+')
        ++first;
    float value = 0.0f;
    const auto result = std::from_chars(first, narrow.data() + narrow.size(), value);
    if (result.ec != std::errc())
        return false;
    out = value;
    return true;
}

void ZString::ToUpper()
{
    std::u16string upper;
    upper.reserve(mUnits.size());
    for (const wchar_t character : toWide(mUnits))
        appendUtf16(
            upper, static_cast<char32_t>(towupper_l(static_cast<wint_t>(character), caseLocale())));
    mUnits = std::move(upper);
}

void ZString::SetChars(const char16_t* chars, std::int32_t length)
{
    assert(length >= 0 && (chars || length == 0));
    if (!chars || length <= 0)
        mUnits.clear();
    else
        mUnits.assign(chars, static_cast<std::size_t>(length));
}

void ZString::SetString(const ZString& other)
{
    *this = other;
}

void ZString::SetCString(const char* narrow)
{
    *this = ZString(narrow);
}

const char16_t* ZString::Chars() const
{
    return mUnits.empty() ? nullptr : mUnits.c_str();
}

std::string ZString::ToNarrow() const
{
    std::string narrow;
    narrow.reserve(mUnits.size());
    for (const wchar_t character : toWide(mUnits))
        appendUtf8(narrow, static_cast<char32_t>(character));
    return narrow;
}

bool operator==(const ZString& a, const ZString& b)
{
    if (a.Length() != b.Length())
        return false;
    return a.IsEmpty() || std::equal(a.Chars(), a.Chars() + a.Length(), b.Chars());
}

}  // namespace orvane
