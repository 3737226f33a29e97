// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZObservedElement.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <optional>
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
    /// again; ZTEXTINPUT, "Text", is a text that was typed. ZView handles all other messages.
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
    /// Return, the space bar and the arrows up and down open the menu, and a text chooses the next
    /// choice that begins with its letter.
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent& key) const override;
    void KeyDown(const ZNativeKeyEvent& key) override;

    /// The text that the view shows: "Unknown" without an element.
    [[nodiscard]] ZString GetText() const;

protected:
    /// The rectangle of the text, in the view's coordinates; a longer text ends in an ellipsis.
    [[nodiscard]] virtual ZRect GetTextRect() const { return mStringRect; }
    [[nodiscard]] const boost::shared_ptr<ZBitmap>& GetMenuBitmap() const { return mMenuBitmap; }
    void SetMenuBitmap(const boost::shared_ptr<ZBitmap>& bitmap) { mMenuBitmap = bitmap; }

private:
    void FillMenu();
    void Open(const ZPoint& at);
    /// The next choice behind the current one, from the last on to the first, that begins with the
    /// letter that a text begins with, in either case; nothing when there is none.
    [[nodiscard]] std::optional<std::int32_t> FindByLetter(const ZString& text) const;
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
