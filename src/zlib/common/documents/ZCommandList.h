// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZDocument.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

class ZCommand;

/// All commands of the application, in the order of the description. [interface thread]
class ZCommandList : public ZDocument
{
public:
    /// Messages that no description can name: a choice in a menu, and a menu that is about to open.
    static constexpr std::int32_t kMenuChoice = 49;
    static constexpr std::int32_t kMenuOpens = 50;
    /// The first number for a command without a menu id of its own.
    static constexpr std::int32_t kFirstMenuId = 50000;

    /// From a `commandlist`; another tag leaves the list empty. Throws ZException -1 when a command
    /// cannot be made. [setup]
    ZCommandList(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZCommandList() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTCHANGED, ZDOCUMENTNEW: to every command. ZKEYCOMMAND ("hotkey", "shift",
    /// "control"), kMenuChoice ("MenuID", "CmdWindow"): dispatches the command. ZLABEL
    /// ("commandName", "commandLabel"): names it. ZENABLE, ZDISABLE ("commandName"): that command,
    /// or all. Throws ZException -1 when a number is missing. All else ends here.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Each finds the first one: by name, by menu id, or by key and modifiers among those that are
    /// enabled. False, with out empty, when there is none.
    virtual bool GetCommand(const char* name, boost::shared_ptr<ZCommand>& out) const;
    virtual bool GetCommand(const std::string& name, boost::shared_ptr<ZCommand>& out) const;
    virtual bool GetCommandByMenuId(std::int32_t menuId, boost::shared_ptr<ZCommand>& out) const;
    virtual bool GetCommandByKey(std::int32_t key, std::int32_t modifiers,
                                 boost::shared_ptr<ZCommand>& out) const;

    /// Whether ZKEYCOMMAND with these fields would dispatch a command.
    [[nodiscard]] bool HasKeyCommand(const ZMessage& message) const;
    [[nodiscard]] const std::vector<boost::shared_ptr<ZCommand>>& GetCommands() const
    {
        return mCommands;
    }
    /// Tells the observers of all commands that are marked as changed.
    void FlushChanges();

private:
    template <typename Matches>
    bool FindCommand(boost::shared_ptr<ZCommand>& out, Matches matches) const;
    void AddCommands(const ZXMLElement& xml);
    void HandleKey(const ZMessage& message);
    void HandleMenuChoice(const ZMessage& message);
    void HandleLabel(const ZMessage& message);
    void HandleEnabling(const ZMessage& message);

    std::vector<boost::shared_ptr<ZCommand>> mCommands;
};

}  // namespace orvane
