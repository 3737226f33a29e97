// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZCommand.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZAudioManager.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>

namespace orvane
{

ZCommand::ZCommand(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZElement(xml, application)
    , mEnabled(!xml->AttributeIs("state", "disabled"))
    , mTarget(xml->GetAttributeOr("target", ""))
{
    assert(application);
    if (const auto menu = xml->GetChild("menu"))
        ReadMenu(*menu);
    if (const auto hotkey = xml->GetChild("hotkey"))
        ReadHotkey(*hotkey);
    if (const auto tool = xml->GetChild("tool"))
        mTooltip = tool->GetChild("tooltip");
    if (const auto message = xml->GetChild("message"))
        mMessage = boost::make_shared<const ZMessage>(message, application->GetClassRegistry());
    if (const auto element = xml->GetChild("element"))
        mElementName = element->GetAttributeOr("target", "");
}

ZCommand::~ZCommand()
{
    StopFollowing();
}

void ZCommand::ReadMenu(const ZXMLElement& menu)
{
    mMenuName = menu.GetAttributeOr("name", "");
    if (menu.HasAttribute("id"))
        mMenuId = menu.GetInt32("id");
}

void ZCommand::ReadHotkey(const ZXMLElement& hotkey)
{
    mKey = hotkey.GetInt8("key");
    if (hotkey.GetAttributeBool("shift"))
        mModifiers += kShift;
    if (hotkey.GetAttributeBool("control"))
        mModifiers += kControl;
}

bool ZCommand::IsKindOf(std::string_view className) const
{
    return className == "ZCommandClass" || ZElement::IsKindOf(className);
}

const char* ZCommand::GetClassName() const
{
    return "ZCommandClass";
}

void ZCommand::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    assert(ZInterfaceLock::IsHeld());
    switch (message->GetId()) {
    case ZDOCUMENTCHANGED:
    case ZDOCUMENTNEW: {
        boost::shared_ptr<ZDocument> document;
        if (message->Find("NewDocument", document))
            AttachDocument(document);
        return;
    }
    case ZELEMENTCHANGED: {
        std::uint64_t elementId = 0;
        if (mObserved && message->Find("elementid", elementId) &&
            elementId == elementIdOf(mObserved.get()))
            FollowElement();
        return;
    }
    default:
        return;
    }
}

void ZCommand::Enable()
{
    assert(ZInterfaceLock::IsHeld());
    mEnabled = true;
    NotifyOfEnabling(ZENABLE);
}

void ZCommand::Disable()
{
    assert(ZInterfaceLock::IsHeld());
    mEnabled = false;
    NotifyOfEnabling(ZDISABLE);
}

void ZCommand::NotifyOfEnabling(std::int32_t messageId)
{
    const auto message = boost::make_shared<ZMessage>(messageId);
    message->Add<std::uint64_t>("elementid", elementIdOf(this));
    NotifyObservers(message, nullptr);
}

void ZCommand::SetEnabled(bool enabled)
{
    assert(ZInterfaceLock::IsHeld());
    mEnabled = enabled;
    ElementChanged(nullptr, true);
}

void ZCommand::SetChecked(bool checked)
{
    assert(ZInterfaceLock::IsHeld());
    mChecked = checked;
    ElementChanged(nullptr, true);
}

void ZCommand::SetMenuName(const char* name)
{
    assert(ZInterfaceLock::IsHeld());
    mMenuName = name ? name : "";
    ElementChanged(nullptr, true);
}

void ZCommand::Dispatch()
{
    Send(mMessage);
}

bool ZCommand::CanDispatch()
{
    assert(ZInterfaceLock::IsHeld());
    ZApp* const app = ZApp::Of(*this);
    if (!app || !mEnabled || !mMessage)
        return false;
    const auto document = app->GetCurrentDocument();
    const ZHandler* const receiver = FindReceiver(*app, mMessage->GetId(), document.get());
    return receiver != nullptr &&
           (receiver != document.get() || document->CanHandle(mMessage->GetId()));
}

void ZCommand::DispatchFrom(std::int32_t window)
{
    if (!mMessage)
        return Dispatch();
    // A copy, since a receiver may keep the stored message.
    const auto message = mMessage->Copy();
    message->Add<std::int32_t>("CmdWindow", window);
    Send(message);
}

void ZCommand::Send(const boost::shared_ptr<const ZMessage>& message)
{
    assert(ZInterfaceLock::IsHeld());
    ZApp* const app = ZApp::Of(*this);
    // Keeps the document alive while it handles a message that closes it.
    const auto document = app ? app->GetCurrentDocument() : nullptr;
    ZHandler* const receiver =
        app && message ? FindReceiver(*app, message->GetId(), document.get()) : nullptr;
    if (!receiver) {
        ZTrace::Write("ERROR: ZCommand::Dispatch, No target found for command message\n");
        return;
    }
    receiver->HandleZMessage(message);
}

ZHandler* ZCommand::FindReceiver(ZApp& app, std::int32_t messageId, ZDocument* document) const
{
    if (mTarget == "win")
        return app.GetWindowManager();
    if (mTarget == "doc") {
        // Messages like ZFILENEW go to the document manager instead of the current document, so
        // that a command can create the first document.
        const bool forManager =
            app.HasDocumentManager() && app.GetDocumentManager()->Answers(messageId);
        return forManager ? static_cast<ZHandler*>(app.GetDocumentManager()) : document;
    }
    if (mTarget == "audio")
        return app.GetAudioManager();
    // The target "prefs" has no receiver: there is no preference manager.
    return mTarget == "app" ? &app : nullptr;
}

void ZCommand::AttachDocument(const boost::shared_ptr<ZDocument>& document)
{
    assert(ZInterfaceLock::IsHeld());
    StopFollowing();
    if (mElementName.empty() || !document)
        return;
    mObserved = document->FindElement(mElementName);
    if (!mObserved)
        return;
    mObserved->AddObserver(this);
    FollowElement();
}

void ZCommand::FollowElement()
{
    assert(mObserved);
    if (mObserved->GetDiscrete() != 0)
        Check();
    else
        Uncheck();
}

void ZCommand::StopFollowing()
{
    if (mObserved)
        mObserved->RemoveObserver(this);
    mObserved.reset();
}

}  // namespace orvane
