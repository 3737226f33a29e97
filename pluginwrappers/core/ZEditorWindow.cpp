// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZEditorWindow.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/signals/ZSignalBay.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <cassert>
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

/// Whether some view opens a menu or a dialog by the key.
bool canOpen(const ZNativeKeyEvent& key)
{
    return key.Is(kKeyReturn) || key.Is(kKeySpace) || key.Is(kKeyDown) || key.Is(kKeyUp);
}

}  // namespace

ZEditorWindow::ZEditorWindow(boost::shared_ptr<ZWindow> window)
    : mWindow(std::move(window))
{
    assert(mWindow);
}

ZEditorWindow::~ZEditorWindow()
{
    Close();
    mWindow->SetHost(nullptr);
}

std::int32_t ZEditorWindow::GetWidth() const
{
    return mWindow->GetPixelSize().x;
}

std::int32_t ZEditorWindow::GetHeight() const
{
    return mWindow->GetPixelSize().y;
}

void ZEditorWindow::SetHost(ZWindowHost* host)
{
    mWindow->SetHost(host);
}

void ZEditorWindow::SetHostScale(double scale)
{
    mWindow->SetHostScale(scale);
}

void ZEditorWindow::TakeScale()
{
    static_cast<void>(mWindow->TakeScale());
}

bool ZEditorWindow::Open(std::uintptr_t parent)
{
    try {
        if (!mWindow->Create(nullptr, parent))
            return false;
        mIsOpen = true;
        mWindow->RedrawAll();
        mWindow->Show();
        return true;
    } catch (const ZException& exception) {
        exception.Report();
        Close();
        return false;
    }
}

void ZEditorWindow::Close()
{
    const bool wasOpen = std::exchange(mIsOpen, false);
    callAndReport([&] {
        if (ZApp* const app = ZApp::Of(*mWindow); app && wasOpen)
            app->EndModalRuns();  // closes menus and dialogs of the window
        mWindow->Hide();
        mWindow->Detach();
    });
    // Destroyed here, since most hosts only hide the parent window instead of destroying it.
    callAndReport([&] { mWindow->Destroy(); });
}

std::uintptr_t ZEditorWindow::GetHandle() const
{
    const ZNativeWindow* const native = mWindow->GetNativeWindow();
    return native != nullptr ? native->GetHandle() : 0;
}

void ZEditorWindow::SampleRateChanged(float rate)
{
    Send(makeSampleRateMessage(rate));
}

bool ZEditorWindow::HasFocus() const
{
    return mWindow->GetFocusView() != nullptr;
}

bool ZEditorWindow::TakeKey(const ZNativeKeyEvent& key)
{
    if (!mWindow->WantsKey(key))
        return false;
    ZEventLoop::Callback later;
    ZView* const view = mWindow->GetFocusView();
    if (key.IsForContextMenu())
        later = [key, window = mWindow.get(), life = mWindow->GetLife()] {
            if (!life.expired())
                window->NativeKey(key);
        };
    else if (view && canOpen(key) && view->WantsKey(key))  // whatever has the focus by then
        later = [key, view, life = view->GetLife()] {
            if (!life.expired())
                view->KeyDown(key);
        };
    if (later && !ZInterfaceThread::IsCurrent() && ZInterfaceThread::Post(later))
        return true;
    return mWindow->NativeKey(key);
}

void ZEditorWindow::Send(const boost::shared_ptr<const ZMessage>& message)
{
    mWindow->HandleZMessage(message);
}

const ZBitmap& ZEditorWindow::Draw(double scale)
{
    // Views that are attached for the first time get their elements' values by posted messages.
    mWindow->AttachViews();
    if (ZApp* const app = ZApp::Of(*mWindow))
        app->ProcessQueue();
    return mWindow->RenderOffscreen(ZDeviceScale(scale));
}

}  // namespace orvane
