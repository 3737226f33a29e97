// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZSetParameterFn.h"

namespace orvane
{

class ZVSTPlugin;

/// Sends parameter changes and gestures made in the plug-in to the host. The interface lock is
/// released while the host is called. [interface thread]
class ZVSTSetParameterFn : public ZSetParameterFn
{
public:
    /// plugin is not owned and outlives this object.
    explicit ZVSTSetParameterFn(ZVSTPlugin& plugin)
        : mPlugin(plugin)
    {
    }

    /// Throws ZException for an element that is neither float nor discrete.
    void SetParameter(const boost::shared_ptr<ZElement>& element, std::int32_t index) override;
    void BeginEdit(std::int32_t index) override;
    void EndEdit(std::int32_t index) override;
    void StateChanged() override;

private:
    ZVSTPlugin& mPlugin;
};

}  // namespace orvane
