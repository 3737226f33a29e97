// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Counts calls that are forbidden on the audio thread, for the life of the object and on the
/// thread that made it: allocating and freeing, locking and waiting, waking other threads, and
/// system calls through the C library. Guards may be nested.
///
/// A program that links the guard, and every library that it loads, calls the guard's functions
/// instead of the C library's, and those call the C library's in turn. Calls inside the C library
/// are not counted: a write of a buffered stream counts as a call of the stream's function.
struct RealtimeGuard
{
    /// Under the thread sanitizer locks and waits are not counted. The sanitizer ignores the locks
    /// of some libraries by their caller, and would take the guard for the caller of all locks.
#ifdef __SANITIZE_THREAD__
    static constexpr bool kCountsLocks = false;
#else
    static constexpr bool kCountsLocks = true;
#endif

    RealtimeGuard() noexcept;
    ~RealtimeGuard();
    RealtimeGuard(RealtimeGuard&&) = delete;

    /// The number of calls since this guard was made.
    [[nodiscard]] unsigned violations() const noexcept;
    /// The name of the first function called since the thread's outermost guard was made, or
    /// "none".
    [[nodiscard]] const char* firstViolation() const noexcept;

private:
    unsigned mCountBefore;
};

}  // namespace orvane
