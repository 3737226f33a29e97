// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <new>

namespace orvane
{

/// Holds an object of static duration that is never destroyed, for what a thread may still use
/// while the process ends. It lies in the library's own memory, so that nothing stays behind when a
/// host unloads the library; T must therefore own nothing by then.
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

    [[nodiscard]] T& operator*() const { return *mObject; }

private:
    alignas(T) std::byte mStorage[sizeof(T)];
    T* const mObject;
};

}  // namespace orvane
