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

/// Shows the text of a discrete element's index and lets the user choose another one from a menu of
/// all its texts. A second element can tell that the choice has been modified, which puts a sign
/// before the text.
///
/// What reads an element throws ZException -1 when it is not discrete. [interface thread]
class ZPopupMenu : public ZView
{
public:
    ZPopupMenu(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZELEMENTCHANGED: repaints and takes over the index. ZELEMENTUPDATED: fills the menu anew.
    /// The rest as ZView.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    void ElementChanged(std::uint64_t elementId) override;
    void OnElementAttached() override;
    void OnDocumentChanged() override;
    void DetachFromElements() override;
    void Draw(const ZRect& update) override;
    /// Opens the menu over the text; without an element nothing. The view may be gone when it
    /// returns.
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;

    [[nodiscard]] const ZMenu& GetMenu() const { return *mMenu; }
    [[nodiscard]] std::int32_t GetCheckedIndex() const { return mCheckedIndex; }
    /// What the view says of its element.
    [[nodiscard]] ZString GetText() const;

protected:
    [[nodiscard]] const boost::shared_ptr<ZBitmap>& GetMenuBitmap() const { return mMenuBitmap; }
    void SetMenuBitmap(const boost::shared_ptr<ZBitmap>& bitmap) { mMenuBitmap = bitmap; }

private:
    void FillMenu();
    [[nodiscard]] ZPoint MenuPosition(const ZPoint& click) const;
    void DrawTriangle();

    boost::shared_ptr<ZBitmap> mMenuBitmap;  // null for a triangle
    boost::shared_ptr<ZMenu> mMenu;
    ZRect mStringRect;
    std::int32_t mCheckedIndex = 0;
    std::string mItemModifiedName;  // empty for none
    ZObservedElement mItemModifiedElement;
};

}  // namespace orvane
