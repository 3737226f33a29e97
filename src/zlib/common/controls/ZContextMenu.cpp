// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZContextMenu.h"

#include "zlib/common/controls/ZControl.h"
#include "zlib/common/controls/ZPopupMenu.h"
#include "zlib/common/controls/ZValueDialog.h"
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/documents/ZProgramList.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZEditGesture.h"
#include "zlib/common/views/ZWindow.h"
#include "zlib/common/views/ZWindowScale.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>
#include <optional>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

boost::shared_ptr<ZElement> findElement(const ZApp& app, const char* name)
{
    const auto document = name ? app.GetCurrentDocument() : nullptr;
    return document ? document->FindElement(name) : nullptr;
}

boost::shared_ptr<ZElement> elementOf(const ZApp& app, const ZXMLElement& tag, ZElement::Type type)
{
    const auto element = findElement(app, tag.GetAttribute("element"));
    return element && element->GetType() == type ? element : nullptr;
}

ZString labelOf(const ZXMLElement& tag)
{
    return ZString(tag.GetAttributeOr("label", ""));
}

ZString withDots(const ZString& label)
{
    ZString text = label;
    text.Append("...");
    return text;
}

/// Sets a float element as one edit of its own.
void editFloat(const boost::shared_ptr<ZElement>& element, float value)
{
    const ZEditGesture edit(element);
    element->SetZFloat(value, false);
}

bool isAtDefault(const ZElement& element)
{
    return element.GetType() == ZElement::ZFLOAT
               ? element.GetZFloat() == element.GetZFloatDefault()
               : element.GetDiscrete() == element.GetDiscreteDefault();
}

void resetToDefault(const boost::shared_ptr<ZElement>& element)
{
    if (element->GetType() == ZElement::ZFLOAT)
        editFloat(element, element->GetZFloatDefault());
    else
        editDiscrete(element, element->GetDiscreteDefault());
}

/// Stores the user's choice, 0 for none, and brings it to this window. Other windows, which the
/// user is not looking at, stay as they are and take the new scale when they open next, in this
/// process and in others: a choice in one window rearranges nothing else on the screen.
void chooseScale(ZApp& app, ZWindow& window, std::int32_t percent)
{
    if (!ZWindowScale::SetChoice(app, percent))
        return ZMessageBox::Show(ZMessageBox::kNotice, "Could not keep the scale",
                                 "The settings file cannot be written.");
    // A host that refuses leaves the window as it is; the menu tells that the choice waits.
    static_cast<void>(window.TakeScale());
}

}  // namespace

ZContextMenu::ZContextMenu(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZWindowMenu(xml, application)
    , mXml(xml)
{
}

bool ZContextMenu::IsKindOf(std::string_view className) const
{
    return className == "ZContextMenuClass" || ZWindowMenu::IsKindOf(className);
}

const char* ZContextMenu::GetClassName() const
{
    return "ZContextMenuClass";
}

void ZContextMenu::Show(ZWindow& window, ZView* view, const ZPoint& point)
{
    ZApp* const app = ZApp::Of(window);
    if (!app)
        return;
    Builder builder(*app, window);
    if (view)
        AddViewItems(builder, *view);
    builder.EndGroup();
    AddItems(builder, *mXml);
    builder.Run(point);
}

void ZContextMenu::AddViewItems(Builder& builder, ZView& view)
{
    const bool isControl =
        dynamic_cast<const ZControl*>(&view) || dynamic_cast<const ZPopupMenu*>(&view);
    const auto element = isControl ? view.GetElement() : nullptr;
    if (!element)
        return;
    const bool isFloat = element->GetType() == ZElement::ZFLOAT;
    if (!isFloat && element->GetType() != ZElement::ZDISCRETE)
        return;
    builder.Add(kResetLabel, [element] { resetToDefault(element); }).enabled =
        !isAtDefault(*element);
    if (isFloat)
        builder.AddValue(kEnterLabel, element, element->GetLabel(ZElement::kFullLabel));
}

void ZContextMenu::AddItems(Builder& builder, const ZXMLElement& xml)
{
    for (std::int32_t i = 0; const auto tag = xml.GetChild(i); ++i)
        AddTag(builder, *tag);
}

void ZContextMenu::AddTag(Builder& builder, const ZXMLElement& tag)
{
    const ZApp& app = builder.GetApp();
    if (tag.IsNamed("group"))
        return builder.EndGroup();
    if (tag.IsNamed("item"))
        return AddCommand(builder, tag);
    if (tag.IsNamed("submenu"))
        return builder.AddSubmenu(labelOf(tag), [&] { AddItems(builder, tag); });
    if (tag.IsNamed("programs"))
        return builder.AddSubmenu(labelOf(tag), [&] { AddPrograms(builder); });
    if (tag.IsNamed("scales"))
        return builder.AddSubmenu(labelOf(tag), [&] { AddScales(builder); });
    if (tag.IsNamed("unfold"))
        return AddFold(builder, labelOf(tag));
    if (tag.IsNamed("value")) {
        if (const auto element = elementOf(app, tag, ZElement::ZFLOAT))
            builder.AddValue(withDots(labelOf(tag)), element, labelOf(tag));
        return;
    }
    const auto element = elementOf(app, tag, ZElement::ZDISCRETE);
    if (element && tag.IsNamed("switch"))
        AddSwitch(builder, labelOf(tag), element);
    else if (element && tag.IsNamed("choice"))
        builder.AddSubmenu(labelOf(tag), [&] { AddChoices(builder, element); });
}

void ZContextMenu::AddCommand(Builder& builder, const ZXMLElement& tag)
{
    ZApp& app = builder.GetApp();
    boost::shared_ptr<ZCommand> command;
    if (!app.HasCommandList() ||
        !app.GetCommandList()->GetCommand(tag.GetAttributeOr("command", ""), command))
        return;
    const ZString label(command->GetMenuName());
    const ZNativeWindow* const native = builder.GetWindow().GetNativeWindow();
    const auto handle = static_cast<std::int32_t>(native ? native->GetHandle() : 0);
    ZMenu::Item& item = builder.Add(tag.AttributeIs("dialog", "true") ? withDots(label) : label,
                                    [command, handle] { command->DispatchFrom(handle); });
    item.enabled = command->CanDispatch();
    const auto element = elementOf(app, tag, ZElement::ZDISCRETE);
    item.checked = element ? element->GetDiscrete() != 0 : command->IsChecked();
}

void ZContextMenu::AddChoices(Builder& builder, const boost::shared_ptr<ZElement>& element)
{
    for (std::int32_t i = 0; i < element->CountDiscreteValues(); ++i) {
        const auto choose = [element, i] {
            // A preset loaded while the menu was open may have removed the choice.
            if (i < element->CountDiscreteValues())
                editDiscrete(element, i);
        };
        builder.Add(*element->GetDiscreteString(i), choose).checked = i == element->GetDiscrete();
    }
}

void ZContextMenu::AddSwitch(Builder& builder, const ZString& label,
                             const boost::shared_ptr<ZElement>& element)
{
    const std::int32_t other = element->GetDiscrete() == 0 ? 1 : 0;
    builder.Add(label, [element, other] { editDiscrete(element, other); }).checked = other == 0;
}

void ZContextMenu::AddPrograms(Builder& builder)
{
    auto* const plugin = dynamic_cast<ZPlugin*>(&builder.GetApp());
    const ZProgramList* const programs = plugin ? plugin->GetPrograms() : nullptr;
    for (std::int32_t i = 0; programs && i < programs->GetCount(); ++i) {
        const auto choose = [plugin, i] {
            plugin->GetPrograms()->SetCurrent(i);
            plugin->MarkStateChanged();
        };
        builder.Add(programs->GetName(i).value_or(ZString("Program")), choose).checked =
            i == programs->GetCurrent();
    }
}

void ZContextMenu::AddScales(Builder& builder)
{
    ZApp& app = builder.GetApp();
    ZWindow& window = builder.GetWindow();
    const auto choice = ZWindowScale::GetChoice(app);
    const double inForce = window.GetDeviceScale().Get();
    const bool waits = choice && *choice / 100.0 != inForce;
    for (const std::int32_t percent : ZWindowScale::kChoices) {
        ZString label(std::to_string(percent) + " %");
        if (waits && percent == *choice)
            label.Append(" (when the window opens next)");
        builder.Add(label, [&app, &window, percent] { chooseScale(app, window, percent); })
            .checked = choice && percent / 100.0 == inForce;
    }
    builder.EndGroup();
    builder.Add("As the host or display says", [&app, &window] { chooseScale(app, window, 0); })
        .checked = !choice;
}

void ZContextMenu::AddFold(Builder& builder, const ZString& label)
{
    ZWindow& window = builder.GetWindow();
    if (!window.HasFold())
        return;
    const bool isOpen = window.IsUnfolded();
    const bool isWanted = window.WantsUnfolded();
    ZString text = label;
    // A host has refused the size; choosing the item takes the wish back.
    if (isWanted != isOpen)
        text.Append(isWanted ? " (when the window opens next)" : " (until the window opens next)");
    builder.Add(text, [&window, isWanted] { static_cast<void>(window.Unfold(!isWanted)); })
        .checked = isOpen;
}

// The builder.

ZContextMenu::Builder::Builder(ZApp& app, ZWindow& window)
    : mApp(app)
    , mWindow(window)
    , mMenu(boost::make_shared<ZMenu>("contextmenu", ZMenu::Kind::kPopup))
{
}

ZMenu::Item& ZContextMenu::Builder::Add(const ZString& text, Action action)
{
    mActions->push_back(std::move(action));
    return mMenu->AddItem(text, static_cast<std::int32_t>(mActions->size()) - 1);
}

void ZContextMenu::Builder::AddInformation(const ZString& text)
{
    mMenu->AddItem(text, ZMenu::kNoIndex).enabled = false;
}

void ZContextMenu::Builder::AddSubmenu(const ZString& text, const std::function<void()>& fill)
{
    const auto outer =
        std::exchange(mMenu, boost::make_shared<ZMenu>("contextsubmenu", ZMenu::Kind::kPopup));
    fill();
    const auto submenu = std::exchange(mMenu, outer);
    if (!submenu->GetItems().empty())
        mMenu->AddSubmenu(text, submenu);
}

ZMenu::Item& ZContextMenu::Builder::AddValue(const ZString& text,
                                             const boost::shared_ptr<ZElement>& element,
                                             const ZString& name)
{
    assert(element && element->GetType() == ZElement::ZFLOAT);
    return Add(text, [&app = mApp, &window = mWindow, element, name] {
        const auto entered = ZValueDialog::Ask(app, &window,
                                               {.name = name,
                                                .units = element->GetUnits(),
                                                .min = element->Min(),
                                                .max = element->Max(),
                                                .value = element->GetZFloat()});
        if (entered)
            editFloat(element, *entered);
    });
}

void ZContextMenu::Builder::Run(const ZPoint& point)
{
    const auto life = mWindow.GetLife();
    const auto menu = mMenu;
    const auto actions = mActions;
    std::int32_t chosen = 0;
    if (!menu->Popup(mWindow.ToScreen(point), &mWindow, chosen) || life.expired())
        return;
    assert(chosen >= 0 && static_cast<std::size_t>(chosen) < actions->size());
    (*actions)[static_cast<std::size_t>(chosen)]();
}

}  // namespace orvane
