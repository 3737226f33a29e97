// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/pictures/MenuPicture.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "kestrune/common/views/KestruneFonts.h"
#include "resources/KestruneResources.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZMenuContent.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/documents/ZPluginPresetsAudioDocument.h"
#include "zlib/common/documents/ZProgramList.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"
#include "zlib/common/views/ZWindowManager.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <span>

namespace orvane
{

namespace
{

std::unique_ptr<ZPlugin> startProduct()
{
    auto plugin = std::make_unique<ZPlugin>(kestruneResources());
    plugin->SetStandalone(false);
    plugin->SetResourceName(descriptionResourceName());
    plugin->PostZMessage(boost::make_shared<ZMessage>(ZLOOPERSTART), plugin.get());
    plugin->ProcessQueue();
    plugin->ExposeElements(*plugin->GetCurrentDocument());
    addProductFonts(*plugin);
    return plugin;
}

/// The programs of the plug-in, all in the state of their presets.
class PresetList : public ZProgramList
{
public:
    explicit PresetList(ZPlugin& plugin)
        : mDocument(
              boost::dynamic_pointer_cast<ZPluginPresetsAudioDocument>(plugin.GetCurrentDocument()))
    {
    }
    [[nodiscard]] std::int32_t GetCount() const override { return mDocument->GetPresetCount(); }
    [[nodiscard]] std::int32_t GetCurrent() const override { return 0; }
    [[nodiscard]] std::optional<ZString> GetName(std::int32_t index) const override
    {
        return ZString(mDocument->GetPresetName(index));
    }
    void SetCurrent(std::int32_t index) override { mDocument->LoadFactoryPreset(index); }

private:
    boost::shared_ptr<ZPluginPresetsAudioDocument> mDocument;
};

constexpr std::int32_t kOverlap = 3;  // of a submenu over its menu

/// The window's picture at the top of one that is as wide and reaches down to bottom, in units.
std::unique_ptr<ZBitmap> copyOf(const ZBitmap& bitmap, std::int32_t bottom, double scale)
{
    constexpr std::uint32_t kDesktop = 0xff5a5f66;
    constexpr std::int32_t kMargin = 8;
    const ZRect frame = bitmap.GetFrame();
    const std::int32_t height = bottom > frame.bottom ? bottom + kMargin : frame.bottom;
    auto copy = std::make_unique<ZBitmap>(frame.right, height, scale);
    const auto pixels = bitmap.GetNative()->ReadPixels();
    const auto room = copy->LockPixels();
    std::ranges::fill(room, kDesktop);
    std::ranges::copy(pixels, room.begin());
    copy->UnlockPixels();
    return copy;
}

/// How far a menu and the submenu of an item, none for -1, reach down.
std::int32_t heightOf(const ZMenu& menu, std::int32_t item)
{
    ZMenuContent content(menu);
    content.SetSize(content.GetSize());
    const auto submenu = content.GetSubmenu(item);
    const std::int32_t below =
        submenu ? content.GetItemRect(item).top - kOverlap + heightOf(*submenu, -1) : 0;
    return std::max(content.GetSize().y, below);
}

/// Draws a menu with an item under the pointer, none for -1, and below it the item's submenu.
void drawMenu(ZDrawingContext& picture, const ZMenu& menu, const ZPoint& position,
              std::int32_t item)
{
    ZMenuContent content(menu);
    content.SetSize(content.GetSize());
    content.SetHighlight(ZMenuContent::kNone);
    const ZRect place = content.GetItemRect(item);
    const ZPoint pointer{place.left + place.GetWidth() / 2, place.top + place.GetHeight() / 2};
    content.Mouse({ZNativeMouseEvent::kMove, {place.left + 1, place.top + 1}, 0, 0});
    content.Mouse({ZNativeMouseEvent::kMove, pointer, 0, 0});
    {
        const ZSavedStateScope saved(picture);
        picture.Translate(position.x, position.y);
        content.Draw(picture);
    }
    if (const auto submenu = content.GetSubmenu(content.GetHighlight()))
        drawMenu(picture, *submenu,
                 {position.x + content.GetSize().x - kOverlap, position.y + place.top - kOverlap},
                 ZMenuContent::kNone);
}

void openMenu(ZWindow& window, const MenuShot& shot)
{
    const auto view = window.GetRootView()->FindSubview(shot.view);
    if (!view)
        return;
    if (shot.kind == MenuShot::Kind::kOwn)
        return view->MouseDown({1, 1}, ZView::kMouseButton);
    const ZRect frame = view->GetFrame();
    const ZPoint origin = view->GetWindowOrigin();
    window.ShowContextMenu(view.get(),
                           {origin.x + frame.GetWidth() / 2, origin.y + frame.GetHeight() / 2});
}

}  // namespace

WindowPixels drawOpenMenu(const MenuShot& shot)
{
    const ZInterfaceLock lock;
    const auto plugin = startProduct();
    PresetList programs(*plugin);
    plugin->SetPrograms(&programs);
    const auto window = plugin->GetMainWindow();
    window->AttachViews();
    plugin->Tick();
    const ZBitmap& closed = window->RenderOffscreen(ZDeviceScale(shot.scale));
    std::unique_ptr<ZBitmap> picture;
    const auto before = ZMenu::SetPresenter(
        [&](const ZMenu& menu, const ZPoint& position, ZWindow*) -> std::optional<std::int32_t> {
            picture = copyOf(closed, position.y + heightOf(menu, shot.item), shot.scale);
            drawMenu(*picture, menu, position, shot.item);
            return std::nullopt;
        });
    openMenu(*window, shot);
    ZMenu::SetPresenter(before);
    if (!picture)
        throw ZException(ZString("the window has no menu " + shot.view));
    const ZImage& image = *picture->GetNative();
    const std::span<const std::uint32_t> pixels = image.GetPremultipliedPixels();
    return {image.GetWidth(), image.GetHeight(), {pixels.begin(), pixels.end()}};
}

}  // namespace orvane
