// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZApp;

/// Makes the product's own font known to texts, from the copy in the library, unless the
/// application has loaded a font file. [interface thread]
void addProductFonts(const ZApp& app);

}  // namespace orvane
