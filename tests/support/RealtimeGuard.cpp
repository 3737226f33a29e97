// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RealtimeGuard.h"

#include "support/Standard.h"

#include <boost/preprocessor/seq/for_each.hpp>
#include <dlfcn.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KESTRUNE_SANITIZED_HEAP 1
#else
#define KESTRUNE_SANITIZED_HEAP 0
#endif

// The sanitizers' runtimes call some of the functions below before instrumented code can run.
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

// The type of any function of the C library with up to seven integers and pointers, as the calling
// conventions of 64-bit Linux pass them.
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

// Defines a function whose linker name is name. Its C++ name differs, because the headers declare
// the function with other types.
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
#define KESTRUNE_COUNT_EACH(r, data, name) KESTRUNE_COUNT(name)
#define KESTRUNE_COUNT_ALL(names) BOOST_PP_SEQ_FOR_EACH(KESTRUNE_COUNT_EACH, , names)

// clang-format off
#ifndef __SANITIZE_THREAD__
// Locks, waits and wake-ups. Trying a lock does not wait, so it is allowed.
KESTRUNE_COUNT_ALL(
    (pthread_mutex_lock)(pthread_mutex_timedlock)(pthread_mutex_clocklock)(pthread_rwlock_rdlock)
    (pthread_rwlock_wrlock)(pthread_rwlock_timedrdlock)(pthread_rwlock_timedwrlock)
    (pthread_spin_lock)(pthread_barrier_wait)(pthread_cond_wait)(pthread_cond_timedwait)
    (pthread_cond_clockwait)(pthread_cond_signal)(pthread_cond_broadcast)(sem_wait)
    (sem_timedwait)(sem_clockwait)(sem_post)(pthread_create)(pthread_join))
#endif

// System calls.
KESTRUNE_COUNT_ALL(
    (syscall)(read)(write)(readv)(writev)(pread)(pwrite)(open)(open64)(openat)(close)(fcntl)
    (ioctl)(poll)(ppoll)(select)(epoll_wait)(send)(sendmsg)(recv)(recvmsg)(mmap)(mmap64)(munmap)
    (mprotect)(madvise)(nanosleep)(clock_nanosleep)(usleep)(sleep)(sched_yield))

// Functions of streams and of the loader, which lock, allocate or call the system.
KESTRUNE_COUNT_ALL(
    (fopen)(fopen64)(fclose)(fread)(fwrite)(fflush)(fputs)(puts)(dlopen)(dlclose))
// clang-format on

#if KESTRUNE_SANITIZED_HEAP

// Not every sanitizer calls its hooks for these.
KESTRUNE_COUNT(aligned_alloc)
KESTRUNE_COUNT(memalign)
KESTRUNE_COUNT(posix_memalign)

// The heap belongs to the sanitizer, which calls these hooks. Its header is not part of the
// compiler's package.
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

constexpr int kOutOfMemory = 12;  // ENOMEM

// The C library's own names for its heap functions. The C++ operators call malloc and free too.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

#define KESTRUNE_REPLACE(result, name, parameters, call)                                           \
    __attribute__((visibility("default"))) result counted_##name parameters asm(#name);            \
    result counted_##name parameters                                                               \
    {                                                                                              \
        orvane::note(#name);                                                                       \
        return call;                                                                               \
    }

KESTRUNE_REPLACE(void*, malloc, (std::size_t size), __libc_malloc(size))
KESTRUNE_REPLACE(void*, calloc, (std::size_t number, std::size_t size), __libc_calloc(number, size))
KESTRUNE_REPLACE(void*, realloc, (void* memory, std::size_t size), __libc_realloc(memory, size))
KESTRUNE_REPLACE(void*, aligned_alloc, (std::size_t alignment, std::size_t size),
                 __libc_memalign(alignment, size))
KESTRUNE_REPLACE(void*, memalign, (std::size_t alignment, std::size_t size),
                 __libc_memalign(alignment, size))
KESTRUNE_REPLACE(int, posix_memalign, (void** memory, std::size_t alignment, std::size_t size),
                 (*memory = __libc_memalign(alignment, size)) != nullptr ? 0 : kOutOfMemory)

__attribute__((visibility("default"))) void counted_free(void* memory) asm("free");
void counted_free(void* memory)
{
    if (memory)
        orvane::note("free");
    __libc_free(memory);
}

#endif
