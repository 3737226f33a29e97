// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessageIds.h"

#include <cstdint>

namespace orvane
{

/// The product's own messages: commands send them to the document to end the editing of a custom
/// scale. A description can use their names.
enum KestruneMessageId : std::int32_t
{
    KESTRUNECUSTOMSCALEDONE = ZUSERMESSAGESTART,
    KESTRUNECUSTOMSCALECANCEL,
};

}  // namespace orvane
