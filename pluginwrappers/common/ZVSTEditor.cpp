// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTEditor.h"

#include "pluginwrappers/interface/VstKeyCode.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/signals/ZSignalBay.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>
#include <cstddef>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

template <typename Call>
void callAndReport(Call call)
{
    try {
        call();
    } catch (const ZException& exception) {
        exception.Report();
    }
}

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

ZVSTEditor::ZVSTEditor(AudioEffect* audioEffect, boost::shared_ptr<ZWindow> window)
    : AEffEditor(audioEffect)
    , mWindow(std::move(window))
    , mKeyMap{{VKEY_BACK, kKeyBackspace}, {VKEY_TAB, kKeyTab},        {VKEY_END, kKeyEnd},
              {VKEY_HOME, kKeyHome},      {VKEY_LEFT, kKeyLeft},      {VKEY_UP, kKeyUp},
              {VKEY_RIGHT, kKeyRight},    {VKEY_DOWN, kKeyDown},      {VKEY_DELETE, kKeyDelete},
              {VKEY_SHIFT, kKeyShift},    {VKEY_CONTROL, kKeyControl}}
{
    assert(mWindow);
}

ZVSTEditor::~ZVSTEditor()
{
    ZVSTEditor::close();
}

bool ZVSTEditor::getRect(ERect** rect)
{
    mRect = {0, 0, static_cast<std::int16_t>(mWindow->GetHeight()),
             static_cast<std::int16_t>(mWindow->GetWidth())};
    *rect = &mRect;
    return true;
}

bool ZVSTEditor::open(void* parent)
{
    try {
        if (!mWindow->Create(nullptr, reinterpret_cast<ZNativeHandle>(parent)))
            return false;
        systemWindow = parent;
        mWindow->RedrawAll();
        mWindow->Show();
        return true;
    } catch (const ZException& exception) {
        exception.Report();
        close();
        return false;
    }
}

void ZVSTEditor::close()
{
    const bool wasOpen = isOpen();
    AEffEditor::close();
    callAndReport([&] {
        if (ZApp* const app = ZApp::Of(*mWindow); app && wasOpen)
            app->EndModalRuns();  // closes menus and dialogs of the window
        mWindow->Hide();
        mWindow->Detach();
    });
    // Destroyed here, since most hosts only hide the parent window instead of destroying it.
    callAndReport([&] { mWindow->Destroy(); });
}

bool ZVSTEditor::onKeyDown(VstKeyCode& key)
{
    if (const auto mapped = mKeyMap.find(key.virt); mapped != mKeyMap.end()) {
        const auto message = boost::make_shared<ZMessage>(ZKEYDOWN);
        message->Add<std::uint8_t>("Key", mapped->second);
        message->Add<bool>("shift", key.virt == VKEY_SHIFT);
        Send(message);
        return true;
    }
    const char16_t character = characterOf(key);
    if (character == 0 || character == u' ')
        return false;
    const auto message = boost::make_shared<ZMessage>(ZTEXTINPUT);
    message->Add<ZString>("Text", ZString(std::u16string(1, character)));
    Send(message);
    return true;
}

bool ZVSTEditor::SampleRateChanged(float rate)
{
    Send(makeSampleRateMessage(rate));
    return true;
}

void ZVSTEditor::GetPicture(WindowPicture& picture)
{
    // Views that are attached for the first time get their elements' values by posted messages.
    mWindow->AttachViews();
    if (ZApp* const app = ZApp::Of(*mWindow))
        app->ProcessQueue();
    const ZBitmap& bitmap = mWindow->RenderOffscreen();
    const auto pixels = bitmap.GetNative()->GetPremultipliedPixels();
    mPicture.assign(pixels.begin(), pixels.end());
    assert(mPicture.size() == static_cast<std::size_t>(bitmap.GetWidth()) *
                                  static_cast<std::size_t>(bitmap.GetHeight()));
    picture = {bitmap.GetWidth(), bitmap.GetHeight(), mPicture.data()};
}

void ZVSTEditor::Send(const boost::shared_ptr<const ZMessage>& message)
{
    mWindow->HandleZMessage(message);
}

}  // namespace orvane
