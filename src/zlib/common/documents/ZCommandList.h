// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/objects/ZLockedList.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane
{

class ZCommand;

/// The commands of the application, in the order of the description. [interface thread]
class ZCommandList : public ZDocument
{
public:
    /// Messages without a name in the message registry: a menu choice, and a menu about to open.
    static constexpr std::int32_t kMenuChoice = 49;
    static constexpr std::int32_t kMenuOpens = 50;
    /// Commands without a menu id in the description are numbered from here.
    static constexpr std::int32_t kFirstMenuId = 50000;

    /// Reads a `commandlist`; any other tag is traced and gives an empty list. Throws what the
    /// constructor of ZCommand throws. [setup]
    ZCommandList(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZCommandList() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTCHANGED, ZDOCUMENTNEW: passes the message to every command. ZKEYCOMMAND ("hotkey",
    /// "shift", "control") and kMenuChoice ("MenuID", "CmdWindow"): dispatches the command with
    /// that key or menu id; throws ZException kGeneral without "hotkey" or "MenuID". ZLABEL
    /// ("commandName", "commandLabel"): sets the menu name. ZENABLE, ZDISABLE ("commandName"):
    /// enables or disables the named command, or all without a name. Others are ignored.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Find the first command by its name, its menu id, or, among enabled ones, its key and
    /// modifiers. False, with out empty, when there is none.
    virtual bool GetCommand(const char* name, boost::shared_ptr<ZCommand>& out) const;
    virtual bool GetCommand(const std::string& name, boost::shared_ptr<ZCommand>& out) const;
    virtual bool GetCommandByMenuId(std::int32_t menuId, boost::shared_ptr<ZCommand>& out) const;
    virtual bool GetCommandByKey(std::int32_t key, std::int32_t modifiers,
                                 boost::shared_ptr<ZCommand>& out) const;

    /// True when HandleZMessage would dispatch a command for this ZKEYCOMMAND.
    [[nodiscard]] bool HasKeyCommand(const ZMessage& message) const;
    /// Notifies the observers of all commands that are marked as changed. Each tick calls it.
    void FlushChanges();

private:
    template <typename Matches>
    bool FindCommand(boost::shared_ptr<ZCommand>& out, Matches matches) const;
    void AddCommands(const ZXMLElement& xml);
    void HandleKey(const ZMessage& message);
    void HandleMenuChoice(const ZMessage& message);
    void HandleLabel(const ZMessage& message);
    void HandleEnabling(const ZMessage& message);

    ZLockedList<boost::shared_ptr<ZCommand>> mCommands{"command list"};
};

}  // namespace orvane
