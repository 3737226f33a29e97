// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZPoint.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cstdint>
#include <string>

namespace orvane
{

class ZDocument;
struct ZNativeKeyEvent;

/// Returns a field that a message of views and windows must hold. Throws ZException kGeneral
/// "Couldn't find <named> in Message".
template <ZMsgValue T>
[[nodiscard]] T requireField(const ZMessage& message, const char* field, const char* named)
{
    T value{};
    if (!message.Find<T>(field, value))
        throw ZException(std::string("Couldn't find ") + named + " in Message");
    return value;
}

template <ZMsgValue T>
[[nodiscard]] T requireField(const ZMessage& message, const char* field)
{
    return requireField<T>(message, field, field);
}

/// Returns the document in a field, shared or plain; it may be null. Throws ZException kGeneral
/// "Couldn't find NewDocument in Message".
[[nodiscard]] ZDocument* requireDocument(const ZMessage& message, const char* field);

/// Makes a message with one field.
template <ZMsgValue T>
[[nodiscard]] boost::shared_ptr<ZMessage> makeMessage(std::int32_t id, const char* field,
                                                      const T& value)
{
    auto message = boost::make_shared<ZMessage>(id);
    message->Add<T>(field, value);
    return message;
}

/// Makes a mouse message with the point in the field of that name, and mods in "MouseMods".
[[nodiscard]] boost::shared_ptr<ZMessage> makeMouseMessage(std::int32_t id, const char* field,
                                                           const ZPoint& point, std::uint32_t mods);
/// Returns the key of a ZKEYDOWN, without a text: "Key", and "shift", "control" and "alt" if
/// they are there. Throws ZException kGeneral when there is no "Key".
[[nodiscard]] ZNativeKeyEvent keyOf(const ZMessage& message);

/// Makes a ZMOUSEWHEEL with all its fields.
[[nodiscard]] boost::shared_ptr<ZMessage> makeWheelMessage(const ZPoint& point, std::uint32_t mods,
                                                           std::int32_t axis, std::int32_t delta);

}  // namespace orvane
