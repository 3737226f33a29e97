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

/// The names by which descriptions ask for classes, and what makes their objects. The application
/// owns one. Registration ends before the description is read. No lock: used under the
/// application's start-up or the interface lock.
class ZClassRegistry
{
public:
    /// Enters classes into a registry.
    using Registration = void (*)(ZClassRegistry& registry);

    /// Empty. The application may be null; it is not owned.
    explicit ZClassRegistry(ZApplication* app);
    ZClassRegistry(const ZClassRegistry&) = delete;
    ZClassRegistry& operator=(const ZClassRegistry&) = delete;

    /// Enters a class. When the name is there already the first entry stays.
    void Add(std::string_view name, std::unique_ptr<ZCreator> creator);
    /// The same for a class whose constructor takes the element, the application and kArguments.
    template <class T, auto... kArguments>
    void AddStandard(std::string_view name);

    /// Enters the framework's own classes, by what SetStandardClasses has named last.
    void RegisterStandardClasses();
    /// Names what enters the framework's classes: they stand in rows above this one. Null for none.
    /// [library load]
    static void SetStandardClasses(Registration registration);

    [[nodiscard]] bool Contains(std::string_view className) const;
    /// Makes an object of the named class. Throws ZException -1 when there is no such name.
    [[nodiscard]] boost::shared_ptr<ZObject>
    Create(std::string_view className, const boost::shared_ptr<ZXMLElement>& xml) const;

private:
    ZApplication* mApp;
    std::map<std::string, std::unique_ptr<ZCreator>, std::less<>> mCreators;
};

template <class T, auto... kArguments>
void ZClassRegistry::AddStandard(std::string_view name)
{
    Add(name, std::make_unique<ZStandardCreator<T, kArguments...>>(mApp));
}

}  // namespace orvane
