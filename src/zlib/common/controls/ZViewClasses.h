// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZClassRegistry;

/// Enters the framework's views, which a description may name. [setup]
void registerViewClasses(ZClassRegistry& registry);

}  // namespace orvane
