// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

/// Base of the signal objects: gives each a name, its class's at construction.
class ZDSPObject
{
public:
    explicit ZDSPObject(const char* name)
        : mName(name)
    {
    }
    ZDSPObject(const ZDSPObject&) = delete;
    ZDSPObject& operator=(const ZDSPObject&) = delete;
    virtual ~ZDSPObject() = default;

    /// Replaces the name by a copy of the text. [setup]
    virtual void SetName(const char* name) { mName = name; }
    [[nodiscard]] virtual const char* GetName() const { return mName.c_str(); }

private:
    std::string mName;
};

}  // namespace orvane
