// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/views/ZWindowMenu.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace orvane
{

class ZApp;
class ZElement;
class ZXMLElement;

/// The context menu that a description lists, in the order of these tags:
///
/// - `<item command="" dialog="true" element="" />`: a command, by its label; with dialog "..."
///   behind it; with element a mark while that is not 0
/// - `<choice element="" label="" />`: a submenu of the choices of a discrete element
/// - `<switch element="" label="" />`: a discrete element of two choices, with a mark for the
/// second
/// - `<value element="" label="" />`: a float element, typed in a dialog
/// - `<programs label="" />`: a submenu of the plug-in's programs
/// - `<scales label="" />`: a submenu of the scales of the window
/// - `<unfold label="" />`: opens and closes the window's fold, with a mark while it is open
/// - `<submenu label="">...</submenu>`: a submenu of these tags
/// - `<group />`: a line
///
/// What names nothing that exists is left out. Over a control of the user's come first "Reset to
/// Default" and, for a number, "Enter Value...". All goes through commands and elements, so that
/// the host hears of it as of any control. [interface thread]
class ZContextMenu : public ZWindowMenu
{
public:
    ZContextMenu(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void Show(ZWindow& window, ZView* view, const ZPoint& point) override;

protected:
    /// A menu under construction, and what its items do.
    class Builder
    {
    public:
        using Action = std::function<void()>;

        Builder(ZApp& app, ZWindow& window);

        /// Appends an item; the action runs after the menu, under the interface lock, while the
        /// application and the window still exist.
        ZMenu::Item& Add(const ZString& text, Action action);
        /// Appends a line of information, which cannot be chosen.
        void AddInformation(const ZString& text);
        /// Draws a line before the next item.
        void EndGroup() { mMenu->EndGroup(); }
        /// Lets fill append to a submenu, which is left out if nothing comes.
        void AddSubmenu(const ZString& text, const std::function<void()>& fill);
        /// Appends an item that asks for the value of a float element.
        ZMenu::Item& AddValue(const ZString& text, const boost::shared_ptr<ZElement>& element,
                              const ZString& name);
        /// Shows the menu and runs the action of the item that the user chooses.
        void Run(const ZPoint& point);

        [[nodiscard]] ZApp& GetApp() const { return mApp; }
        [[nodiscard]] ZWindow& GetWindow() const { return mWindow; }

    private:
        ZApp& mApp;
        ZWindow& mWindow;
        boost::shared_ptr<ZMenu> mMenu;
        std::shared_ptr<std::vector<Action>> mActions = std::make_shared<std::vector<Action>>();
    };

    static constexpr const char* kResetLabel = "Reset to Default";
    static constexpr const char* kEnterLabel = "Enter Value...";

    /// Appends the items of a view; those of a control here.
    virtual void AddViewItems(Builder& builder, ZView& view);

private:
    static void AddItems(Builder& builder, const ZXMLElement& xml);
    static void AddTag(Builder& builder, const ZXMLElement& tag);
    static void AddCommand(Builder& builder, const ZXMLElement& tag);
    static void AddChoices(Builder& builder, const boost::shared_ptr<ZElement>& element);
    static void AddSwitch(Builder& builder, const ZString& label,
                          const boost::shared_ptr<ZElement>& element);
    static void AddPrograms(Builder& builder);
    static void AddScales(Builder& builder);
    static void AddFold(Builder& builder, const ZString& label);

    boost::shared_ptr<ZXMLElement> mXml;
};

}  // namespace orvane
