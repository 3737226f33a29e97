// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <new>

namespace orvane
{

/// Holds a static object whose destructor never runs, so that threads can use it until the process
/// ends. Its memory is part of the library and goes when a host unloads the library. Memory that T
/// still owns by then is lost.
template <typename T>
class ZNeverDestroyed
{
public:
    ZNeverDestroyed()
        : mObject(new (mStorage) T)
    {
    }
    ZNeverDestroyed(const ZNeverDestroyed&) = delete;
    ZNeverDestroyed& operator=(const ZNeverDestroyed&) = delete;

    /// The object. [any thread that T allows]
    [[nodiscard]] T& operator*() const { return *mObject; }

private:
    alignas(T) std::byte mStorage[sizeof(T)];
    T* const mObject;
};

}  // namespace orvane
