// The compiler for this target has no way to catch what the system raises, so a frame is linked by hand into
// the thread's chain of handlers. It costs a dozen instructions on entry and none while it stands. The search
// for a handler meets it before any of the callers', as it is the newest in the chain; codes that are not
// listed pass on to them. MSVC does the same by its own words.
#include "platform/guarded.h"

#include <windows.h>

// The system takes the guard off a page that is touched. The page is somebody else's, who needs it: it may be
// what lets another thread's stack grow.
extern "C" void TvutPutGuardBack(const EXCEPTION_RECORD* record) noexcept {
    void* const page = reinterpret_cast<void*>(record->ExceptionInformation[1]);
    MEMORY_BASIC_INFORMATION memory;
    DWORD before = 0;
    if (record->NumberParameters >= 2 && VirtualQuery(page, &memory, sizeof memory) != 0)
        VirtualProtect(page, 1, memory.Protect | PAGE_GUARD, &before);
}

#ifdef _MSC_VER

namespace {

int Filter(const EXCEPTION_RECORD* record) noexcept {
    const DWORD code = record->ExceptionCode;
    if (code == STATUS_GUARD_PAGE_VIOLATION)
        TvutPutGuardBack(record);
    const bool ours = code == STATUS_ACCESS_VIOLATION || code == STATUS_IN_PAGE_ERROR ||
                      code == STATUS_GUARD_PAGE_VIOLATION || code == STATUS_NO_MEMORY || code == 0xC0000374;
    return ours ? EXCEPTION_EXECUTE_HANDLER : EXCEPTION_CONTINUE_SEARCH;
}

} // namespace

unsigned long TvutGuardedCall(void (*body)(void*), void* argument) {
    __try {
        body(argument);
        return 0;
    } __except (Filter(GetExceptionInformation()->ExceptionRecord)) {
        return GetExceptionCode();
    }
}

#else

// A registration record on the stack, {previous, handler}, linked into the thread's chain at fs:0. The
// handler unwinds the chain to the record and goes on after the call with the exception's code. Registers
// that a call keeps are restored there alone: a body that returns has kept them.
__asm__(R"(
    .text
    .p2align 4
    .globl _TvutGuardedCall
_TvutGuardedCall:
    pushl %ebp
    movl %esp, %ebp
    pushl %ebx
    pushl %esi
    pushl %edi
    pushl $_GuardedHandler
    pushl %fs:0
    movl %esp, %fs:0
    andl $-16, %esp
    subl $12, %esp
    pushl 12(%ebp)
    call *8(%ebp)
    xorl %eax, %eax
    movl -20(%ebp), %ecx
    movl %ecx, %fs:0
    leave
    ret
_GuardedEnd:
    movl -20(%ebp), %ecx
    movl %ecx, %fs:0
    leal -12(%ebp), %esp
    popl %edi
    popl %esi
    popl %ebx
    popl %ebp
    ret

_GuardedHandler:
    pushl %ebp
    movl %esp, %ebp
    movl 8(%ebp), %eax
    testl $6, 4(%eax)
    jnz 2f
    movl (%eax), %ecx
    cmpl $0xC0000005, %ecx
    je 1f
    cmpl $0xC0000006, %ecx
    je 1f
    cmpl $0xC0000017, %ecx
    je 1f
    cmpl $0xC0000374, %ecx
    je 1f
    cmpl $0x80000001, %ecx
    jne 2f
    pushl %eax
    call _TvutPutGuardBack
    addl $4, %esp
    movl 8(%ebp), %eax
    movl (%eax), %ecx
1:  pushl %ecx
    pushl $0
    pushl %eax
    pushl $3f
    pushl 12(%ebp)
    call _RtlUnwind@16
3:  movl -4(%ebp), %eax
    movl 12(%ebp), %ebp
    addl $20, %ebp
    jmp _GuardedEnd
2:  movl $1, %eax
    popl %ebp
    ret
)");

#endif
