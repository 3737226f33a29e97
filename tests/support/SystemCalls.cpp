#include "support/SystemCalls.h"

#if defined(__x86_64__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/ucontext.h>
#include <sys/wait.h>
#include <unistd.h>

// The one place from which the kernel lets calls through: number and six arguments, as in C. The
// second label is what the kernel sees as the caller's next instruction.
asm(R"(
    .text
    .type kestruneSystemCall, @function
kestruneSystemCall:
    mov %rdi, %rax
    mov %rsi, %rdi
    mov %rdx, %rsi
    mov %rcx, %rdx
    mov %r8, %r10
    mov %r9, %r8
    mov 8(%rsp), %r9
    syscall
kestruneSystemCallDone:
    ret
    .size kestruneSystemCall, . - kestruneSystemCall
)");

extern "C" {
long kestruneSystemCall(long number, long a, long b, long c, long d, long e, long f);
extern const char kestruneSystemCallDone;
}

namespace orvane
{

namespace
{

// In memory that parent and child share.
struct Report
{
    volatile unsigned calls = 0;
    volatile bool filtered = false;
    volatile bool finished = false;
};

Report* report = nullptr;

constexpr unsigned kPatienceSeconds = 60;

/// Counts the call that the filter stopped and makes it after all.
void onFilteredCall(int, siginfo_t*, void* context)
{
    report->calls = report->calls + 1;
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    registers[REG_RAX] = kestruneSystemCall(
        registers[REG_RAX], registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
        registers[REG_R10], registers[REG_R8], registers[REG_R9]);
}

/// From here on each system call of this process raises SIGSYS, but for the way back from that
/// signal and for kestruneSystemCall. False where the kernel does not allow it.
bool installFilter()
{
    struct sigaction action = {};
    action.sa_sigaction = onFilteredCall;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    if (sigaction(SIGSYS, &action, nullptr) != 0 || prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return false;

    const auto pass = reinterpret_cast<std::uintptr_t>(&kestruneSystemCallDone);
    const auto low = static_cast<std::uint32_t>(pass);
    const auto high = static_cast<std::uint32_t>(pass >> 32);
    constexpr std::uint32_t kNumber = offsetof(seccomp_data, nr);
    constexpr std::uint32_t kCaller = offsetof(seccomp_data, instruction_pointer);
    std::array<sock_filter, 8> program{{
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, kNumber},
        {BPF_JMP | BPF_JEQ | BPF_K, 4, 0, SYS_rt_sigreturn},
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, kCaller},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 3, low},
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, kCaller + 4},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, high},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_TRAP},
    }};
    sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter, 0, 0) == 0;
}

[[noreturn]] void runFiltered(const std::function<void()>& function)
{
    alarm(kPatienceSeconds);
    if (installFilter()) {
        report->filtered = true;
        function();
        report->finished = true;
    }
    for (;;)
        kestruneSystemCall(SYS_exit_group, 0, 0, 0, 0, 0, 0);
}

}  // namespace

std::optional<unsigned> systemCallsOf(const std::function<void()>& function)
{
    void* const shared =
        mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED)
        return std::nullopt;
    report = new (shared) Report;
    const pid_t child = fork();
    if (child == 0)
        runFiltered(function);
    if (child > 0)
        waitpid(child, nullptr, 0);
    const unsigned calls = report->calls;
    const bool filtered = report->filtered;
    const bool finished = report->finished;
    munmap(shared, sizeof(Report));
    if (!filtered)
        return std::nullopt;
    // A function that did not come back was ended by a call that cannot be made for it.
    return finished ? calls : std::max(calls, 1u);
}

}  // namespace orvane

#else

namespace orvane
{

std::optional<unsigned> systemCallsOf(const std::function<void()>&)
{
    return std::nullopt;
}

}  // namespace orvane

#endif
