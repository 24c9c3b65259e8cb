// The system calls its handlers on a thread of its own, one after the other under a lock of its own, which
// setting and removing handlers take, too. A procedure that waits there for the program's end must not wait
// for a hook's closing by that. So the handler stays when the last hook has closed, and is removed on the
// thread that lets the library go.
#include "window/hooks_console.h"

#include "platform/lock.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <vector>

namespace tvut {

namespace {

constinit clsLock listLock;
constinit std::vector<std::shared_ptr<scHook>> waiting; // oldest first
constinit std::uint64_t lastNumber = 0;

constinit clsLock handlerLock; // taken before the other one
constinit bool hasHandler = false;

std::shared_ptr<scHook> NewestBefore(std::uint64_t number) noexcept {
    const std::lock_guard lock(listLock);
    const auto found = std::find_if(waiting.rbegin(), waiting.rend(),
                                    [=](const auto& hook) { return hook->number < number; });
    return found == waiting.rend() ? nullptr : *found;
}

BOOL WINAPI ConsoleEvent(DWORD event) noexcept {
    if (event != CTRL_BREAK_EVENT)
        return FALSE;
    const clsHeldLibrary library;
    auto hook = NewestBefore((std::numeric_limits<std::uint64_t>::max)());
    while (hook && !hook->Break(true))
        hook = NewestBefore(hook->number);
    return hook ? TRUE : FALSE;
}

bool IsAnyWaiting() noexcept {
    const std::lock_guard lock(listLock);
    return !waiting.empty();
}

void RemoveHandler() noexcept {
    const std::lock_guard lock(handlerLock);
    if (hasHandler && !IsAnyWaiting())
        hasHandler = !SetConsoleCtrlHandler(ConsoleEvent, FALSE);
}

void SetHandler() noexcept {
    const std::lock_guard lock(handlerLock);
    PlatformBeforeLibraryGoes(RemoveHandler);
    if (!hasHandler)
        hasHandler = SetConsoleCtrlHandler(ConsoleEvent, TRUE) != FALSE;
}

} // namespace

void UtilpAwaitConsole(const std::shared_ptr<scHook>& hook) {
    {
        const std::lock_guard lock(listLock);
        hook->number = ++lastNumber;
        waiting.push_back(hook);
    }
    SetHandler();
}

void UtilpLeaveConsole(const scHook& hook) noexcept {
    const std::lock_guard lock(listLock);
    std::erase_if(waiting, [&](const auto& other) { return other.get() == &hook; });
}

} // namespace tvut
