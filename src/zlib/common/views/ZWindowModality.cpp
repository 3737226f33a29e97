// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowModality.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZWindow.h"

#include <cassert>
#include <utility>

namespace orvane
{

ZWindowModality::ZWindowModality(ZWindow& window)
    : mWindow(window)
{
}

void ZWindowModality::Block()
{
    assert(ZInterfaceLock::IsHeld());
    ZApp* const app = mDialog && !mBlocking ? ZApp::Of(mWindow) : nullptr;
    if (!app)
        return;
    mBlocking = true;
    app->BeginModal(mWindow);
}

void ZWindowModality::Unblock()
{
    if (!std::exchange(mBlocking, false))
        return;
    assert(ZInterfaceLock::IsHeld());
    if (ZApp* const app = ZApp::Of(mWindow))
        app->EndModal(mWindow);
}

ZWindow* ZWindowModality::FindBlocker() const
{
    const ZApp* const app = mDialog ? nullptr : ZApp::Of(mWindow);
    return app ? app->GetModalWindow() : nullptr;
}

bool ZWindowModality::Drops(const ZMessage& message) const
{
    // Every window has to release a document that closes.
    const std::int32_t id = message.GetId();
    return id != ZDRAW && id != ZDOCUMENTCLOSED && FindBlocker();
}

bool ZWindowModality::PassFocus() const
{
    const ZWindow* const dialog = FindBlocker();
    if (dialog && dialog->GetNativeWindow())
        dialog->GetNativeWindow()->SetFocus();
    return dialog != nullptr;
}

void ZWindowModality::EndRuns() const
{
    assert(ZInterfaceLock::IsHeld());
    if (ZApp* const app = ZApp::Of(mWindow))
        app->EndModalRuns();
}

}  // namespace orvane
