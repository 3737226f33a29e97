// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLock.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane
{

/// A list with a lock of its own, named after it. The lock is held for each operation and never
/// while anything is called: whoever walks the list walks a copy. [any thread but the audio thread]
template <class T>
class ZLockedList
{
public:
    explicit ZLockedList(std::string_view name)
        : mLock(name)
    {
    }

    void Append(T item)
    {
        const std::lock_guard guard(mLock);
        mItems.push_back(std::move(item));
        CountItems();
    }

    /// Takes the first item that equals this one off the list; false when there is none.
    bool Remove(const T& item)
    {
        const std::lock_guard guard(mLock);
        const auto found = std::find(mItems.begin(), mItems.end(), item);
        if (found == mItems.end())
            return false;
        mItems.erase(found);
        CountItems();
        return true;
    }

    /// Copies an item by its place, counted from 0. False, with out as it was, when there is none.
    [[nodiscard]] bool Get(std::int32_t index, T& out) const
    {
        const std::lock_guard guard(mLock);
        if (index < 0 || index >= std::ssize(mItems))
            return false;
        out = mItems[static_cast<std::size_t>(index)];
        return true;
    }

    [[nodiscard]] std::vector<T> Copy() const
    {
        const std::lock_guard guard(mLock);
        return mItems;
    }

    /// [any thread, audio thread included]
    [[nodiscard]] std::int32_t Count() const noexcept
    {
        return mCount.load(std::memory_order_relaxed);
    }

private:
    void CountItems()
    {
        mCount.store(static_cast<std::int32_t>(mItems.size()), std::memory_order_relaxed);
    }

    mutable ZLock mLock;
    std::vector<T> mItems;                // guarded by mLock
    std::atomic<std::int32_t> mCount{0};  // written under mLock
};

}  // namespace orvane
