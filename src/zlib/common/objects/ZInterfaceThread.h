// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZEventLoop.h"

#include <memory>

namespace orvane
{

/// One user's hold on the interface thread, the one thread that serves all instances of the
/// process. The first hold starts it, the last one to go ends and joins it, and a later one starts
/// it anew. A hold that is never let go does not keep the process from ending: the thread is
/// stopped at exit.
class ZInterfaceThread
{
public:
    /// Throws ZException -1 when the thread cannot be made. [any thread but the audio thread]
    ZInterfaceThread();
    ZInterfaceThread(const ZInterfaceThread&) = delete;
    ZInterfaceThread& operator=(const ZInterfaceThread&) = delete;
    /// Gives up the interface lock while it joins. Let go on the interface thread itself, the last
    /// hold ends the thread without joining it.
    ~ZInterfaceThread();

    /// The thread's loop, for as long as the hold lasts.
    [[nodiscard]] ZEventLoop& GetLoop() const;

    /// Posts to the thread's loop if there is one running: false, with the callback dropped, if
    /// not. What the thread has not come to when it ends is dropped too. [any thread but the audio
    /// thread]
    static bool Post(ZEventLoop::Callback callback);
    /// As the loop's EndModalRuns, if there is one running. [any thread but the audio thread]
    static void EndModalRuns(const void* owner);
    /// True on the interface thread.
    [[nodiscard]] static bool IsCurrent();

    /// Stops the thread at its own end, as the process exits or the library is unloaded: for a
    /// static object, made after the first use of what cleans up after itself at exit, so that it
    /// goes before that does. An object rather than a function given to atexit: the system knows to
    /// which library the object belongs.
    class AtExit
    {
    public:
        AtExit() = default;
        AtExit(const AtExit&) = delete;
        AtExit& operator=(const AtExit&) = delete;
        ~AtExit();
    };

private:
    struct Engine;
    struct Shared;

    std::shared_ptr<Engine> mEngine;
};

}  // namespace orvane
