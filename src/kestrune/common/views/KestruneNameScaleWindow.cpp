// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneNameScaleWindow.h"

#include "zlib/common/controls/ZLabelButton.h"
#include "zlib/common/controls/ZTextEdit.h"
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/views/ZDialog.h"

namespace orvane
{

namespace
{

void setAction(const ZDialog& dialog, const char* button, const std::function<void()>& action)
{
    if (const auto view = dialog.Find<ZLabelButton>(button))
        view->SetAction(action);
}

}  // namespace

bool KestruneNameScaleWindow::Run(ZApplication* application, const ZString& resourceName,
                                  ZString& name)
{
    auto* const app = dynamic_cast<ZApp*>(application);
    if (!app)
        return false;
    ZDialog dialog(*app, resourceName);
    const auto edit = dialog.Find<ZTextEdit>("Name");
    if (!edit)
        return false;
    const auto accept = [&dialog] { dialog.End(true); };
    const auto cancel = [&dialog] { dialog.End(false); };
    edit->SetText(name);
    edit->SetReturnAction(accept);
    setAction(dialog, "OK", accept);
    setAction(dialog, "Cancel", cancel);
    dialog.SetKeyView(*edit);

    ZWindowKeeper* const keeper = app->GetWindowManager();
    const auto parent = keeper ? keeper->GetCurrentWindow() : nullptr;
    if (!dialog.Run(parent.get()))
        return false;
    name = edit->GetText();
    return true;
}

}  // namespace orvane
