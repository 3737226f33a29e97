// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZObservedElement.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane
{

class ZMenu;

/// Shows the current text of a discrete element and lets the user choose another one from a menu of
/// all its texts. While a second element, named by `<element itemModified=>`, is 1, a sign before
/// the text says that the current choice was modified.
///
/// Functions that read an element throw ZException kGeneral if it is not discrete.
/// [interface thread]
class ZPopupMenu : public ZView
{
public:
    ZPopupMenu(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZELEMENTCHANGED repaints the view and moves the check mark; ZELEMENTUPDATED fills the menu
    /// again. ZView handles all other messages.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    void ElementChanged(std::uint64_t elementId) override;
    void OnElementAttached() override;
    void OnDocumentChanged() override;
    void DetachFromElements() override;
    void Draw(const ZRect& update) override;
    /// Opens the menu over the text and writes the chosen index to the element; does nothing
    /// without an element. The view may be gone when the function returns.
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;

    /// The text that the view shows: "Unknown" without an element.
    [[nodiscard]] ZString GetText() const;

protected:
    /// The rectangle of the text, in the view's coordinates; a longer text ends in an ellipsis.
    [[nodiscard]] virtual ZRect GetTextRect() const { return mStringRect; }
    [[nodiscard]] const boost::shared_ptr<ZBitmap>& GetMenuBitmap() const { return mMenuBitmap; }
    void SetMenuBitmap(const boost::shared_ptr<ZBitmap>& bitmap) { mMenuBitmap = bitmap; }

private:
    void FillMenu();
    [[nodiscard]] ZPoint MenuPosition(const ZPoint& click) const;
    void DrawTriangle();

    boost::shared_ptr<ZBitmap> mMenuBitmap;  // with null, Draw() draws a triangle
    boost::shared_ptr<ZMenu> mMenu;
    ZRect mStringRect;  // of the text, in the view's coordinates
    std::int32_t mCheckedIndex = 0;
    std::string mItemModifiedName;  // empty for none
    ZObservedElement mItemModifiedElement;
};

}  // namespace orvane
