// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZDialog.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLSignature.h"
#include "zlib/common/views/ZContentWindow.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindowType.h"

#include <cassert>

namespace orvane
{

namespace
{

// A close request, keys, and the end of a click, which may have taken the focus from the key view.
constexpr std::int32_t kFiltered[] = {ZCLOSE, ZKEYDOWN, ZMOUSEUP};

boost::shared_ptr<ZXMLElement> loadWindowType(const ZResources& resources, const ZString& name)
{
    const auto text = resources.FindText("XML", name.ToNarrow());
    if (!text)
        throw ZException("WindowManager failed to load XML dialog resource.");
    const auto length = static_cast<std::int32_t>(text->size());
    if (!HasValidDeclaration(text->data(), length))
        throw ZException("A resource file does not begin with a valid XML document declaration.");
    if (!VerifySignature(text->data(), length))
        throw ZException(ZException::kBadSignature,
                         "XML setup file does not contain a valid signature.");
    const ZXMLDocument document(text->data(), length);
    auto type = document.GetChild("windowtype");
    if (!type)
        throw ZException("WindowManager failed to load XML dialog resource.");
    return type;
}

}  // namespace

ZDialog::ZDialog(ZApp& app, const ZString& resourceName)
    : mApp(app)
    , mWindow(ZWindowType(loadWindowType(app.GetResources(), resourceName)).BuildWindow(app))
{
    mWindow->MakeDialog();
    for (const std::int32_t id : kFiltered)
        mWindow->AddFilter(id, this);
}

ZDialog::~ZDialog()
{
    for (const std::int32_t id : kFiltered)
        mWindow->RemoveFilter(id, this);
    mWindow->Destroy();
}

boost::shared_ptr<ZView> ZDialog::FindView(std::string_view name) const
{
    return mWindow->GetRootView()->FindSubview(name);
}

void ZDialog::SetKeyView(ZView& view)
{
    mKeyView = &view;
    mWindow->SetFocusView(mKeyView);
}

void ZDialog::FilterMessage(const ZMessage& message)
{
    std::uint8_t key = 0;
    if (message.GetId() == ZMOUSEUP)
        return KeepKeyView();
    if (message.GetId() == ZCLOSE || (message.Find("Key", key) && key == kKeyEscape))
        End(false);
}

void ZDialog::KeepKeyView()
{
    if (!mWindow->GetFocusView())
        mWindow->SetFocusView(mKeyView);
}

bool ZDialog::Run(ZWindow* parent)
{
    if (!ZInterfaceThread::IsCurrent() || !mWindow->Create(parent, 0))
        return false;
    Centre(parent);
    assert(!mRun);
    const ZInterfaceThread thread;
    ZModalRun run(thread.GetLoop(), &mApp);
    mRun = &run;
    mResult = false;
    mWindow->Show();
    run.Run();
    mRun = nullptr;
    mWindow->Destroy();
    return mResult;
}

void ZDialog::End(bool result)
{
    if (!mRun)
        return;
    mResult = result;
    mRun->End();
}

void ZDialog::Centre(ZWindow* parent)
{
    const ZNativeWindow& native = *mWindow->GetNativeWindow();
    const ZRect monitor =
        native.GetMonitor(parent ? parent->ToScreen({parent->GetWidth() / 2, 0}) : ZPoint{});
    const ZPoint middle =
        parent ? parent->ToScreen({parent->GetWidth() / 2, parent->GetHeight() / 2})
               : ZPoint{(monitor.left + monitor.right) / 2, (monitor.top + monitor.bottom) / 2};
    const auto [width, height] = mWindow->GetPixelSize();
    const ZRect place = keptOn(
        monitor, ZRect{0, 0, width, height}.Offset(middle.x - width / 2, middle.y - height / 2));
    mWindow->HandleZMessage(makeMessage(ZMOVED, "MovePoint", ZPoint{place.left, place.top}));
}

}  // namespace orvane
