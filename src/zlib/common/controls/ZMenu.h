// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZObject.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane
{

class ZWindow;

/// An ordered list of items, each with a text, an index and perhaps a check mark. An item can open
/// another menu; the indices of both then tell the items of both apart.
/// [interface thread]
class ZMenu : public ZObject
{
public:
    enum class Kind
    {
        kPlain,
        kPopup,
    };

    /// The index of items that cannot be chosen.
    static constexpr std::int32_t kNoIndex = -1;

    struct Item
    {
        ZString text;
        std::int32_t index = 0;  // identifies the item to callers
        bool checked = false;
        bool enabled = true;               // the user can choose it
        bool beginsGroup = false;          // a line divides it from the items above
        boost::shared_ptr<ZMenu> submenu;  // opened by the item; null for none
    };

    /// Shows the menu with its top left corner at a point of the screen, waits for the user and
    /// returns the index of the chosen item, or nothing. The menu belongs to the window, which may
    /// be null. The interface lock may be released meanwhile, so views, windows and applications
    /// may be gone when the function returns; the caller keeps the menu alive.
    using Presenter = std::function<std::optional<std::int32_t>(
        const ZMenu& menu, const ZPoint& screenPosition, ZWindow* window)>;

    ZMenu(std::string_view name, Kind kind);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;

    void RemoveAllItems();
    /// Appends an item and returns it; it stays where it is until the next change.
    Item& AddItem(const ZString& text, std::int32_t index);
    /// Appends an item that opens a menu, which is not null.
    Item& AddSubmenu(const ZString& text, const boost::shared_ptr<ZMenu>& submenu);
    /// Draws a line between the items that are there and the next one.
    void EndGroup() { mGroupEnds = !mItems.empty(); }
    /// Sets or removes the check mark of the items with that index; there may be none.
    void CheckItem(std::int32_t index, bool on);
    /// Shows the menu as Presenter describes. Returns true with the chosen item's index, or false
    /// with index 0 if the user chose nothing. Throws ZException kGeneral if the menu's kind is not
    /// kPopup.
    [[nodiscard]] bool Popup(const ZPoint& screenPosition, ZWindow* window,
                             std::int32_t& index) const;

    [[nodiscard]] const std::vector<Item>& GetItems() const { return mItems; }

    /// Replaces the function that shows menus and returns the previous one, so that tests need no
    /// display. An empty function stands for ZMenuWindow::Show(). [setup]
    static Presenter SetPresenter(Presenter presenter);

private:
    Kind mKind;
    std::vector<Item> mItems;
    bool mGroupEnds = false;  // the next item begins another group
};

}  // namespace orvane
