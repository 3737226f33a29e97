// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace orvane
{

class ZString;

/// The private fonts of an application. Drawing, which is a higher row, implements it and sets the
/// maker when the library is loaded. [any thread but the audio thread]
class ZFontKeeper
{
public:
    using Maker = std::unique_ptr<ZFontKeeper> (*)();

    virtual ~ZFontKeeper() = default;

    /// Makes the fonts of a file known to texts at once. Ignores a file that holds no font.
    virtual void AddFile(const ZString& path) = 0;

    /// Sets the function that Make calls. [setup]
    static void SetMaker(Maker maker);
    /// Null in a program that is linked without drawing.
    [[nodiscard]] static std::unique_ptr<ZFontKeeper> Make();
};

}  // namespace orvane
