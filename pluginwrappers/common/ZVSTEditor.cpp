// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTEditor.h"

#include "pluginwrappers/interface/VstKeyCode.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

template <typename Call>
void reporting(Call call)
{
    try {
        call();
    } catch (const ZException& exception) {
        exception.Report();
    }
}

/// What a key types, in one unit; 0 for nothing.
char16_t characterOf(const VstKeyCode& key)
{
    if (key.virt >= VKEY_NUMPAD0 && key.virt <= VKEY_NUMPAD9)
        return static_cast<char16_t>(u'0' + (key.virt - VKEY_NUMPAD0));
    switch (key.virt) {
    case VKEY_ENTER:
        return 3;
    case VKEY_RETURN:
        return 13;
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
    , mKeyMap{{VKEY_BACK, 8},      {VKEY_TAB, 9},      {VKEY_END, 0x23},    {VKEY_HOME, 0x24},
              {VKEY_LEFT, 0x25},   {VKEY_UP, 0x26},    {VKEY_RIGHT, 0x27},  {VKEY_DOWN, 0x28},
              {VKEY_DELETE, 0x2e}, {VKEY_SHIFT, 0x10}, {VKEY_CONTROL, 0x11}}
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
    reporting([&] {
        if (ZApp* const app = ZApp::Of(*mWindow); app && wasOpen)
            app->EndModalRuns();  // menus and dialogs that stand above the window
        mWindow->Hide();
        mWindow->Detach();
    });
    // Most hosts only hide their own window here, so ours has to be given up by name.
    reporting([&] { mWindow->Destroy(); });
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
    const auto message = boost::make_shared<ZMessage>(ZSAMPLERATECHANGED);
    message->Add<float>("rate", rate);
    Send(message);
    return true;
}

void ZVSTEditor::GetPicture(WindowPicture& picture)
{
    // Views that are attached for the first time wait for their elements to tell their values.
    mWindow->AttachViews();
    if (ZApp* const app = ZApp::Of(*mWindow))
        app->ProcessQueue();
    const ZBitmap& bitmap = mWindow->RenderOffscreen();
    const auto pixels = bitmap.GetNative()->GetPremultipliedPixels();
    mPicture.assign(pixels.begin(), pixels.end());
    picture = {bitmap.GetWidth(), bitmap.GetHeight(), mPicture.data()};
}

void ZVSTEditor::Send(const boost::shared_ptr<const ZMessage>& message)
{
    mWindow->HandleZMessage(message);
}

}  // namespace orvane
