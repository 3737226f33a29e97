// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZObject.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

class ZApplication;
class ZXMLElement;

/// Creates objects of one class from their descriptions. [interface thread]
class ZCreator
{
public:
    ZCreator() = default;
    ZCreator(const ZCreator&) = delete;
    ZCreator& operator=(const ZCreator&) = delete;

    /// Creates an object, or returns null when it cannot. What its constructor throws goes through.
    [[nodiscard]] virtual boost::shared_ptr<ZObject>
    Create(const boost::shared_ptr<ZXMLElement>& xml) = 0;
    virtual ~ZCreator() = default;
};

/// Constructs a T from the element and the application, which it does not own and which may be
/// null.
template <class T>
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
        return boost::make_shared<T>(xml, mApp);
    }

private:
    ZApplication* mApp;
};

}  // namespace orvane
