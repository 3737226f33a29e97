// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTEditor.h"

#include "pluginwrappers/common/AudioEffectX.h"
#include "pluginwrappers/interface/VstKeyCode.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>
#include <cstddef>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

// Character of the keypad's Enter key, which distinguishes it from Return.
constexpr char16_t kEnterCharacter = 3;

/// Returns the UTF-16 unit that a key types; 0 for a key that types nothing.
char16_t characterOf(const VstKeyCode& key)
{
    if (key.virt >= VKEY_NUMPAD0 && key.virt <= VKEY_NUMPAD9)
        return static_cast<char16_t>(u'0' + (key.virt - VKEY_NUMPAD0));
    switch (key.virt) {
    case VKEY_ENTER:
        return kEnterCharacter;
    case VKEY_RETURN:
        return u'\r';
    case VKEY_DECIMAL:
        return u'.';
    case VKEY_SPACE:
        return u' ';
    default:
        return static_cast<char16_t>(key.character & 0xFF);
    }
}

}  // namespace

ZVSTEditor::ZVSTEditor(AudioEffectX* audioEffect, boost::shared_ptr<ZWindow> window)
    : AEffEditor(audioEffect)
    , mPlugin(*audioEffect)
    , mEditor(std::move(window))
    , mKeyMap{{VKEY_BACK, kKeyBackspace}, {VKEY_TAB, kKeyTab},        {VKEY_END, kKeyEnd},
              {VKEY_HOME, kKeyHome},      {VKEY_LEFT, kKeyLeft},      {VKEY_UP, kKeyUp},
              {VKEY_RIGHT, kKeyRight},    {VKEY_DOWN, kKeyDown},      {VKEY_DELETE, kKeyDelete},
              {VKEY_SHIFT, kKeyShift},    {VKEY_CONTROL, kKeyControl}}
{
    mEditor.SetHost(this);
}

ZVSTEditor::~ZVSTEditor() = default;

bool ZVSTEditor::getRect(ERect** rect)
{
    mRect = {0, 0, static_cast<std::int16_t>(mEditor.GetHeight()),
             static_cast<std::int16_t>(mEditor.GetWidth())};
    *rect = &mRect;
    return true;
}

bool ZVSTEditor::open(void* parent)
{
    const bool opened = mEditor.Open(reinterpret_cast<std::uintptr_t>(parent));
    if (opened)
        systemWindow = parent;
    else if (!mEditor.IsOpen())
        AEffEditor::close();
    return opened;
}

void ZVSTEditor::close()
{
    AEffEditor::close();
    mEditor.Close();
}

bool ZVSTEditor::onKeyDown(VstKeyCode& key)
{
    const ZNativeKeyEvent event = KeyEventOf(key);
    if (mEditor.HasFocus() || event.IsForContextMenu())
        return mEditor.TakeKey(event);
    if (const auto mapped = mKeyMap.find(key.virt); mapped != mKeyMap.end()) {
        const auto message = boost::make_shared<ZMessage>(ZKEYDOWN);
        message->Add<std::uint8_t>("Key", mapped->second);
        message->Add<bool>("shift", key.virt == VKEY_SHIFT);
        mEditor.Send(message);
        if (key.virt == VKEY_TAB)
            static_cast<void>(mEditor.TakeKey(event));
        return true;
    }
    const char16_t character = characterOf(key);
    if (character == 0 || character == u' ')
        return false;
    const auto message = boost::make_shared<ZMessage>(ZTEXTINPUT);
    message->Add<ZString>("Text", ZString(std::u16string(1, character)));
    mEditor.Send(message);
    return true;
}

ZNativeKeyEvent ZVSTEditor::KeyEventOf(const VstKeyCode& key) const
{
    constexpr std::pair<std::uint8_t, std::uint8_t> kOthers[] = {
        {VKEY_RETURN, kKeyReturn}, {VKEY_ENTER, kKeyReturn},  {VKEY_ESCAPE, kKeyEscape},
        {VKEY_SPACE, kKeySpace},   {VKEY_PAGEUP, kKeyPageUp}, {VKEY_PAGEDOWN, kKeyPageDown},
        {VKEY_INSERT, kKeyInsert}, {VKEY_F10, kKeyF10}};
    ZNativeKeyEvent event;
    event.shift = (key.modifier & MODIFIER_SHIFT) != 0;
    event.control = (key.modifier & (MODIFIER_CONTROL | MODIFIER_COMMAND)) != 0;
    event.alt = (key.modifier & MODIFIER_ALTERNATE) != 0;
    if (const auto mapped = mKeyMap.find(key.virt); mapped != mKeyMap.end())
        event.code = mapped->second;
    for (const auto& [virt, code] : kOthers)
        if (key.virt == virt)
            event.code = code;
    const char16_t character = characterOf(key);
    if (event.code == kKeyNone && character == u' ')
        event.code = kKeySpace;
    if (event.code == kKeyNone && character > u' ')
        event.text = ZString(std::u16string(1, character));
    return event;
}

bool ZVSTEditor::SampleRateChanged(float rate)
{
    mEditor.SampleRateChanged(rate);
    return true;
}

bool ZVSTEditor::ResizeWindow(const ZPoint& size)
{
    return mPlugin.sizeWindow(size.x, size.y);
}

void ZVSTEditor::GetPicture(WindowPicture& picture, double scale)
{
    const ZImage& image = *mEditor.Draw(scale).GetNative();
    const auto pixels = image.GetPremultipliedPixels();
    mPicture.assign(pixels.begin(), pixels.end());
    assert(mPicture.size() == static_cast<std::size_t>(image.GetWidth()) *
                                  static_cast<std::size_t>(image.GetHeight()));
    picture = {image.GetWidth(), image.GetHeight(), mPicture.data()};
}

}  // namespace orvane
