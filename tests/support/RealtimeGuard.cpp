// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RealtimeGuard.h"

#include <dlfcn.h>

#include <cstddef>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KESTRUNE_SANITIZED_HEAP 1
#else
#define KESTRUNE_SANITIZED_HEAP 0
#endif

// The sanitizers' runtimes call some of the functions below before they are ready for instrumented
// code.
#define KESTRUNE_UNINSTRUMENTED __attribute__((no_sanitize("address", "thread", "undefined")))

namespace orvane
{

namespace
{

thread_local unsigned guards = 0;  // alive on this thread
thread_local unsigned count = 0;
thread_local const char* first = nullptr;

KESTRUNE_UNINSTRUMENTED void note(const char* function) noexcept
{
    if (guards == 0)
        return;
    ++count;
    if (!first)
        first = function;
}

// Arguments and result of any function of the C library that takes up to seven integers and
// pointers, as the calling conventions of 64-bit Linux pass them.
using Word = long;
using Function = Word (*)(Word, Word, Word, Word, Word, Word, Word);

KESTRUNE_UNINSTRUMENTED Function nextDefinition(const char* name) noexcept
{
    void* const address = dlsym(RTLD_NEXT, name);
    if (!address)
        std::abort();
    return reinterpret_cast<Function>(address);
}

}  // namespace

RealtimeGuard::RealtimeGuard() noexcept
    : mCountBefore(count)
{
    if (guards++ == 0)
        first = nullptr;
}

RealtimeGuard::~RealtimeGuard()
{
    --guards;
}

unsigned RealtimeGuard::violations() const noexcept
{
    return count - mCountBefore;
}

const char* RealtimeGuard::firstViolation() const noexcept
{
    return first ? first : "none";
}

}  // namespace orvane

// Defines the function under its name for the linker, so that no declaration of a header, with
// its own idea of the types, stands in the way.
#define KESTRUNE_COUNT(name)                                                                       \
    __attribute__((visibility("default"))) long counted_##name(long, long, long, long, long, long, \
                                                               long) noexcept(false) asm(#name);   \
    KESTRUNE_UNINSTRUMENTED long counted_##name(long a, long b, long c, long d, long e, long f,    \
                                                long g) noexcept(false)                            \
    {                                                                                              \
        static orvane::Function next = nullptr;                                                    \
        if (!next)                                                                                 \
            next = orvane::nextDefinition(#name);                                                  \
        orvane::note(#name);                                                                       \
        return next(a, b, c, d, e, f, g);                                                          \
    }

#ifndef __SANITIZE_THREAD__
// Locks, waits and wake-ups. A try does not wait, so it may pass.
KESTRUNE_COUNT(pthread_mutex_lock)
KESTRUNE_COUNT(pthread_mutex_timedlock)
KESTRUNE_COUNT(pthread_mutex_clocklock)
KESTRUNE_COUNT(pthread_rwlock_rdlock)
KESTRUNE_COUNT(pthread_rwlock_wrlock)
KESTRUNE_COUNT(pthread_rwlock_timedrdlock)
KESTRUNE_COUNT(pthread_rwlock_timedwrlock)
KESTRUNE_COUNT(pthread_spin_lock)
KESTRUNE_COUNT(pthread_barrier_wait)
KESTRUNE_COUNT(pthread_cond_wait)
KESTRUNE_COUNT(pthread_cond_timedwait)
KESTRUNE_COUNT(pthread_cond_clockwait)
KESTRUNE_COUNT(pthread_cond_signal)
KESTRUNE_COUNT(pthread_cond_broadcast)
KESTRUNE_COUNT(sem_wait)
KESTRUNE_COUNT(sem_timedwait)
KESTRUNE_COUNT(sem_clockwait)
KESTRUNE_COUNT(sem_post)
KESTRUNE_COUNT(pthread_create)
KESTRUNE_COUNT(pthread_join)
#endif

// System calls.
KESTRUNE_COUNT(syscall)
KESTRUNE_COUNT(read)
KESTRUNE_COUNT(write)
KESTRUNE_COUNT(readv)
KESTRUNE_COUNT(writev)
KESTRUNE_COUNT(pread)
KESTRUNE_COUNT(pwrite)
KESTRUNE_COUNT(open)
KESTRUNE_COUNT(open64)
KESTRUNE_COUNT(openat)
KESTRUNE_COUNT(close)
KESTRUNE_COUNT(fcntl)
KESTRUNE_COUNT(ioctl)
KESTRUNE_COUNT(poll)
KESTRUNE_COUNT(ppoll)
KESTRUNE_COUNT(select)
KESTRUNE_COUNT(epoll_wait)
KESTRUNE_COUNT(send)
KESTRUNE_COUNT(sendmsg)
KESTRUNE_COUNT(recv)
KESTRUNE_COUNT(recvmsg)
KESTRUNE_COUNT(mmap)
KESTRUNE_COUNT(mmap64)
KESTRUNE_COUNT(munmap)
KESTRUNE_COUNT(mprotect)
KESTRUNE_COUNT(madvise)
KESTRUNE_COUNT(nanosleep)
KESTRUNE_COUNT(clock_nanosleep)
KESTRUNE_COUNT(usleep)
KESTRUNE_COUNT(sleep)
KESTRUNE_COUNT(sched_yield)

// Streams and loading, which lock, allocate or call the system inside the C library.
KESTRUNE_COUNT(fopen)
KESTRUNE_COUNT(fopen64)
KESTRUNE_COUNT(fclose)
KESTRUNE_COUNT(fread)
KESTRUNE_COUNT(fwrite)
KESTRUNE_COUNT(fflush)
KESTRUNE_COUNT(fputs)
KESTRUNE_COUNT(puts)
KESTRUNE_COUNT(dlopen)
KESTRUNE_COUNT(dlclose)

#if KESTRUNE_SANITIZED_HEAP

// Not every sanitizer tells of these.
KESTRUNE_COUNT(aligned_alloc)
KESTRUNE_COUNT(memalign)
KESTRUNE_COUNT(posix_memalign)

// The heap is the sanitizer's, which tells. The compiler comes without its header.
extern "C" int __sanitizer_install_malloc_and_free_hooks(
    void (*allocated)(const volatile void* memory, std::size_t size),
    void (*released)(const volatile void* memory));

namespace
{

void noteAllocation(const volatile void*, std::size_t)
{
    orvane::note("malloc");
}
void noteRelease(const volatile void*)
{
    orvane::note("free");
}

const int hooksInstalled = __sanitizer_install_malloc_and_free_hooks(noteAllocation, noteRelease);

}  // namespace

#else

// The heap by the names under which the C library offers itself to those who replace it. The C++
// operators come through here too.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

}  // extern "C"

#define KESTRUNE_REPLACE(result, name, ...)                                                        \
    __attribute__((visibility("default"))) result counted_##name(__VA_ARGS__) asm(#name);          \
    result counted_##name(__VA_ARGS__)

KESTRUNE_REPLACE(void*, malloc, std::size_t size)
{
    orvane::note("malloc");
    return __libc_malloc(size);
}

KESTRUNE_REPLACE(void*, calloc, std::size_t number, std::size_t size)
{
    orvane::note("calloc");
    return __libc_calloc(number, size);
}

KESTRUNE_REPLACE(void*, realloc, void* memory, std::size_t size)
{
    orvane::note("realloc");
    return __libc_realloc(memory, size);
}

KESTRUNE_REPLACE(void*, aligned_alloc, std::size_t alignment, std::size_t size)
{
    orvane::note("aligned_alloc");
    return __libc_memalign(alignment, size);
}

KESTRUNE_REPLACE(void*, memalign, std::size_t alignment, std::size_t size)
{
    orvane::note("memalign");
    return __libc_memalign(alignment, size);
}

KESTRUNE_REPLACE(int, posix_memalign, void** memory, std::size_t alignment, std::size_t size)
{
    orvane::note("posix_memalign");
    constexpr int kOutOfMemory = 12;  // ENOMEM
    void* const block = __libc_memalign(alignment, size);
    if (block)
        *memory = block;
    return block ? 0 : kOutOfMemory;
}

KESTRUNE_REPLACE(void, free, void* memory)
{
    if (memory)
        orvane::note("free");
    __libc_free(memory);
}

#endif
