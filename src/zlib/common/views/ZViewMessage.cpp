// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewMessage.h"

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZMessageDocument.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

ZDocument* requireDocument(const ZMessage& message, const char* field)
{
    const auto document = documentOf(message, field);
    if (!document)
        throw ZException("Couldn't find NewDocument in Message");
    return *document;
}

ZNativeKeyEvent keyOf(const ZMessage& message)
{
    ZNativeKeyEvent key;
    key.code = requireField<std::uint8_t>(message, "Key");
    static_cast<void>(message.Find<bool>("shift", key.shift));
    static_cast<void>(message.Find<bool>("control", key.control));
    static_cast<void>(message.Find<bool>("alt", key.alt));
    return key;
}

boost::shared_ptr<ZMessage> makeMouseMessage(std::int32_t id, const char* field,
                                             const ZPoint& point, std::uint32_t mods)
{
    auto message = boost::make_shared<ZMessage>(id);
    message->Add<ZPoint>(field, point);
    message->Add<std::uint32_t>("MouseMods", mods);
    return message;
}

boost::shared_ptr<ZMessage> makeWheelMessage(const ZPoint& point, std::uint32_t mods,
                                             std::int32_t axis, std::int32_t delta)
{
    auto message = makeMouseMessage(ZMOUSEWHEEL, "WheelPoint", point, mods);
    message->Add<std::int32_t>("WheelAxis", axis);
    message->Add<std::int32_t>("WheelDelta", delta);
    return message;
}

}  // namespace orvane
