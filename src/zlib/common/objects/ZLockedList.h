// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLock.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane
{

/// A list with a lock of its own that has the list's name. Each operation holds the lock and calls
/// nothing meanwhile: to walk the list, walk a copy. Items that an operation takes off the list are
/// destroyed after the lock is released. [any thread but the audio thread]
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
        std::optional<T> removed;  // outlives the guard
        const std::lock_guard guard(mLock);
        const auto found = std::find(mItems.begin(), mItems.end(), item);
        if (found == mItems.end())
            return false;
        removed.emplace(std::move(*found));
        mItems.erase(found);
        CountItems();
        return true;
    }

    /// Puts other items in the place of all.
    void Replace(std::vector<T> items)
    {
        const std::lock_guard guard(mLock);
        mItems.swap(items);
        CountItems();
    }

    /// The index of the first item that equals this one, -1 when there is none.
    [[nodiscard]] std::int32_t IndexOf(const T& item) const
    {
        const std::lock_guard guard(mLock);
        const auto found = std::find(mItems.begin(), mItems.end(), item);
        return found == mItems.end() ? -1 : static_cast<std::int32_t>(found - mItems.begin());
    }

    /// Copies the item at an index. False, with out as it was, when the list is shorter.
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
