// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZClassRegistry.h"

#include "zlib/common/objects/ZException.h"

#include <utility>

namespace orvane
{

namespace
{

ZClassRegistry::Registration standardClasses = nullptr;

}  // namespace

ZClassRegistry::ZClassRegistry(ZApplication* app)
    : mApp(app)
{
}

void ZClassRegistry::Add(std::string_view name, std::unique_ptr<ZCreator> creator)
{
    mCreators.try_emplace(std::string(name), std::move(creator));
}

void ZClassRegistry::RegisterStandardClasses()
{
    if (standardClasses)
        standardClasses(*this);
}

void ZClassRegistry::SetStandardClasses(Registration registration)
{
    standardClasses = registration;
}

bool ZClassRegistry::Contains(std::string_view className) const
{
    return mCreators.contains(className);
}

boost::shared_ptr<ZObject> ZClassRegistry::Create(std::string_view className,
                                                  const boost::shared_ptr<ZXMLElement>& xml) const
{
    const auto found = mCreators.find(className);
    if (found == mCreators.end())
        throw ZException("Unregistered Class " + std::string(className) + " found in xml\n");
    return found->second->Create(xml);
}

}  // namespace orvane
