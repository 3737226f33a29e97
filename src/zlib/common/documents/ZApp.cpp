// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZApp.h"

#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/documents/ZAudioManager.h"
#include "zlib/common/documents/ZBrowserLaunch.h"
#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/documents/ZFileChooser.h"
#include "zlib/common/documents/ZFileDocumentManager.h"
#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZFontKeeper.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZStringTable.h"
#include "zlib/common/objects/ZSystemServices.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZUserSettings.h"
#include "zlib/common/objects/ZXMLDocument.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLSignature.h"
#include "zlib/common/signals/ZSignalLooper.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <atomic>
#include <cassert>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

namespace orvane
{

namespace
{

constexpr const char* kNotLoaded = "Failed to load resource.";

void requireTag(const ZXMLElement& xml, std::string_view tag, const char* wrongTag)
{
    if (!xml.IsNamed(tag))
        throw ZException(wrongTag);
}

/// Destroys an existing manager and traces the warning: a description should have one of a kind.
template <typename Manager>
void dropExisting(std::unique_ptr<Manager>& manager, const char* warning)
{
    if (!manager)
        return;
    ZTrace::Write(warning);
    manager.reset();
}

std::atomic<std::int32_t> instances{0};

// Written at library load, then only read.
constinit std::optional<std::array<std::int32_t, 3>> libraryVersion;

}  // namespace

ZApp::ZApp(const ZResources& resources)
    : ZApplication("app looper")
    , mResources(resources)
    , mFontKeeper(ZFontKeeper::Make())
{
    SetCurrentApp(this);
    mClassRegistry = std::make_unique<ZClassRegistry>(this);
    mClassRegistry->RegisterStandardClasses();
    SetName("ZApp");
    ++instances;
}

ZApp::~ZApp()
{
    EndModalRuns();
    if (--instances == 0)
        ZInterfaceThread::EndModalRuns(nullptr);
    StopTimers();
    // Audio stops before its networks go, and windows release documents before those end.
    mAudioManager.reset();
    mClassRegistry.reset();
    mWindowManager.reset();
    mDocumentManager.reset();
    mCommandList.reset();
    ClearCurrentApp(this);
    const ZInterfaceUnlock unlocked;
    mBrowser.reset();
}

void ZApp::SetVersion(const std::array<std::int32_t, 3>& version)
{
    assert(std::ranges::all_of(version, [](std::int32_t number) { return number >= 0; }));
    libraryVersion = version;
}

void ZApp::GetVersion(ZString& out) const
{
    std::string version;
    if (libraryVersion)
        for (const std::int32_t number : *libraryVersion) {
            if (!version.empty())
                version += '.';
            version += std::to_string(number);
        }
    out = version;
}

std::int32_t ZApp::CountInstances()
{
    return instances;
}

void ZApp::EndModalRuns()
{
    ZInterfaceThread::EndModalRuns(this);
}

bool ZApp::IsKindOf(std::string_view className) const
{
    return className == "ZAppClass" || ZApplication::IsKindOf(className);
}

const char* ZApp::GetClassName() const
{
    return "ZAppClass";
}

ZApp* ZApp::Of(ZHandler& handler)
{
    return dynamic_cast<ZApp*>(handler.GetApp());
}

void ZApp::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZABOUT:
        return ShowAbout();
    case ZDOCUMENTNEW:
        if (mDocumentManager)
            mDocumentManager->HandleZMessage(std::move(message));
        return;
    case ZMENUSELECTION:
        return CheckMenuSelection(*message);
    case ZQUIT:
        return HandleQuit(message);
    case ZWINDOWCLOSED:
        if (mStandalone)
            HandleQuit(boost::make_shared<ZMessage>(ZQUIT));
        return;
    case ZSHOWDIALOG:
    case ZSHOWSYSDIALOG:
        if (mWindowManager)
            mWindowManager->HandleZMessage(std::move(message));
        return;
    case ZGOTOURL:
        return GoToUrl(*message);
    default:
        ZApplication::HandleZMessage(std::move(message));
    }
}

void ZApp::CheckMenuSelection(const ZMessage& message) const
{
    // There is no menu bar to pass the fields to, but a message without them is refused.
    std::uint64_t handle = 0;
    if (!message.Find("Handle", handle))
        throw ZException("Couldn't find Menu Handle in Message");
    std::int32_t position = 0;
    if (!message.Find("Position", position))
        throw ZException("Couldn't find position in Message");
}

void ZApp::HandleQuit(const boost::shared_ptr<const ZMessage>& message)
{
    if (!CanQuit())
        return;
    mQuitCode = 0;
    static_cast<void>(message->Find("QuitInt", mQuitCode));
    ZApplication::HandleZMessage(message);
}

void ZApp::GoToUrl(const ZMessage& message)
{
    ZString url;
    if (!message.Find("URL", url))
        throw ZException("Couldn't find URL in message");
    const std::string address = url.ToNarrow();
    if (!ZBrowserLaunch::IsWebAddress(address)) {
        ZTrace::Write("Not an address of the web: " + address + "\n");
        return;
    }
    auto launch = std::make_unique<ZBrowserLaunch>(address);
    mBrowser.swap(launch);
    const ZInterfaceUnlock unlocked;  // the previous launch is joined here
    launch.reset();
}

void ZApp::Started()
{
    SetLooper(this);
    OnStartup();
    ReadDescription();
    mBuilt.Release();
}

void ZApp::OnStartup()
{
}

void ZApp::ShowAbout()
{
}

boost::shared_ptr<ZFile> ZApp::ChooseSaveFile(const ZString& prompt, const ZString& title,
                                              const ZFiletypeList& types, std::int32_t window)
{
    return ChooseFile({ZFileRequest::kSave, prompt, title, types.Copy(), window, this});
}

boost::shared_ptr<ZFile> ZApp::ChooseOpenFile(const ZString& prompt, const ZString& title,
                                              const ZFiletypeList& types, std::int32_t window)
{
    return ChooseFile({ZFileRequest::kOpen, prompt, title, types.Copy(), window, this});
}

boost::shared_ptr<ZFile> ZApp::ChooseFile(ZFileRequest request)
{
    if (mWindowManager) {
        request.scale = mWindowManager->GetScale(request.window);
        request.window = mWindowManager->GetTopLevel(request.window);
    }
    return ZFileChooser::ChooseFile(request);
}

void ZApp::WaitUntilBuilt()
{
    const ZInterfaceUnlock unlocked;
    mBuilt.Wait();
    mBuilt.Release();
}

void ZApp::ReadDescription()
{
    assert(!mResourceName.IsEmpty());
    mMainThreadId = std::this_thread::get_id();
    ZTrace::Write(GetName() + " starting up...\n");
    try {
        BuildFromDescription();
    } catch (const ZException& exception) {
        if (!mStandalone)
            throw;
        ShowMessageBox(ZMessageBox::kError, true, "Error", exception.GetMessage());
    }
}

void ZApp::BuildFromDescription()
{
    const auto app = LoadDescription();
    mTitle = app->HasAttribute("title") ? app->GetAttribute("title") : "Untitled App";
    if (app->HasAttribute("identifier"))
        mIdentifier = app->GetAttribute("identifier");
    for (std::int32_t i = 0; i < app->GetChildCount(); ++i)
        AddManager(app->GetChild(i));
    if (const auto startup = app->GetChild("startup"))
        RunStartup(*startup);
    OpenAtStart();
}

boost::shared_ptr<ZXMLElement> ZApp::LoadDescription() const
{
    const auto text = mResources.FindText("XML", mResourceName.ToNarrow());
    if (!text)
        throw ZException(kNotLoaded);
    const auto length = static_cast<std::int32_t>(text->size());
    if (!HasValidDeclaration(text->data(), length))
        throw ZException(kNotLoaded);
    if (!VerifySignature(text->data(), length))
        throw ZException(ZException::kBadSignature, kNotLoaded);
    const ZXMLDocument document(text->data(), length);
    auto app = document.GetChild("app");
    if (!app)
        throw ZException(kNotLoaded);
    return app;
}

void ZApp::AddManager(const boost::shared_ptr<ZXMLElement>& xml)
{
    // A child with another name is skipped.
    if (xml->IsNamed("documentmanager"))
        AddDocumentManager(xml);
    else if (xml->IsNamed("windowmanager"))
        AddWindowManager(xml);
    else if (xml->IsNamed("audiomanager"))
        AddAudioManager(xml);
    else if (xml->IsNamed("commandlist"))
        AddCommandList(xml);
}

void ZApp::AddAudioManager(const boost::shared_ptr<ZXMLElement>& /*xml*/)
{
}

void ZApp::AddWindowManager(const boost::shared_ptr<ZXMLElement>& xml)
{
    requireTag(*xml, "windowmanager", "ZApp::AddWindowManager,  XML tag is not a <windowmanager>.");
    dropExisting(mWindowManager,
                 "\nWarning: ZApp::AddWindowManager,  mWindowManager already created. Multiple "
                 "top level window managers?\n");
    mWindowManager = ZWindowKeeper::Make(xml, this);
}

void ZApp::AddDocumentManager(const boost::shared_ptr<ZXMLElement>& xml)
{
    requireTag(*xml, "documentmanager",
               "ZApp::AddDocumentManager,  XML tag is not a <documentmanager>.");
    dropExisting(mDocumentManager,
                 "\nWarning: ZApp::AddDocumentManager,  mDocumentManager already created. "
                 "Multiple top level document managers?\n");
    mDocumentManager = makeDocumentManager(xml, this);
}

void ZApp::AddCommandList(const boost::shared_ptr<ZXMLElement>& xml)
{
    requireTag(*xml, "commandlist", "ZApp::AddCommandList,  XML tag is not a <commandlist>.");
    dropExisting(mCommandList,
                 "\nWarning: ZApp::AddWindowManager,  mCommandList already created. Multiple top "
                 "level command lists?\n");
    mCommandList = std::make_unique<ZCommandList>(xml, this);
}

void ZApp::ReplaceAudioManager(std::unique_ptr<ZAudioManager> manager)
{
    mAudioManager = std::move(manager);
}

void ZApp::RunStartup(const ZXMLElement& startup)
{
    assert(std::this_thread::get_id() == mMainThreadId);
    const std::int32_t count = startup.GetChildCount("startupitem");
    for (std::int32_t i = 0; i < count && mCommandList; ++i) {
        const auto item = startup.GetChild("startupitem", i);
        const char* const name = item->GetAttribute("command");
        boost::shared_ptr<ZCommand> command;
        if (!mCommandList->GetCommand(name, command))
            throw ZException(std::string("Couldn't find command '") + (name ? name : "") +
                             "' of a startupitem in the command list");
        command->Dispatch();
    }
}

void ZApp::OpenAtStart()
{
    auto* const documents = dynamic_cast<ZFileDocumentManager*>(mDocumentManager.get());
    if (!documents || mOpenAtStart.IsEmpty())
        return;
    const auto file = ZFileChooser::MakeFile(mOpenAtStart.ToNarrow());
    const auto type = documents->FindType(*file);
    if (!type)
        return;
    ProcessQueue();
    documents->OpenDocument(file, *type);
}

void ZApp::BeginModal(ZWindow& dialog)
{
    assert(std::ranges::count(mModalWindows, &dialog) == 0);
    mModalWindows.push_back(&dialog);
}

void ZApp::EndModal(ZWindow& dialog)
{
    [[maybe_unused]] const auto count = std::erase(mModalWindows, &dialog);
    assert(count == 1);
}

ZWindow* ZApp::GetModalWindow() const
{
    return mModalWindows.empty() ? nullptr : mModalWindows.back();
}

bool ZApp::CanQuit()
{
    const auto looper = mAudioManager ? mAudioManager->GetSignalLooper() : nullptr;
    // In a plug-in the host runs the passes, and the looper is never running.
    const bool wasRunning = looper && looper->IsRunning();
    if (wasRunning)
        looper->Stop();
    DropMessages();
    while (mDocumentManager && mDocumentManager->GetDocumentCount() > 0) {
        if (mDocumentManager->CloseDocument(mDocumentManager->GetDocument(0)))
            continue;
        if (wasRunning)
            looper->Start();
        return false;
    }
    return true;
}

void ZApp::LoadFont(const std::string& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return;
    mFonts.push_back(path);
    if (mFontKeeper)
        mFontKeeper->AddFile(path);
}

bool ZApp::GetResourceString(std::int32_t id, ZString& out)
{
    return findResourceString(mResources, id, out);
}

bool ZApp::SetRegistryInt(const ZString& name, std::int32_t value)
{
    return ZUserSettings(mIdentifier).SetInt(name, value);
}

bool ZApp::GetRegistryInt(const ZString& name, std::int32_t& out) const
{
    return ZUserSettings(mIdentifier).GetInt(name, out);
}

boost::shared_ptr<ZWindow> ZApp::GetMainWindow() const
{
    if (!mWindowManager)
        throw ZException("Unable to return MainWindow because it doesn't exist.");
    return mWindowManager->GetCurrentWindow();
}

ZDocumentManager* ZApp::GetDocumentManager() const
{
    if (!mDocumentManager)
        throw ZException("Unable to return ZDocumentManager because it doesn't exist.");
    return mDocumentManager.get();
}

ZCommandList* ZApp::GetCommandList() const
{
    if (!mCommandList)
        throw ZException("Unable to return ZCommandManager because it doesn't exist.");
    return mCommandList.get();
}

void ZApp::GetPreferenceManager() const
{
    throw ZException("Unable to return ZPreferenceManager because it doesn't exist.");
}

void ZApp::GetMidiManager() const
{
    throw ZException("Unable to return ZMidiManager because it doesn't exist.");
}

boost::shared_ptr<ZDocument> ZApp::GetCurrentDocument() const
{
    return mDocumentManager ? mDocumentManager->GetCurrentDocument() : nullptr;
}

void ZApp::FlushElementChanges()
{
    const auto document = boost::dynamic_pointer_cast<ZAudioDocument>(GetCurrentDocument());
    if (document)
        document->FlushChanges();
    if (mCommandList)
        mCommandList->FlushChanges();
}

}  // namespace orvane
