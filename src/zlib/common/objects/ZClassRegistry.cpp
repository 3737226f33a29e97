// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZClassRegistry.h"

#include "zlib/common/objects/ZException.h"

#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

// Initialised before any constructor runs: rows add to it in no particular order.
constinit const ZStandardClasses* newestStandardClasses = nullptr;

}  // namespace

ZClassRegistry::ZClassRegistry(ZApplication* app)
    : mApp(app)
{
}

void ZClassRegistry::Add(std::string_view name, std::unique_ptr<ZCreator> creator)
{
    assert(creator);
    mCreators.try_emplace(std::string(name), std::move(creator));
}

void ZClassRegistry::RegisterStandardClasses()
{
    for (const auto* classes = newestStandardClasses; classes; classes = classes->mNext)
        classes->mRegister(*this);
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

ZStandardClasses::ZStandardClasses(Registration registration) noexcept
    : mRegister(registration)
    , mNext(std::exchange(newestStandardClasses, this))
{
    assert(registration);
}

}  // namespace orvane
