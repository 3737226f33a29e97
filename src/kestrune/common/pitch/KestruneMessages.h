// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessageIds.h"

#include <cstdint>

namespace orvane
{

/// The product's own messages, which its commands send to the document: they end the editing of a
/// custom scale. Descriptions can name them.
enum KestruneMessageId : std::int32_t
{
    KESTRUNECUSTOMSCALEDONE = ZUSERMESSAGESTART,
    KESTRUNECUSTOMSCALECANCEL,
};

}  // namespace orvane
