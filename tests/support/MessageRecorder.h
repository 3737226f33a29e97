// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZMessage.h"

namespace orvane
{

using MessageIds = std::vector<std::int32_t>;

/// A handler that records the ids of its messages.
struct MessageRecorder : ZHandler
{
    explicit MessageRecorder(ZLooper* looper)
        : ZHandler("recorder", looper)
    {
    }
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        ids.push_back(message->GetId());
        if (onMessage)
            onMessage();
        ++count;
    }

    MessageIds ids;
    std::function<void()> onMessage;
    std::atomic<int> count{0};  // [any thread]
};

}  // namespace orvane
