// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLockedList.h"

#include <cstdint>
#include <memory>

namespace orvane
{

class ZTransaction;

/// The undo history of a document. Undone transactions can be redone until a new one is added.
/// [interface thread]
class ZTransactionManager
{
public:
    ZTransactionManager();
    ZTransactionManager(const ZTransactionManager&) = delete;
    ZTransactionManager& operator=(const ZTransactionManager&) = delete;
    ~ZTransactionManager();

    /// Appends a transaction that has been done, and drops those that are undone.
    void Add(std::unique_ptr<ZTransaction> transaction);
    /// Undoes the last transaction that is not undone; false when there is none.
    bool Undo();
    /// Redoes the transaction that was undone last; false when there is none.
    bool Redo();

private:
    ZLockedList<std::shared_ptr<ZTransaction>> mTransactions{"TransactionList"};
    std::int32_t mDone = 0;  // the transactions before this index are done, the others undone
};

}  // namespace orvane
