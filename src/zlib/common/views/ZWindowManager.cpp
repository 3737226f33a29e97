// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowManager.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZDialog.h"
#include "zlib/common/views/ZMessageDocument.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <ranges>
#include <utility>

namespace orvane
{

namespace
{

ZDocument* documentIn(const ZMessage& message, const char* field, const char* missing)
{
    const auto document = documentOf(message, field);
    if (!document)
        throw ZException(missing);
    return *document;
}

template <typename T>
T fieldIn(const ZMessage& message, const char* field)
{
    T value{};
    if (!message.Find<T>(field, value))
        throw ZException(std::string("Couldn't find ") + field + " in message");
    return value;
}

std::string windowNameIn(const ZMessage& message)
{
    return fieldIn<ZString>(message, "WindowName").ToNarrow();
}

void showOrHide(ZWindow& window, bool show)
{
    if (show)
        window.Show();
    else
        window.Hide();
}

std::unique_ptr<ZWindowKeeper> makeWindowManager(const boost::shared_ptr<ZXMLElement>& xml,
                                                 ZApp* app)
{
    return std::make_unique<ZWindowManager>(xml, app);
}

// Applications make their window manager through this, see ZWindowKeeper::Make.
[[maybe_unused]] const auto makerBefore = ZWindowKeeper::SetMaker(&makeWindowManager);

}  // namespace

ZWindowManager::ZWindowManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application,
                               ZWindow* parentWindow)
    : ZWindowKeeper(xml, application)
    , mParentWindow(parentWindow)
{
    if (!xml->IsNamed("windowmanager")) {
        ZTrace::Write("\nError: ZWindowManager::ZWindowManager,  XML tag is not a "
                      "<windowmanager>.\n");
        return;
    }
    for (std::int32_t i = 0; i < xml->GetChildCount("documenttypes"); ++i)
        AddDocumentMapTypes(*xml->GetChild("documenttypes", i));
    for (std::int32_t i = 0; i < xml->GetChildCount("windowtypes"); ++i)
        AddWindowTypes(*xml->GetChild("windowtypes", i));
}

ZWindowManager::~ZWindowManager() = default;

void ZWindowManager::AddDocumentMapTypes(const ZXMLElement& xml)
{
    assert(ZInterfaceLock::IsHeld());
    if (!xml.IsNamed("documenttypes"))
        return ZTrace::Write("\nError: ZWindowManager::AddDocumentMapTypes,  XML tag is not a "
                             "<documenttypes>.\n");
    mDocumentMaps.Add(xml);
}

void ZWindowManager::AddWindowTypes(const ZXMLElement& xml)
{
    assert(ZInterfaceLock::IsHeld());
    if (!xml.IsNamed("windowtypes"))
        return ZTrace::Write("\nError: ZWindowType::AddWindowTypes,  XML tag is not a "
                             "<windowtypes>.\n");
    for (std::int32_t i = 0; i < xml.GetChildCount(); ++i)
        mWindowTypes.Append(std::make_shared<const ZWindowType>(xml.GetChild(i)));
}

bool ZWindowManager::IsKindOf(std::string_view className) const
{
    return className == "ZWindowManagerClass" || ZWindowKeeper::IsKindOf(className);
}

const char* ZWindowManager::GetClassName() const
{
    return "ZWindowManagerClass";
}

void ZWindowManager::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    assert(ZInterfaceLock::IsHeld());
    switch (message->GetId()) {
    case ZDOCUMENTNEW:
        return HandleDocumentNew(message);
    case ZDOCUMENTCHANGED:
        return HandleDocumentChanged(message);
    case ZDOCUMENTCLOSED:
        return HandleDocumentClosed(message);
    case ZWINNEW:
        return HandleWindowNew(message);
    case ZSHOW:
        return HandleShow(message);
    case ZSHOWDIALOG:
        return HandleShowDialog(*message);
    case ZWINFORCEREDRAW:
        return UpdateWindows();
    case ZWINHALFNORMALSIZE:
        return SetWindowScale(*message, 0.5);
    case ZWINNORMALSIZE:
        return SetWindowScale(*message, 1.0);
    case ZWINDOUBLENORMALSIZE:
        return SetWindowScale(*message, 2.0);
    case ZMODALENABLE:
    case ZMODALDISABLE:
    case ZPREFSCHANGED:
        return SendToAll(message);
    case ZENABLE:
    case ZDISABLE:
        return HandleEnabling(message);
    case ZWINMINIMIZE:
    case ZWINRESTORE:
    case ZWINNEXT:
    case ZWINPREV:
    case ZWINTILEH:
    case ZWINTILEV:
    case ZWINCASCADE:
        return;  // there are no windows inside a frame to arrange
    default:
        return SendToWindows(message);
    }
}

void ZWindowManager::HandleDocumentNew(const Message& message)
{
    const ZDocument* const document =
        documentIn(*message, "Document", "Couldn't find Document in message");
    if (!document)
        return ZTrace::Write("\nError: ZWindowManager::HandleZMessage [ZDOCUMENTNEW] 'New document "
                             "actually NULL'\n");
    for (const auto& map : mDocumentMaps.Copy())
        if (map->Matches(*document))
            MakeWindows(*map, message);
    SendToNestedOfCurrent(message);
}

void ZWindowManager::MakeWindows(const ZDocumentMap& map, const Message& message)
{
    for (const auto& type : FindTypes(map.GetWindowName())) {
        const auto window = BuildWindow(*type);
        ZTrace::Write("Creating window class = " + type->GetClass() + " name = " + type->GetName() +
                      "\n");
        // A child window without a parent is created when a host opens it.
        if (!window->IsChild() || mParentWindow)
            window->Create(mParentWindow, 0);
        mWindows.Append(window);
        window->HandleZMessage(message);
        showOrHide(*window, map.IsShown() && window->IsVisibleWhenCreated());
    }
}

ZWindowManager::Types ZWindowManager::FindTypes(const std::string& name) const
{
    Types types = mWindowTypes.Copy();
    std::erase_if(types, [&](const auto& type) { return type->GetName() != name; });
    return types;
}

boost::shared_ptr<ZWindow> ZWindowManager::BuildWindow(const ZWindowType& type)
{
    ZApplication* const application = GetApp();
    if (!application)
        throw ZException("No application to build window '" + type.GetName() + "' for");
    return type.BuildWindow(*application);
}

void ZWindowManager::HandleDocumentChanged(const Message& message)
{
    const ZDocument* const document =
        documentIn(*message, "NewDocument", "Couldn't find NewDocument in msg");
    bool taken = false;
    for (const auto& window : mWindows.Copy()) {
        const ZDocumentMap* const map = document ? window->FindDocumentMap(*document) : nullptr;
        if (!map)
            continue;
        taken = true;
        window->HandleZMessage(message);
        showOrHide(*window, map->IsShown());
    }
    if (!taken)
        SendToNestedOfCurrent(message);
}

void ZWindowManager::HandleDocumentClosed(const Message& message)
{
    const ZDocument* const document =
        documentIn(*message, "CloseDocument", "Couldn't find CloseDocument in message");
    const Windows windows = mWindows.Copy();
    for (const auto& window : windows | std::views::reverse) {
        SendToNested(*window, message);
        if (document && window->GetDocument() == document)
            RemoveWindow(window, message);
    }
}

void ZWindowManager::RemoveWindow(const boost::shared_ptr<ZWindow>& window, const Message& message)
{
    ZTrace::Write("Removing window " + window->GetName() + "\n");
    // The window may be held elsewhere, so it releases the document here.
    window->HandleZMessage(message);
    assert(!window->GetDocument());
    mWindows.Remove(window);
    mCurrent = std::max(std::min(mCurrent, mWindows.Count() - 1), 0);
}

void ZWindowManager::HandleWindowNew(const Message& message)
{
    ZDocument* const document =
        documentIn(*message, "NewDocument", "Couldn't find NewDocument in message");
    const Types types = FindTypes(windowNameIn(*message));
    if (types.empty())
        return SendToNestedOfCurrent(message);
    const auto window = BuildWindow(*types.front());
    std::uint64_t parent = 0;
    if (message->Find("SysParent", parent))
        window->Create(nullptr, parent);
    else
        window->Create(mParentWindow, 0);
    if (!types.front()->IsHidden() && window->IsVisibleWhenCreated())
        window->Show();
    mWindows.Append(window);
    window->HandleZMessage(makeMessage(ZDOCUMENTNEW, "Document", document));
    window->AttachViews();
}

void ZWindowManager::HandleShow(const Message& message)
{
    ZString name;
    ZString title;
    const bool byName = message->Find("WindowName", name);
    if (!byName && !message->Find("WindowTitle", title))
        throw ZException("Couldn't find WindowName or WindowTitle in message");
    for (const auto& window : mWindows.Copy()) {
        SendToNested(*window, message);
        if (byName ? window->GetName() == name.ToNarrow() : window->GetTitle() == title)
            window->Show();
    }
}

void ZWindowManager::HandleEnabling(const Message& message)
{
    const ZDocument* const document =
        documentIn(*message, "Document", "Couldn't find Document in message");
    for (const auto& window : mWindows.Copy())
        if (window->GetDocument() == document)
            window->HandleZMessage(message);
}

void ZWindowManager::SetWindowScale(const ZMessage& message, double scale)
{
    const std::string name = windowNameIn(message);
    for (const auto& window : mWindows.Copy())
        if (window->GetName() == name)
            window->SetScale(scale);
}

void ZWindowManager::UpdateWindows()
{
    for (const auto& window : mWindows.Copy())
        window->Update();
}

boost::shared_ptr<ZWindow> ZWindowManager::GetWindow(std::int32_t index) const
{
    boost::shared_ptr<ZWindow> window;
    static_cast<void>(mWindows.Get(index, window));
    return window;
}

void ZWindowManager::SendToWindows(const Message& message) const
{
    for (const auto& window : mWindows.Copy())
        window->HandleZMessage(message);
}

void ZWindowManager::SendToAll(const Message& message) const
{
    for (const auto& window : mWindows.Copy()) {
        window->HandleZMessage(message);
        SendToNested(*window, message);
    }
}

void ZWindowManager::SendToNested(const ZWindow& window, const Message& message)
{
    for (ZWindowManager* const manager : window.GetWindowManagers())
        manager->HandleZMessage(message);
}

void ZWindowManager::SendToNestedOfCurrent(const Message& message) const
{
    if (const auto window = CurrentWindow())
        SendToNested(*window, message);
}

void ZWindowManager::HandleShowDialog(const ZMessage& message)
{
    const auto name = fieldIn<ZString>(message, "DialogName");
    // Required, but all dialogs are resources of one type.
    static_cast<void>(fieldIn<ZString>(message, "SourceXML"));
    const auto parent = FindWindow(fieldIn<std::int32_t>(message, "CmdWindow"));
    ZApp* const app = ZApp::Of(*this);
    if (!app)
        return;
    ZDialog dialog(*app, name);
    static_cast<void>(dialog.Run(parent.get()));
}

/// Returns the window with that number of the system, else the current one.
boost::shared_ptr<ZWindow> ZWindowManager::FindWindow(std::int32_t nativeHandle) const
{
    const auto number = static_cast<ZNativeHandle>(static_cast<std::uint32_t>(nativeHandle));
    for (const auto& window : mWindows.Copy())
        if (window->GetNativeWindow() && window->GetNativeWindow()->GetHandle() == number)
            return window;
    return CurrentWindow();
}

std::int32_t ZWindowManager::GetTopLevel(std::int32_t window) const
{
    const auto found = FindWindow(window);
    const ZNativeWindow* const native = found ? found->GetNativeWindow() : nullptr;
    return native ? static_cast<std::int32_t>(native->GetTopLevel()) : 0;
}

double ZWindowManager::GetScale(std::int32_t window) const
{
    const auto found = FindWindow(window);
    return found ? found->GetDeviceScale().Get() : 1.0;
}

}  // namespace orvane
