// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// One step of editing that can be taken back and made again. [interface thread]
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
