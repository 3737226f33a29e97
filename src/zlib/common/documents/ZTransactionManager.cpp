// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZTransactionManager.h"

#include "zlib/common/documents/ZTransaction.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <cassert>
#include <utility>

namespace orvane
{

ZTransactionManager::ZTransactionManager() = default;
ZTransactionManager::~ZTransactionManager() = default;

void ZTransactionManager::Add(std::unique_ptr<ZTransaction> transaction)
{
    assert(ZInterfaceLock::IsHeld());
    assert(transaction);
    for (std::shared_ptr<ZTransaction> undone; mTransactions.Get(mDone, undone);)
        mTransactions.Remove(undone);
    mTransactions.Append(std::move(transaction));
    ++mDone;
}

bool ZTransactionManager::Undo()
{
    assert(ZInterfaceLock::IsHeld());
    std::shared_ptr<ZTransaction> transaction;
    if (!mTransactions.Get(mDone - 1, transaction))
        return false;
    --mDone;
    transaction->Undo();
    return true;
}

bool ZTransactionManager::Redo()
{
    assert(ZInterfaceLock::IsHeld());
    std::shared_ptr<ZTransaction> transaction;
    if (!mTransactions.Get(mDone, transaction))
        return false;
    ++mDone;
    transaction->Redo();
    return true;
}

}  // namespace orvane
