// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// One edit that can be undone and redone. [interface thread]
class ZTransaction
{
public:
    ZTransaction() = default;
    ZTransaction(const ZTransaction&) = delete;
    ZTransaction& operator=(const ZTransaction&) = delete;
    virtual ~ZTransaction() = default;

    virtual void Undo() = 0;
    virtual void Redo() = 0;
};

}  // namespace orvane
