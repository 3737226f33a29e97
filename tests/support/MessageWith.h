// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

/// Creates a message with fields: a name and a value each.
template <typename T, typename... More>
boost::shared_ptr<ZMessage> messageWith(std::int32_t id, const char* field, const T& value,
                                        const More&... more)
{
    boost::shared_ptr<ZMessage> message;
    if constexpr (sizeof...(more) == 0)
        message = boost::make_shared<ZMessage>(id);
    else
        message = messageWith(id, more...);
    message->Add<T>(field, value);
    return message;
}

}  // namespace orvane
