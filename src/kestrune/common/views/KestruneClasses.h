// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZClassRegistry;

/// Enters the product's classes, for its description to name. [setup]
void registerKestruneClasses(ZClassRegistry& registry);

}  // namespace orvane
