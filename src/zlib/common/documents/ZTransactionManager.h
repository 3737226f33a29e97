// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace orvane
{

class ZTransaction;

/// The steps of editing that a document has seen, in order. What has been taken back stays until a
/// new step comes in its place. [interface thread]
class ZTransactionManager
{
public:
    ZTransactionManager();
    ZTransactionManager(const ZTransactionManager&) = delete;
    ZTransactionManager& operator=(const ZTransactionManager&) = delete;
    ~ZTransactionManager();

    /// Appends a step that has been made, and forgets those that have been taken back.
    void Add(std::unique_ptr<ZTransaction> transaction);
    /// Takes the last step back. False when there is none.
    bool Undo();
    /// Makes the step again that was taken back last. False when there is none.
    bool Redo();

private:
    std::vector<std::unique_ptr<ZTransaction>> mTransactions;
    std::size_t mDone = 0;  // those before it have been made, the rest taken back
};

}  // namespace orvane
