// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZApplication;
class ZBitmap;
class ZXMLElement;
struct ZColor;

/// The tag among a view's children whose attribute has that value, the last of several; null when
/// there is none.
[[nodiscard]] boost::shared_ptr<ZXMLElement> findTag(const ZXMLElement& view, std::string_view tag,
                                                     std::string_view attribute,
                                                     std::string_view value);

/// The picture that a view's tag `bitmap` of that type names; null without such a tag.
[[nodiscard]] boost::shared_ptr<ZBitmap> readBitmap(const ZXMLElement& view, std::string_view type,
                                                    ZApplication* application);

/// Takes the colour of a view's tag `color` of that name. False, with the colour as it was, without
/// such a tag.
bool readNamedColor(const ZXMLElement& view, std::string_view name, ZColor& color);

/// The number in an attribute, 0 without it.
[[nodiscard]] std::int32_t readNumber(const ZXMLElement& tag, std::string_view attribute);

}  // namespace orvane
