// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneFonts.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/drawing/ZDrawingLibrary.h"
#include "zlib/common/objects/ZResources.h"

namespace orvane
{

void addProductFonts(const ZApp& app)
{
    if (!app.GetFonts().empty())
        return;
    // Many users install the library without the font file beside it.
    if (const auto font = app.GetResources().Find("FONT", "Kolm 5pt.ttf"))
        AddPrivateFont(*font);
}

}  // namespace orvane
