// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZElement;

/// Notifies the host of changes to parameters. The index is the parameter's number.
/// [interface thread]
class ZSetParameterFn
{
public:
    ZSetParameterFn() = default;
    ZSetParameterFn(const ZSetParameterFn&) = delete;
    ZSetParameterFn& operator=(const ZSetParameterFn&) = delete;
    virtual ~ZSetParameterFn() = default;

    /// Sends the element's value, which the host does not know yet.
    virtual void SetParameter(const boost::shared_ptr<ZElement>& element, std::int32_t index) = 0;
    /// The user begins, or ends, an edit of the parameter.
    virtual void BeginEdit(std::int32_t index) = 0;
    virtual void EndEdit(std::int32_t index) = 0;
    /// Tells the host that the project has changed in something that is saved and is no parameter.
    virtual void StateChanged() = 0;
};

}  // namespace orvane
