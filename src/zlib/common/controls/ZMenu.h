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

/// Items with a text, in order, some of them with a check mark. [interface thread]
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
        std::int32_t index = 0;  // what the item is known by
        bool checked = false;
    };

    /// Shows a popup's items with their top left corner at a point of the screen and waits for the
    /// user's choice: the index of an item, or none. The window, which may be null, is the one that
    /// the menu belongs to. The interface lock may be given up meanwhile, so all views, windows and
    /// applications may be gone when it returns; the menu stays.
    using Presenter = std::function<std::optional<std::int32_t>(
        const ZMenu& menu, const ZPoint& screenPosition, ZWindow* window)>;

    ZMenu(std::string_view name, Kind kind);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;

    void RemoveAllItems();
    /// Appends an item.
    void AddItem(const ZString& text, std::int32_t index);
    /// Nothing when no item has that index.
    void CheckItem(std::int32_t index, bool on);
    /// Lets the user choose, see Presenter; the caller holds the menu meanwhile. False, with index
    /// 0, when nothing is chosen. Throws ZException -1 for a menu that is no popup.
    [[nodiscard]] bool Popup(const ZPoint& screenPosition, ZWindow* window,
                             std::int32_t& index) const;

    [[nodiscard]] const std::vector<Item>& GetItems() const { return mItems; }

    /// Replaces the way menus are shown and gives back what was in its place; an empty one means
    /// the framework's own. [before others use it]
    static Presenter SetPresenter(Presenter presenter);

private:
    Kind mKind;
    std::vector<Item> mItems;
};

}  // namespace orvane
