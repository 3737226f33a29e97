#include "kestrune/common/KestruneFonts.h"

#include "zlib/common/ZApp.h"
#include "zlib/common/ZDrawingLibrary.h"
#include "zlib/common/ZResources.h"

namespace orvane
{

void addProductFonts(const ZApp& app)
{
    for (const std::string& font : app.GetFonts())
        AddPrivateFont(font);
    if (!app.GetFonts().empty())
        return;
    // Most users copy the library alone.
    if (const auto font = app.GetResources().Find("FONT", "Kolm 5pt.ttf"))
        AddPrivateFont(*font);
}

}  // namespace orvane
