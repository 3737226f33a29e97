// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZString.h"

namespace orvane
{

/// An application that only has a registry and a string table. Messages are delivered when a test
/// calls ProcessQueue.
struct SmallApplication : ZApplication
{
    SmallApplication()
        : ZApplication("SmallApplication")
    {
    }

    [[nodiscard]] ZApplication* GetApp() override { return this; }
    [[nodiscard]] ZClassRegistry& GetClassRegistry() override { return mRegistry; }
    bool GetResourceString(std::int32_t id, ZString& out) override
    {
        const auto found = strings.find(id);
        if (found == strings.end())
            return false;
        out = ZString(found->second);
        return true;
    }

    [[nodiscard]] const ZResources& GetResources() const override { return resources; }

    std::map<std::int32_t, std::string> strings;
    ZResources resources{std::span<const ZResources::Entry>()};

private:
    ZClassRegistry mRegistry{this};
};

}  // namespace orvane
