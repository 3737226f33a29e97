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

/// The application as elements, bays and documents see it: they make objects by class name and look
/// up texts, without the managers, which belong to higher rows. ZApp is the application of the
/// product; tests have small ones.
class ZApplication : public ZLooper
{
public:
    using ZLooper::ZLooper;

    /// Makes objects by class name. Lives as long as the application. [interface thread]
    [[nodiscard]] virtual ZClassRegistry& GetClassRegistry() = 0;
    /// Gives the text that the string table has for an id. Returns false, with out unchanged, when
    /// there is none. [interface thread]
    virtual bool GetResourceString(std::int32_t id, ZString& out) = 0;
    /// The resources that the library contains; they live as long as the library.
    /// ZApplication has none. [any thread]
    [[nodiscard]] virtual const ZResources& GetResources() const;
    /// The file that replaces a resource which the library does not contain; null when there is
    /// none. ZApplication has none. [interface thread]
    [[nodiscard]] virtual boost::shared_ptr<ZFile> GetResourceFile(const ZString& name);
};

}  // namespace orvane
