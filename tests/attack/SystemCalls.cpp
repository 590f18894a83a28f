// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "SystemCalls.h"

#include <csignal>
#include <cstddef>
#include <cstdint>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#ifndef __x86_64__
#    error "The registers of a system call are known for x86-64 only"
#endif

// The one place from which calls go through.
extern "C" long attackCall(long number, long a, long b, long c, long d, long e, long f);
extern "C" const char attackCalled[];
asm(R"(
.globl attackCall, attackCalled
.hidden attackCalled
.type attackCall, @function
attackCall:
    movq %rdi, %rax
    movq %rsi, %rdi
    movq %rdx, %rsi
    movq %rcx, %rdx
    movq %r8, %r10
    movq %r9, %r8
    movq 8(%rsp), %r9
    syscall
attackCalled:
    ret
)");

namespace {

constexpr std::uint32_t otherCalls[] = {
        SYS_mmap,      SYS_mprotect,     SYS_munmap,         SYS_mremap,       SYS_brk,
        SYS_madvise,   SYS_rt_sigaction, SYS_rt_sigprocmask, SYS_rt_sigreturn, SYS_getpid,
        SYS_gettid,    SYS_getuid,       SYS_geteuid,        SYS_getgid,       SYS_getegid,
        SYS_futex,     SYS_getrandom,    SYS_clock_gettime,  SYS_gettimeofday, SYS_time,
        SYS_exit,      SYS_exit_group,   SYS_tgkill,         SYS_sched_yield,  SYS_uname,
        SYS_prlimit64, SYS_sysinfo,      SYS_clock_nanosleep};
constexpr int kMostCalls = 4096;

Attack current;
bool isArmed = false;
int calls[kMostCalls];
int count = 0;

/// A call that may make a file has a number of its own: it fails for other reasons.
int kindOf(int number, const greg_t *registers)
{
    const auto flags = number == SYS_open     ? registers[REG_RSI]
                       : number == SYS_openat ? registers[REG_RDX]
                                              : 0;
    return flags & O_CREAT ? -number : number;
}

void onCall(int, siginfo_t *info, void *context)
{
    greg_t *const r = static_cast<ucontext_t *>(context)->uc_mcontext.gregs;
    const int number = info->si_syscall;
    const auto pass = [&](long size) {
        return attackCall(number, r[REG_RDI], r[REG_RSI], size, r[REG_R10], r[REG_R8], r[REG_R9]);
    };
    const auto die = [] { attackCall(SYS_kill, getpid(), SIGKILL, 0, 0, 0, 0); };
    const int here = isArmed && count < kMostCalls ? count++ : kMostCalls;
    if (here < kMostCalls)
        calls[here] = kindOf(number, r);
    const bool isHere = here < kMostCalls && here == current.point;
    const bool isAgain = here < kMostCalls && current.stays && here > current.point
                         && calls[here] == calls[current.point];
    if (isHere && current.way == 'k')
        die();
    if ((isHere && current.way == 'e') || isAgain)
        r[REG_RAX] = -current.error;
    else
        r[REG_RAX] =
                pass(isHere && (current.way == 's' || current.way == 'h') ? (r[REG_RDX] + 1) / 2
                                                                          : r[REG_RDX]);
    if (isHere && (current.way == 'K' || current.way == 'h'))
        die();
}

/// Hands every call over but those from attackCall() and the ones that have nothing to do with files.
bool installFilter()
{
    constexpr int otherCount = sizeof otherCalls / sizeof *otherCalls;
    const auto place = reinterpret_cast<std::uintptr_t>(attackCalled);
    const auto load = [](std::size_t offset) {
        return sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, static_cast<std::uint32_t>(offset)};
    };
    const auto unlessIs = [](std::uint32_t value, int skipped) {
        return sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, static_cast<std::uint8_t>(skipped), value};
    };
    sock_filter program[2 * otherCount + 7] = {
            load(offsetof(seccomp_data, instruction_pointer)),
            unlessIs(static_cast<std::uint32_t>(place), 3),
            load(offsetof(seccomp_data, instruction_pointer) + 4),
            unlessIs(static_cast<std::uint32_t>(place >> 32), 1),
            {BPF_RET, 0, 0, SECCOMP_RET_ALLOW},
            load(offsetof(seccomp_data, nr))};
    sock_filter *next = program + 6;
    for (const std::uint32_t call : otherCalls) {
        *next++ = unlessIs(call, 1);
        *next++ = {BPF_RET, 0, 0, SECCOMP_RET_ALLOW};
    }
    *next++ = {BPF_RET, 0, 0, SECCOMP_RET_TRAP};
    const sock_fprog filter{static_cast<unsigned short>(next - program), program};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
           && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

} // namespace

bool beginAttack(const Attack &attack)
{
    current = attack;
    struct sigaction action = {};
    action.sa_sigaction = onCall;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    isArmed = sigaction(SIGSYS, &action, nullptr) == 0 && installFilter();
    return isArmed;
}

int endAttack(const int *&numbers)
{
    isArmed = false;
    numbers = calls;
    return count;
}
