// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/VstEvents.h"

#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

class ZMessage;

/// Returns the message for a MIDI event of the host, with the fields "Channel", "Which" and
/// "Amount" (unsigned 8-bit) and "BigAmount" (unsigned 16-bit); null for an event that is no
/// channel message. event is not null, but may be at an odd address. Allocates. [audio thread]
[[nodiscard]] boost::shared_ptr<const ZMessage> midiMessageOf(const VstEvent* event);

}  // namespace orvane
