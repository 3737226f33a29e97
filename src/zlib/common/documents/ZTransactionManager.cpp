// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZTransactionManager.h"

#include "zlib/common/documents/ZTransaction.h"

#include <utility>

namespace orvane
{

ZTransactionManager::ZTransactionManager() = default;
ZTransactionManager::~ZTransactionManager() = default;

void ZTransactionManager::Add(std::unique_ptr<ZTransaction> transaction)
{
    mTransactions.resize(mDone);
    mTransactions.push_back(std::move(transaction));
    ++mDone;
}

bool ZTransactionManager::Undo()
{
    if (mDone == 0)
        return false;
    mTransactions[--mDone]->Undo();
    return true;
}

bool ZTransactionManager::Redo()
{
    if (mDone == mTransactions.size())
        return false;
    mTransactions[mDone++]->Redo();
    return true;
}

}  // namespace orvane
