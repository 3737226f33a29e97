// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZObject.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane
{

class ZWindow;

/// An ordered list of items, each with a text, an index and perhaps a check mark.
/// [interface thread]
class ZMenu : public ZObject
{
public:
    enum class Kind
    {
        kPlain,
        kPopup,
    };

    struct Item
    {
        ZString text;
        std::int32_t index = 0;  // identifies the item to callers
        bool checked = false;
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
    /// Appends an item.
    void AddItem(const ZString& text, std::int32_t index);
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
};

}  // namespace orvane
