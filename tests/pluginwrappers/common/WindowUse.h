// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/ProductInstance.h"
#include "support/BoxRecorder.h"
#include "support/PrivateFolder.h"
#include "support/Test.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

namespace orvane
{

/// The user of the shipped window, which has no display here; the test answers its menus. The
/// plug-in ticks only when the test calls Tick.
struct WindowUse : testing::Test
{
    using Notes = std::vector<std::string>;

    WindowUse()
    {
        locked([this] {
            window = product->app->GetMainWindow();
            window->AttachViews();
        });
        product->Tick();
    }
    ~WindowUse() override { ZMenu::SetPresenter(mMenusBefore); }

    /// Returns the index of the item that the user chooses in a menu.
    virtual std::optional<std::int32_t> Answer(const ZMenu& /*menu*/)
    {
        ++menus;
        return choice;
    }
    [[nodiscard]] ZView& Find(const std::string& view) const
    {
        const auto found = window->GetRootView()->FindSubview(view);
        if (!found)
            throw std::runtime_error("no view " + view);
        return *found;
    }
    /// Converts a view's point to the window's coordinates.
    [[nodiscard]] ZPoint At(const std::string& view, const ZPoint& point) const
    {
        const ZPoint origin = Find(view).GetWindowOrigin();
        return {origin.x + point.x, origin.y + point.y};
    }
    void Mouse(ZNativeMouseEvent::Action action, const ZPoint& at,
               std::uint32_t modifiers = ZView::kMouseButton, std::int32_t notches = 0) const
    {
        locked([&] { window->NativeMouse({action, at, modifiers, notches}); });
    }
    void Click(const std::string& view, const ZPoint& point = {5, 5}) const
    {
        const ZPoint at = At(view, point);
        for (const auto action :
             {ZNativeMouseEvent::kMove, ZNativeMouseEvent::kDown, ZNativeMouseEvent::kUp})
            Mouse(action, at);
    }
    bool Type(std::uint8_t code, const char* text = "", bool shift = false) const
    {
        return locked([&] { return window->NativeKey({code, ZString(text), shift}); });
    }
    ZElement& Element(const std::string& name) const { return product->Element(name); }

    const PrivateFolder folder;
    const EnvironmentVariable settings{"XDG_CONFIG_HOME", folder.Path().c_str()};
    const TestHost host;
    std::unique_ptr<ProductInstance> product =
        std::make_unique<ProductInstance>(TestHost::callback);
    boost::shared_ptr<ZWindow> window;
    std::optional<std::int32_t> choice;  // in the menus
    int menus = 0;                       // that were opened

private:
    ZMenu::Presenter mMenusBefore = ZMenu::SetPresenter(
        [this](const ZMenu& menu, const ZPoint&, ZWindow*) { return Answer(menu); });
};

}  // namespace orvane
