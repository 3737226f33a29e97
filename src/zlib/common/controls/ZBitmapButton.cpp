// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZBitmapButton.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZEditGesture.h"
#include "zlib/common/views/ZViewTags.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

constexpr std::array<std::string_view, ZBitmapButton::kPictureCount> kPictureTypes{
    "off",          "on",          "press", "presswhileon", "presswhileoff",
    "disabled_off", "disabled_on", "over",  "overwhileon",  "overwhileoff"};

boost::shared_ptr<ZCommand> readCommand(const ZXMLElement& view, std::string_view when,
                                        ZApplication* application)
{
    boost::shared_ptr<ZCommand> command;
    const auto* const app = dynamic_cast<const ZApp*>(application);
    const auto action = findTag(view, "action", "when", when);
    if (action && app && app->HasCommandList())
        static_cast<void>(
            app->GetCommandList()->GetCommand(action->GetAttribute("command"), command));
    return command;
}

}  // namespace

ZBitmapButton::ZBitmapButton(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZControl(xml, application)
    , mMomentary(xml->GetAttributeBool("momentary"))
    , mTurnOnCommand(readCommand(*xml, "OnTurnOn", application))
    , mTurnOffCommand(readCommand(*xml, "OnTurnOff", application))
{
    for (std::size_t i = 0; i < kPictureCount; ++i)
        mPictures[i] = readBitmap(*xml, kPictureTypes[i], application);
    SetNavigable(true);
    ZBitmapButton::SetMomentaryCommand(readCommand(*xml, "OnMomentaryClick", application));
}

ZBitmapButton::~ZBitmapButton()
{
    if (mMomentaryCommand)
        mMomentaryCommand->RemoveObserver(this);
}

bool ZBitmapButton::IsKindOf(std::string_view className) const
{
    return className == "ZBitmapButtonClass" || ZControl::IsKindOf(className);
}

const char* ZBitmapButton::GetClassName() const
{
    return "ZBitmapButtonClass";
}

void ZBitmapButton::SetMomentaryCommand(const boost::shared_ptr<ZCommand>& command)
{
    if (mMomentaryCommand)
        mMomentaryCommand->RemoveObserver(this);
    mMomentaryCommand = command;
    if (mMomentaryCommand)
        mMomentaryCommand->AddObserver(this);
    ShowState();
}

void ZBitmapButton::SetPicture(Picture picture, const boost::shared_ptr<ZBitmap>& bitmap)
{
    assert(picture < kPictureCount);
    mPictures[picture] = bitmap;
    ShowState();
}

bool ZBitmapButton::IsOn() const
{
    return mElement && mElement->GetDiscrete() > 0;
}

bool ZBitmapButton::LooksActive() const
{
    return IsEnabled() && (!mMomentaryCommand || mMomentaryCommand->IsEnabled());
}

// Commands override the button's own state; of several, the one listed first here decides.
bool ZBitmapButton::TakesPress() const
{
    for (const auto& command : {mTurnOffCommand, mTurnOnCommand, mMomentaryCommand})
        if (command)
            return command->IsEnabled();
    return IsEnabled();
}

void ZBitmapButton::UpdateBitmap()
{
    mCurrentBitmap = ChooseBitmap();
}

boost::shared_ptr<ZBitmap> ZBitmapButton::ChooseBitmap() const
{
    const bool isOn = IsOn();
    const bool isActive = LooksActive();
    struct Rule
    {
        bool applies;
        Picture picture;
    };
    const Rule rules[] = {
        {mPressed, kPress},
        {mPressed && isOn, kPressWhileOn},
        {mPressed && !isOn, kPressWhileOff},
        {mMouseOver && !isOn && isActive, kOver},
        {mMouseOver && isOn, kOverWhileOn},
        {mMouseOver && !isOn, kOverWhileOff},
        {!isActive && isOn, kDisabledOn},
        {!isActive, kDisabledOff},
        {isActive && isOn, kOn},
    };
    for (const Rule& rule : rules)
        if (rule.applies && mPictures[rule.picture])
            return mPictures[rule.picture];
    return isActive ? mPictures[kOff] : mCurrentBitmap;
}

void ZBitmapButton::ShowState()
{
    UpdateBitmap();
    Invalidate();
}

void ZBitmapButton::ElementChanged(std::uint64_t /*elementId*/)
{
    const auto shown = mCurrentBitmap;
    UpdateBitmap();
    if (mCurrentBitmap != shown)
        Invalidate();
}

void ZBitmapButton::OnAttached()
{
    ShowState();
}

void ZBitmapButton::OnDocumentChanged()
{
    ShowState();
}

void ZBitmapButton::SetEnabled(bool enabled)
{
    ZControl::SetEnabled(enabled);
    ShowState();
}

void ZBitmapButton::MouseDown(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
    if (!TakesPress())
        return;
    if (!mMomentary) {
        mPressed = true;
        Flip();
        return;
    }
    ShowPressed(true);
    SetMouseCapture(true, true);
}

void ZBitmapButton::MouseDoubleClick(const ZPoint& point, std::uint32_t mods)
{
    MouseDown(point, mods);
}

void ZBitmapButton::MouseMoved(const ZPoint& point, std::uint32_t /*mods*/)
{
    if (mMomentary && HasMouseCapture())
        ShowPressed(mFrame.ContainsWithEdges(point));
}

// A release counts only if the press began on this button. The capture ends before the action.
void ZBitmapButton::MouseUp(const ZPoint& point, std::uint32_t /*mods*/)
{
    if (!mMomentary || !HasMouseCapture())
        return;
    const bool acts = IsEnabled() && mFrame.ContainsWithEdges(point);
    const auto life = GetLife();
    ShowPressed(false);
    SetMouseCapture(false, true);
    if (acts && !life.expired())
        Act();
}

// Nothing of the view is used after the action: a command may open a dialog, during which the
// window may be destroyed.
void ZBitmapButton::Act()
{
    const auto command = mMomentaryCommand;
    if (!command)
        Flip();
    else if (command->IsEnabled())
        command->Dispatch();
}

bool ZBitmapButton::WantsKey(const ZNativeKeyEvent& key) const
{
    return (key.Is(kKeyReturn) || key.Is(kKeySpace)) && TakesPress();
}

void ZBitmapButton::KeyDown(const ZNativeKeyEvent& key)
{
    if (!WantsKey(key))
        return;
    if (mMomentary)
        Act();
    else
        Flip();
}

void ZBitmapButton::OnCaptureLost()
{
    ShowPressed(false);
}

void ZBitmapButton::ShowPressed(bool pressed)
{
    mPressed = pressed;
    ShowState();
}

void ZBitmapButton::Flip()
{
    const bool turnsOn = !IsOn();
    const auto element = mElement;
    const auto command = turnsOn ? mTurnOnCommand : mTurnOffCommand;
    if (command)
        command->Dispatch();
    editDiscrete(element, turnsOn ? 1 : 0);
}

void ZBitmapButton::MouseEntered(const ZPoint& /*point*/)
{
    SetMouseOver(true);
}

void ZBitmapButton::MouseLeft()
{
    SetMouseOver(false);
}

void ZBitmapButton::SetMouseOver(bool over)
{
    mMouseOver = over;
    if (!mPictures[kOver] && !mPictures[kOverWhileOn] && !mPictures[kOverWhileOff])
        return;
    ShowState();
}

void ZBitmapButton::Draw(const ZRect& /*update*/)
{
    if (mCurrentBitmap)
        DrawBitmap(*mCurrentBitmap, 0, 0);
    else
        DrawRect({mFrame.left, mFrame.top, mFrame.right - 1, mFrame.bottom - 1});
}

}  // namespace orvane
