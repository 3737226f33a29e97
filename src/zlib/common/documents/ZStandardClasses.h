// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZClassRegistry;

/// Enters the classes of this row and those below that descriptions may name. What stands above
/// enters its own, see ZClassRegistry::SetStandardClasses. [setup]
void registerStandardClasses(ZClassRegistry& registry);

}  // namespace orvane
