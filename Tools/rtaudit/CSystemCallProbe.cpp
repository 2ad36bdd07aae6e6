#include "Tools/rtaudit/CSystemCallProbe.h"

#include <csignal>
#include <cstdint>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// Their handlers stand between the signal and ours.
bool tsm::CSystemCallProbe::isAvailable() noexcept
{
    return false;
}
void tsm::CSystemCallProbe::begin(CAuditCounts&) noexcept {}
void tsm::CSystemCallProbe::end() noexcept {}
bool tsm::CSystemCallProbe::setPaused(bool) noexcept
{
    return false;
}

#else

// The calls between the two labels go to the kernel in spite of the dispatch: the ones that the
// handler makes in the thread's place, and the handler's own return.
asm(R"(
    .text
    .globl tsmProbeBegin
    .globl tsmProbeCall
    .globl tsmProbeReturn
    .globl tsmProbeEnd
tsmProbeBegin:
tsmProbeCall:
    mov %rdi, %rax
    mov %rsi, %r11
    mov 0(%r11), %rdi
    mov 8(%r11), %rsi
    mov 16(%r11), %rdx
    mov 24(%r11), %r10
    mov 32(%r11), %r8
    mov 40(%r11), %r9
    syscall
    ret
tsmProbeReturn:
    mov $15, %eax
    syscall
    ud2
tsmProbeEnd:
)");

extern "C" {
extern const char tsmProbeBegin;
extern const char tsmProbeEnd;
void tsmProbeReturn();
long tsmProbeCall(long number, const std::int64_t* arguments);
}

namespace tsm {
namespace {

// Values of the kernel's interface, which older C library headers don't name.
constexpr int kSetDispatch = 59; // PR_SET_SYSCALL_USER_DISPATCH
constexpr unsigned long kDispatchOn = 1;
constexpr char kAllow = 0;
constexpr char kBlock = 1;
constexpr unsigned long kOwnReturn = 0x04000000; // SA_RESTORER

/// The kernel's form of struct sigaction; the C library's would put its own return in.
struct CKernelAction {
    void (*handler)(int, siginfo_t*, void*);
    unsigned long flags;
    void (*restorer)();
    std::uint64_t mask;
};

constinit thread_local volatile char selector = kAllow;
constinit thread_local bool isDispatched = false;
constinit thread_local CAuditCounts* active = nullptr;

void onSystemCall(int, siginfo_t* info, void* context)
{
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    if (CAuditCounts* counts = active) {
        const auto place = static_cast<std::size_t>(counts->systemCalls++);
        if (place < counts->firstCalls.size())
            counts->firstCalls[place] = info->si_syscall;
    }
    const std::int64_t arguments[] = {registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                                      registers[REG_R10], registers[REG_R8],  registers[REG_R9]};
    registers[REG_RAX] = tsmProbeCall(info->si_syscall, arguments);
}

bool dispatchThisThread() noexcept
{
    const CKernelAction action{&onSystemCall, SA_SIGINFO | kOwnReturn, &tsmProbeReturn, 0};
    return syscall(SYS_rt_sigaction, SIGSYS, &action, nullptr, sizeof action.mask) == 0 &&
           prctl(kSetDispatch, kDispatchOn, &tsmProbeBegin, &tsmProbeEnd - &tsmProbeBegin,
                 &selector) == 0;
}

} // namespace

bool CSystemCallProbe::isAvailable() noexcept
{
    isDispatched = isDispatched || dispatchThisThread();
    return isDispatched;
}

void CSystemCallProbe::begin(CAuditCounts& counts) noexcept
{
    active = &counts;
    if (isAvailable())
        selector = kBlock;
}

void CSystemCallProbe::end() noexcept
{
    selector = kAllow;
    active = nullptr;
}

bool CSystemCallProbe::setPaused(bool isPaused) noexcept
{
    const bool wasPaused = selector == kAllow;
    selector = isPaused ? kAllow : kBlock;
    return wasPaused;
}

} // namespace tsm

#endif
