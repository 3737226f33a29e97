// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/pictures/MenuPicture.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "kestrune/common/views/KestruneFonts.h"
#include "resources/KestruneResources.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZMenuContent.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZPlugin.h"
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

/// A bitmap of the same size and pixels.
std::unique_ptr<ZBitmap> copyOf(const ZBitmap& bitmap)
{
    auto copy = std::make_unique<ZBitmap>(bitmap.GetWidth(), bitmap.GetHeight(), nullptr);
    const auto pixels = bitmap.GetNative()->ReadPixels();
    std::copy(pixels.begin(), pixels.end(), copy->LockPixels().begin());
    copy->UnlockPixels();
    return copy;
}

void drawMenu(ZDrawingContext& picture, const ZMenu& menu, const ZPoint& position,
              std::int32_t item)
{
    ZMenuContent content(menu);
    content.SetSize(content.GetSize());
    const ZRect place = content.GetItemRect(item);
    const ZPoint pointer{place.left + place.GetWidth() / 2, place.top + place.GetHeight() / 2};
    content.Mouse({ZNativeMouseEvent::kMove, {place.left + 1, place.top + 1}, 0, 0});
    content.Mouse({ZNativeMouseEvent::kMove, pointer, 0, 0});
    const ZSavedStateScope saved(picture);
    picture.Translate(position.x, position.y);
    content.Draw(picture);
}

}  // namespace

WindowPixels drawOpenMenu(const std::string& view, std::int32_t item)
{
    const ZInterfaceLock lock;
    const auto plugin = startProduct();
    const auto window = plugin->GetMainWindow();
    window->AttachViews();
    plugin->Tick();
    const auto menuView = window->GetRootView()->FindSubview(view);
    const auto picture = copyOf(window->RenderOffscreen());
    bool opened = false;
    const auto before = ZMenu::SetPresenter(
        [&](const ZMenu& menu, const ZPoint& position, ZWindow*) -> std::optional<std::int32_t> {
            drawMenu(*picture, menu, position, item);
            opened = true;
            return std::nullopt;
        });
    if (menuView)
        menuView->MouseDown({1, 1}, ZView::kMouseButton);
    ZMenu::SetPresenter(before);
    if (!opened)
        throw ZException(ZString("the window has no menu " + view));
    const std::span<const std::uint32_t> pixels = picture->GetNative()->GetPremultipliedPixels();
    return {picture->GetWidth(), picture->GetHeight(), {pixels.begin(), pixels.end()}};
}

}  // namespace orvane
