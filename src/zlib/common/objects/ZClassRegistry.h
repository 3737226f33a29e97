// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZCreator.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace orvane
{

/// Creates objects by the class names that descriptions give. The application owns one; classes are
/// registered before it reads its description. The caller holds the interface lock.
class ZClassRegistry
{
public:
    /// Starts empty. Creators pass the application, which may be null and is not owned, to the
    /// objects they create.
    explicit ZClassRegistry(ZApplication* app);
    ZClassRegistry(const ZClassRegistry&) = delete;
    ZClassRegistry& operator=(const ZClassRegistry&) = delete;

    /// Registers a creator, which must not be null. A name that is already registered keeps its
    /// first creator. [setup]
    void Add(std::string_view name, std::unique_ptr<ZCreator> creator);
    /// Registers a class whose constructor takes the element and the application. [setup]
    template <class T>
    void AddStandard(std::string_view name);
    /// Registers the classes of every ZStandardClasses object in the library. [setup]
    void RegisterStandardClasses();

    /// True for a registered name. [interface thread]
    [[nodiscard]] bool Contains(std::string_view className) const;
    /// Creates an object of the named class. Throws ZException kGeneral for an unregistered name;
    /// what the constructor throws goes through. [interface thread]
    [[nodiscard]] boost::shared_ptr<ZObject>
    Create(std::string_view className, const boost::shared_ptr<ZXMLElement>& xml) const;

private:
    ZApplication* mApp;
    std::map<std::string, std::unique_ptr<ZCreator>, std::less<>> mCreators;
};

/// Adds classes to the standard ones, which every application's registry gets. A row declares one
/// as a constant at namespace scope, so that its classes are known once the library is loaded and
/// no lower row has to name them. [library load]
class ZStandardClasses
{
public:
    /// Registers the classes of one row.
    using Registration = void (*)(ZClassRegistry& registry);

    explicit ZStandardClasses(Registration registration) noexcept;
    ZStandardClasses(const ZStandardClasses&) = delete;
    ZStandardClasses& operator=(const ZStandardClasses&) = delete;

private:
    friend class ZClassRegistry;

    const Registration mRegister;
    const ZStandardClasses* const mNext;  // the one that was constructed before, or null
};

template <class T>
void ZClassRegistry::AddStandard(std::string_view name)
{
    Add(name, std::make_unique<ZStandardCreator<T>>(mApp));
}

}  // namespace orvane
