// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZApp;

/// Makes the product's own font known to texts: that of the files which the application has found,
/// else the one that the library carries. Somebody holds a ZDrawingLibrary. [interface thread]
void addProductFonts(const ZApp& app);

}  // namespace orvane
