// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLooper.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZClassRegistry;
class ZFile;
class ZResources;
class ZString;

/// What the rows below the application object ask of it: elements, bays and documents are built by
/// class name and look their texts up, but must not know what builds the managers. ZApp is the one
/// application of the product; tests make small ones.
class ZApplication : public ZLooper
{
public:
    using ZLooper::ZLooper;

    /// Makes objects by class name; lives as long as the application. [interface thread]
    [[nodiscard]] virtual ZClassRegistry& GetClassRegistry() = 0;
    /// The text of the string table under an id. False, with out as it was, when there is none.
    /// [interface thread]
    virtual bool GetResourceString(std::int32_t id, ZString& out) = 0;
    /// What the library carries, for pictures by name; it lives as long as the library. None here.
    /// [any thread]
    [[nodiscard]] virtual const ZResources& GetResources() const;
    /// The file that stands in for a resource that the library lacks; null when there is none, as
    /// here. [interface thread]
    [[nodiscard]] virtual boost::shared_ptr<ZFile> GetResourceFile(const ZString& name);
};

}  // namespace orvane
