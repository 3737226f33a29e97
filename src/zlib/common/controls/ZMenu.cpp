// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMenu.h"

#include "zlib/common/controls/ZMenuWindow.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZNeverDestroyed.h"

#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

ZMenu::Presenter& replacement()
{
    static const ZNeverDestroyed<ZMenu::Presenter> presenter;
    return *presenter;
}

}  // namespace

ZMenu::ZMenu(std::string_view name, Kind kind)
    : ZObject(name)
    , mKind(kind)
{
}

bool ZMenu::IsKindOf(std::string_view className) const
{
    return className == "ZMenuClass" || ZObject::IsKindOf(className);
}

const char* ZMenu::GetClassName() const
{
    return "ZMenuClass";
}

void ZMenu::RemoveAllItems()
{
    mItems.clear();
    mGroupEnds = false;
}

ZMenu::Item& ZMenu::AddItem(const ZString& text, std::int32_t index)
{
    Item& item = mItems.emplace_back();
    item.text = text;
    item.index = index;
    item.beginsGroup = std::exchange(mGroupEnds, false);
    return item;
}

ZMenu::Item& ZMenu::AddSubmenu(const ZString& text, const boost::shared_ptr<ZMenu>& submenu)
{
    assert(submenu && submenu.get() != this);
    Item& item = AddItem(text, kNoIndex);
    item.submenu = submenu;
    return item;
}

void ZMenu::CheckItem(std::int32_t index, bool on)
{
    for (Item& item : mItems)
        if (item.index == index)
            item.checked = on;
}

bool ZMenu::Popup(const ZPoint& screenPosition, ZWindow* window, std::int32_t& index) const
{
    if (mKind != Kind::kPopup)
        throw ZException("Menu " + GetName() + " is not a popup");
    const std::optional<std::int32_t> chosen =
        replacement() ? replacement()(*this, screenPosition, window)
                      : ZMenuWindow::Show(*this, screenPosition, window);
    index = chosen.value_or(0);
    return chosen.has_value();
}

ZMenu::Presenter ZMenu::SetPresenter(Presenter presenter)
{
    return std::exchange(replacement(), std::move(presenter));
}

}  // namespace orvane
