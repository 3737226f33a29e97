// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZObject.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

class ZApplication;
class ZXMLElement;

/// Makes objects of one class from their descriptions.
class ZCreator
{
public:
    ZCreator() = default;
    ZCreator(const ZCreator&) = delete;
    ZCreator& operator=(const ZCreator&) = delete;

    /// A new object, or null when none can be made; what its constructor throws goes through.
    [[nodiscard]] virtual boost::shared_ptr<ZObject>
    Create(const boost::shared_ptr<ZXMLElement>& xml) = 0;
    virtual ~ZCreator() = default;
};

/// Makes a T from the element and the application, which it does not own. What stands behind T is
/// handed to the constructor too.
template <class T, auto... kArguments>
class ZStandardCreator : public ZCreator
{
public:
    explicit ZStandardCreator(ZApplication* app)
        : mApp(app)
    {
    }

    [[nodiscard]] boost::shared_ptr<ZObject>
    Create(const boost::shared_ptr<ZXMLElement>& xml) override
    {
        return boost::make_shared<T>(xml, mApp, kArguments...);
    }

private:
    ZApplication* mApp;
};

}  // namespace orvane
