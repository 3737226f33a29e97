// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

namespace orvane
{

class ZXMLElement;

/// Position and size of a window, and those that its description gives. A host or the user can give
/// the window another size than its own. Positions are on the screen or in the parent window; no
/// side is longer than that of the largest picture.
/// [interface thread]
class ZWindowPlace
{
public:
    /// Reads the `rect` of a `windowtype`. Throws ZException kGeneral where there is none.
    explicit ZWindowPlace(const ZXMLElement& xml);

    /// Moves back to the description's position.
    void ResetPosition() { mPosition = mFirstPosition; }
    void SetPosition(const ZPoint& position) { mPosition = position; }
    [[nodiscard]] const ZPoint& GetPosition() const { return mPosition; }
    /// Takes a size that the window has been given. Cuts each side to what a picture can have.
    void SetSize(double width, double height);
    /// Takes a size that is the window's own.
    void SetOwnSize(const ZPoint& size);
    /// Takes the description's size times the scale, which is above 0, as its own.
    void Scale(double scale);
    /// Returns width and height.
    [[nodiscard]] const ZPoint& GetSize() const { return mSize; }
    /// Returns those that the window would have by itself.
    [[nodiscard]] const ZPoint& GetOwnSize() const { return mOwnSize; }
    /// Returns the window in its own coordinates.
    [[nodiscard]] ZRect GetArea() const { return {0, 0, mSize.x, mSize.y}; }

private:
    ZPoint mFirstPosition;
    ZPoint mFirstSize;
    ZPoint mPosition;
    ZPoint mSize;
    ZPoint mOwnSize;
};

}  // namespace orvane
