// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>
#include <vector>

namespace orvane
{

class ZElement;
class ZPluginCore;

// The parameters of interfaces that take plain values (see HostParameter.h).

/// Returns the elements that are parameters, in an order that never changes: those of the core,
/// then what only these interfaces offer. [host thread, under the interface lock]
[[nodiscard]] std::vector<boost::shared_ptr<ZElement>> plainParametersOf(const ZPluginCore& core);

/// Returns the parameter's name for people. [host thread, under the interface lock]
[[nodiscard]] std::string plainLabelOf(const ZElement& element);

}  // namespace orvane
