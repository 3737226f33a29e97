// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZApp;

/// Adds the product's own font for the drawing of texts, from the copy that is compiled into the
/// library, unless the application has loaded a font file. [interface thread]
void addProductFonts(const ZApp& app);

}  // namespace orvane
