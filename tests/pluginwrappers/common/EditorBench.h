// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/ProductInstance.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZPopupMenu.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvane
{

/// Operates the shipped window without a display. A menu returns what choose returns. The plug-in
/// ticks only when the test calls Tick.
class EditorBench : public testing::Test
{
protected:
    explicit EditorBench(audioMasterCallback host = nullptr)
        : mMenusBefore(ZMenu::SetPresenter([this](const ZMenu& menu, const ZPoint&, ZWindow*) {
            shownMenu.clear();
            for (const ZMenu::Item& item : menu.GetItems())
                shownMenu.push_back(item.text.ToNarrow());
            return choose();
        }))
    {
        product = std::make_unique<ProductInstance>(host);
        window = MainWindow();
    }
    ~EditorBench() override { ZMenu::SetPresenter(mMenusBefore); }

    /// Returns the main window with its views attached to their elements.
    [[nodiscard]] boost::shared_ptr<ZWindow> MainWindow() const
    {
        const ZInterfaceLock lock;
        const auto main = product->app->GetMainWindow();
        main->AttachViews();
        product->app->Tick();
        return main;
    }
    /// Converts a view's point to the window's coordinates.
    [[nodiscard]] ZPoint At(const std::string& view, const ZPoint& point) const
    {
        const ZPoint origin = Find(view).GetWindowOrigin();
        return {origin.x + point.x, origin.y + point.y};
    }
    [[nodiscard]] ZView& Find(const std::string& view) const
    {
        const auto found = window->GetRootView()->FindSubview(view);
        if (!found)
            throw std::runtime_error("no view " + view);
        return *found;
    }
    void Mouse(ZNativeMouseEvent::Action action, const ZPoint& at,
               std::uint32_t mods = ZView::kMouseButton, std::int32_t notches = 0) const
    {
        const ZInterfaceLock lock;
        window->NativeMouse({action, at, mods, notches});
    }
    void Click(const std::string& view, const ZPoint& point = {5, 5},
               std::uint32_t mods = ZView::kMouseButton) const
    {
        const ZPoint at = At(view, point);
        Mouse(ZNativeMouseEvent::kMove, at, mods);
        Mouse(ZNativeMouseEvent::kDown, at, mods);
        Mouse(ZNativeMouseEvent::kUp, at, mods);
    }
    void ChooseInMenu(const std::string& view, std::int32_t index)
    {
        choose = [index] { return index; };
        Click(view);
    }
    [[nodiscard]] std::string TextOf(const std::string& view) const
    {
        return dynamic_cast<const ZPopupMenu&>(Find(view)).GetText().ToNarrow();
    }
    ZElement& Element(const std::string& name) const { return product->Element(name); }

    std::unique_ptr<ProductInstance> product;
    boost::shared_ptr<ZWindow> window;
    std::function<std::optional<std::int32_t>()> choose = [] { return std::nullopt; };
    std::vector<std::string> shownMenu;

private:
    ZMenu::Presenter mMenusBefore;
};

}  // namespace orvane
