// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZDrawingLibrary.h"
#include "zlib/common/objects/ZFontKeeper.h"

namespace orvane
{

namespace
{

/// Keeps the fonts of an application as long as the application lives.
class ApplicationFonts : public ZFontKeeper
{
public:
    void AddFile(const ZString& path) override { AddPrivateFont(path); }

private:
    const ZDrawingLibrary mLibrary;
};

[[maybe_unused]] const bool kMakerIsSet = [] {
    ZFontKeeper::SetMaker(
        []() -> std::unique_ptr<ZFontKeeper> { return std::make_unique<ApplicationFonts>(); });
    return true;
}();

}  // namespace

}  // namespace orvane
