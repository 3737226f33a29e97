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

/// A bitmap of the same size, scale and pixels.
std::unique_ptr<ZBitmap> copyOf(const ZBitmap& bitmap, const ZWindow& window, double scale)
{
    auto copy = std::make_unique<ZBitmap>(window.GetWidth(), window.GetHeight(), scale);
    const auto pixels = bitmap.GetNative()->ReadPixels();
    std::copy(pixels.begin(), pixels.end(), copy->LockPixels().begin());
    copy->UnlockPixels();
    return copy;
}

/// Draws a menu with an item under the pointer, none for -1, and below it the item's submenu.
void drawMenu(ZDrawingContext& picture, const ZMenu& menu, const ZPoint& position,
              std::int32_t item)
{
    constexpr std::int32_t kOverlap = 3;
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
    const auto picture =
        copyOf(window->RenderOffscreen(ZDeviceScale(shot.scale)), *window, shot.scale);
    bool opened = false;
    const auto before = ZMenu::SetPresenter(
        [&](const ZMenu& menu, const ZPoint& position, ZWindow*) -> std::optional<std::int32_t> {
            drawMenu(*picture, menu, position, shot.item);
            opened = true;
            return std::nullopt;
        });
    openMenu(*window, shot);
    ZMenu::SetPresenter(before);
    if (!opened)
        throw ZException(ZString("the window has no menu " + shot.view));
    const ZImage& image = *picture->GetNative();
    const std::span<const std::uint32_t> pixels = image.GetPremultipliedPixels();
    return {image.GetWidth(), image.GetHeight(), {pixels.begin(), pixels.end()}};
}

}  // namespace orvane
