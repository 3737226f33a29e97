#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZApplication;
class ZBitmap;
class ZXMLElement;

/// The tag among a view's children whose attribute has that value, the last of several; null when
/// there is none.
[[nodiscard]] boost::shared_ptr<ZXMLElement> findTag(const ZXMLElement& view, std::string_view tag,
                                                     std::string_view attribute,
                                                     std::string_view value);

/// The picture that a view's tag `bitmap` of that type names; null without such a tag.
[[nodiscard]] boost::shared_ptr<ZBitmap> readBitmap(const ZXMLElement& view, std::string_view type,
                                                    ZApplication* application);

/// The number in an attribute, 0 without it.
[[nodiscard]] std::int32_t readNumber(const ZXMLElement& tag, std::string_view attribute);

}  // namespace orvane
