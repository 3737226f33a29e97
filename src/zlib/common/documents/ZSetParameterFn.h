// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZElement;

/// Takes changes of exposed elements out to the host. The index is the parameter's number.
/// [interface thread]
class ZSetParameterFn
{
public:
    ZSetParameterFn() = default;
    ZSetParameterFn(const ZSetParameterFn&) = delete;
    ZSetParameterFn& operator=(const ZSetParameterFn&) = delete;
    virtual ~ZSetParameterFn() = default;

    /// The element has a new value that the host does not know.
    virtual void SetParameter(const boost::shared_ptr<ZElement>& element, std::int32_t index) = 0;
    /// The user takes hold of the parameter's control, or lets it go.
    virtual void BeginEdit(std::int32_t index) = 0;
    virtual void EndEdit(std::int32_t index) = 0;
};

}  // namespace orvane
