// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZEventLoop.h"

#include <memory>

namespace orvane
{

/// A reference to the interface thread, the one thread that serves all instances of the process.
/// The first reference starts the thread, and the destructor of the last one ends and joins it; a
/// later reference starts it again. A reference that is never destroyed does not keep the process
/// from ending: the thread is stopped at exit.
class ZInterfaceThread
{
public:
    /// Throws ZException when the thread cannot be made. [any thread but the audio thread]
    ZInterfaceThread();
    ZInterfaceThread(const ZInterfaceThread&) = delete;
    ZInterfaceThread& operator=(const ZInterfaceThread&) = delete;
    /// Releases the interface lock while it joins the thread. On the interface thread itself the
    /// last reference ends the thread without joining it. [any thread but the audio thread]
    ~ZInterfaceThread();

    /// The thread's loop, which lives as long as the reference. [any thread]
    [[nodiscard]] ZEventLoop& GetLoop() const;

    /// Posts to the thread's loop. Returns false and drops the callback when no thread runs. When
    /// the thread ends it drops callbacks that it has not reached. [any thread but the audio
    /// thread]
    static bool Post(ZEventLoop::Callback callback);
    /// Calls EndModalRuns of the thread's loop; does nothing when no thread runs. [any thread but
    /// the audio thread]
    static void EndModalRuns(const void* owner);
    /// True on the interface thread. [any thread]
    [[nodiscard]] static bool IsCurrent();

    /// Stops the thread in its destructor, when the process exits or the library is unloaded. Meant
    /// for a static object. Static objects are destroyed in reverse order, so it is constructed
    /// after the static objects that the thread uses. An object instead of a function passed to
    /// atexit, because the system knows which library an object belongs to.
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
