// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

/// Base of the signal objects. Each has a name, which is that of its class at first.
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

    /// Sets the name to a copy of the text. [setup]
    virtual void SetName(const char* name) { mName = name; }
    [[nodiscard]] virtual const char* GetName() const { return mName.c_str(); }

private:
    std::string mName;
};

}  // namespace orvane
