// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZRect.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// Reads and writes the tags and attributes that the XML of all views is made of. What the XML does
// not hold leaves the default that the caller gives.

namespace orvane
{

class ZApplication;
class ZBitmap;
class ZXMLElement;

/// A word that an attribute may hold, and the number that it stands for.
struct ZViewWord
{
    std::string_view word;
    std::int32_t value;
};

/// Returns the child tag whose attribute has that value, the last one of several; null without one.
[[nodiscard]] boost::shared_ptr<ZXMLElement> findTag(const ZXMLElement& view, std::string_view tag,
                                                     std::string_view attribute,
                                                     std::string_view value);

/// Returns the bitmap of the child `<bitmap type="...">`; null without such a tag.
[[nodiscard]] boost::shared_ptr<ZBitmap> readBitmap(const ZXMLElement& view, std::string_view type,
                                                    ZApplication* application);

/// Returns an integer attribute, or absent where the tag does not have it.
[[nodiscard]] std::int32_t numberOr(const ZXMLElement& xml, std::string_view attribute,
                                    std::int32_t absent);

/// Returns the value of the word in an attribute; none for another word or no attribute.
[[nodiscard]] std::optional<std::int32_t>
readWord(const ZXMLElement& xml, std::string_view attribute, std::span<const ZViewWord> words);
/// Returns the first word for a value; empty where no word stands for it.
[[nodiscard]] std::string_view wordOf(std::int32_t value, std::span<const ZViewWord> words);

/// Copies the child `<rect name="...">`, the last one of several. False, with rect unchanged,
/// without such a tag.
bool readNamedRect(const ZXMLElement& view, std::string_view name, ZRect& rect);
/// Copies the child `<color name="...">`, the last one of several. False, with color unchanged,
/// without such a tag.
bool readNamedColor(const ZXMLElement& view, std::string_view name, ZColor& color);
/// Copies the colour in a child of that tag. False, with color unchanged, without such a tag.
bool readColorTag(const ZXMLElement& xml, std::string_view tag, ZColor& color);

/// Copies the attributes of the child `scale`, as far as they are there.
void readScale(const ZXMLElement& view, float& horizontal, float& vertical);
/// Returns the attribute `target` of the child `element`, the last one of several; empty without
/// one.
[[nodiscard]] std::string readTarget(const ZXMLElement& view);

/// Adds `<rect name="...">` with left, top, width and height.
void writeNamedRect(ZXMLElement& xml, std::string_view name, const ZRect& rect);
/// Adds a child of that tag with red, green, blue and alpha.
void writeColorTag(ZXMLElement& xml, std::string_view tag, const ZColor& color);
/// Adds what readScale and readTarget read; an empty target adds nothing.
void writeScale(ZXMLElement& view, float horizontal, float vertical);
void writeTarget(ZXMLElement& view, std::string_view target);

}  // namespace orvane
