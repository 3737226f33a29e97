// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZCommandList.h"

#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

bool isSet(const ZMessage& message, const char* field)
{
    bool value = false;
    return message.Find(field, value) && value;
}

std::int32_t modifiersOf(const ZMessage& message)
{
    return ZCommand::kPlain + (isSet(message, "shift") ? ZCommand::kShift : 0) +
           (isSet(message, "control") ? ZCommand::kControl : 0);
}

}  // namespace

ZCommandList::ZCommandList(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZDocument(xml, application)
{
    if (xml->IsNamed("commandlist"))
        AddCommands(*xml);
    else
        ZTrace::Write("\nError: ZCommandList::ZCommandList,  XML tag is not a <commandlist>.\n");
}

ZCommandList::~ZCommandList() = default;

void ZCommandList::AddCommands(const ZXMLElement& xml)
{
    assert(mCommands.Count() == 0);
    std::int32_t nextMenuId = kFirstMenuId;
    const std::int32_t count = xml.GetChildCount("command");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto command = boost::make_shared<ZCommand>(xml.GetChild("command", i), GetApp());
        if (command->GetMenuId() == 0)
            command->SetMenuId(nextMenuId++);
        mCommands.Append(command);
    }
}

bool ZCommandList::IsKindOf(std::string_view className) const
{
    return className == "ZCommandListClass" || ZDocument::IsKindOf(className);
}

const char* ZCommandList::GetClassName() const
{
    return "ZCommandListClass";
}

void ZCommandList::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    assert(ZInterfaceLock::IsHeld());
    switch (message->GetId()) {
    case ZDOCUMENTCHANGED:
    case ZDOCUMENTNEW:
        for (const auto& command : mCommands.Copy())
            command->HandleZMessage(message);
        return;
    case ZKEYCOMMAND:
        return HandleKey(*message);
    case ZLABEL:
        return HandleLabel(*message);
    case kMenuChoice:
        return HandleMenuChoice(*message);
    case kMenuOpens:
        return ZTrace::Write("Init menu\n");
    case ZENABLE:
    case ZDISABLE:
        return HandleEnabling(*message);
    default:
        return;
    }
}

void ZCommandList::HandleKey(const ZMessage& message)
{
    std::int32_t key = 0;
    if (!message.Find("hotkey", key))
        throw ZException("Couldn't find Key in Message");
    boost::shared_ptr<ZCommand> command;
    if (GetCommandByKey(key, modifiersOf(message), command))
        command->Dispatch();
}

bool ZCommandList::HasKeyCommand(const ZMessage& message) const
{
    std::int32_t key = 0;
    boost::shared_ptr<ZCommand> command;
    return message.Find("hotkey", key) && GetCommandByKey(key, modifiersOf(message), command);
}

void ZCommandList::HandleMenuChoice(const ZMessage& message)
{
    std::int32_t menuId = 0;
    if (!message.Find("MenuID", menuId))
        throw ZException("Couldn't find menuID in Message");
    boost::shared_ptr<ZCommand> command;
    if (!GetCommandByMenuId(menuId, command))
        return;
    std::int32_t window = 0;
    if (message.Find("CmdWindow", window))
        command->DispatchFrom(window);
    else
        command->Dispatch();
}

void ZCommandList::HandleLabel(const ZMessage& message)
{
    ZString name;
    ZString label;
    boost::shared_ptr<ZCommand> command;
    if (message.Find("commandName", name) && message.Find("commandLabel", label) &&
        GetCommand(name.ToNarrow(), command))
        command->SetMenuName(label.ToNarrow().c_str());
}

void ZCommandList::HandleEnabling(const ZMessage& message)
{
    const auto apply = message.GetId() == ZENABLE ? &ZCommand::Enable : &ZCommand::Disable;
    ZString name;
    const bool all = !message.Find("commandName", name);
    boost::shared_ptr<ZCommand> named;
    if (all)
        for (const auto& command : mCommands.Copy())
            ((*command).*apply)();
    else if (GetCommand(name.ToNarrow(), named))
        ((*named).*apply)();
}

template <typename Matches>
bool ZCommandList::FindCommand(boost::shared_ptr<ZCommand>& out, Matches matches) const
{
    const auto commands = mCommands.Copy();
    const auto found = std::find_if(commands.begin(), commands.end(), matches);
    out = found != commands.end() ? *found : nullptr;
    return out != nullptr;
}

bool ZCommandList::GetCommand(const char* name, boost::shared_ptr<ZCommand>& out) const
{
    if (name)
        return GetCommand(std::string(name), out);
    out.reset();
    return false;
}

bool ZCommandList::GetCommand(const std::string& name, boost::shared_ptr<ZCommand>& out) const
{
    return FindCommand(out, [&](const auto& command) { return command->GetName() == name; });
}

bool ZCommandList::GetCommandByMenuId(std::int32_t menuId, boost::shared_ptr<ZCommand>& out) const
{
    return FindCommand(out, [=](const auto& command) { return command->GetMenuId() == menuId; });
}

bool ZCommandList::GetCommandByKey(std::int32_t key, std::int32_t modifiers,
                                   boost::shared_ptr<ZCommand>& out) const
{
    return FindCommand(out, [=](const auto& command) {
        return command->GetKey() == key && command->GetModifiers() == modifiers &&
               command->IsEnabled();
    });
}

void ZCommandList::FlushChanges()
{
    assert(ZInterfaceLock::IsHeld());
    for (const auto& command : mCommands.Copy())
        command->FlushMark(nullptr);
}

}  // namespace orvane
