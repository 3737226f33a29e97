// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZMessage;

/// Gets the messages of certain ids that a window receives, before the window acts on them.
class ZWindowFilter
{
public:
    virtual ~ZWindowFilter() = default;

    /// [interface thread]
    virtual void FilterMessage(const ZMessage& message) = 0;
};

}  // namespace orvane
