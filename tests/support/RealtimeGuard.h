// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Counts what has no place on the audio thread while an object of the class lives, on the thread
/// that made it: allocating and freeing, taking locks and waiting, waking other threads, and system
/// calls through the C library's functions. Guards may be nested.
///
/// Programs that link the guard call its functions in place of the C library's, which it calls in
/// turn; so do libraries that such a program loads. Calls inside the C library are not seen: a
/// write that a buffered stream makes shows up as the stream's function, where that is listed.
class RealtimeGuard
{
public:
    /// Under the thread sanitizer locks and waits are not counted: it knows by the caller which
    /// libraries' locks it leaves alone, and would see the guard's as locks of ours.
#ifdef __SANITIZE_THREAD__
    static constexpr bool kCountsLocks = false;
#else
    static constexpr bool kCountsLocks = true;
#endif

    RealtimeGuard() noexcept;
    ~RealtimeGuard();
    RealtimeGuard(const RealtimeGuard&) = delete;
    RealtimeGuard& operator=(const RealtimeGuard&) = delete;

    /// Calls since this guard was made.
    [[nodiscard]] unsigned violations() const noexcept;
    /// Name of the first function called while the thread's outermost guard lived; "none".
    [[nodiscard]] const char* firstViolation() const noexcept;

private:
    unsigned mCountBefore;
};

}  // namespace orvane
