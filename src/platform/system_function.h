// Functions of system libraries that few processes need: the library is loaded when one is first called, from
// the system's own folder, and stays.
#pragma once

#include <atomic>
#include <windows.h>

namespace tvut {

// Loads a library of the system by its full path; null when there is none.
HMODULE PlatformLoadSystemLibrary(const wchar_t* library) noexcept;

// Loads a library of the system by its full path and finds a function in it, by its number where it goes
// without a name and has one; null when the system has none.
FARPROC PlatformFindSystemFunction(const wchar_t* library, const char* name, WORD number = 0) noexcept;

// One function, made for static storage. Any thread. Loading is not for callers within the loader.
template <class Function>
class clsSystemFunction {
  public:
    constexpr clsSystemFunction(const wchar_t* library, const char* name, WORD number = 0) noexcept
        : library_(library), name_(name), number_(number) {}
    clsSystemFunction(const clsSystemFunction&) = delete;
    clsSystemFunction& operator=(const clsSystemFunction&) = delete;

    // Null when the system has no such library or function.
    Function* Get() noexcept {
        Function* found = function_.load(std::memory_order_acquire);
        if (!found) {
            found = reinterpret_cast<Function*>(
                reinterpret_cast<void*>(PlatformFindSystemFunction(library_, name_, number_)));
            function_.store(found, std::memory_order_release);
        }
        return found;
    }

  private:
    const wchar_t* library_;
    const char* name_;
    WORD number_;
    std::atomic<Function*> function_{nullptr};
};

} // namespace tvut
