// Ownership of Windows resources: one template, and a policy for each kind.
//
// A policy names the type, the value that means "none", and how to close. Closing keeps the thread's
// last-error value, so that a failure can be reported after its resources are gone.
#pragma once

#include <utility>
#include <windows.h>

namespace tvut {

// Keeps the thread's last-error value as it is now, whatever is called while the object lives.
class clsLastErrorKept {
  public:
    clsLastErrorKept() noexcept : error_(GetLastError()) {}
    ~clsLastErrorKept() { SetLastError(error_); }
    clsLastErrorKept(const clsLastErrorKept&) = delete;
    clsLastErrorKept& operator=(const clsLastErrorKept&) = delete;

  private:
    DWORD error_;
};

template <class Policy>
class clsOwned {
  public:
    using Value = typename Policy::Value;

    clsOwned() noexcept = default;
    explicit clsOwned(Value value) noexcept : value_(value) {}
    clsOwned(clsOwned&& other) noexcept : value_(std::exchange(other.value_, Policy::None())) {}
    clsOwned& operator=(clsOwned&& other) noexcept {
        if (this != &other) {
            Reset();
            value_ = std::exchange(other.value_, Policy::None());
        }
        return *this;
    }
    ~clsOwned() { Reset(); }

    explicit operator bool() const noexcept { return value_ != Policy::None(); }
    Value Get() const noexcept { return value_; }

    // Leaves the resource to the caller.
    Value Take() noexcept { return std::exchange(value_, Policy::None()); }

    // For functions that return a resource through a pointer.
    Value* Receive() noexcept {
        Reset();
        return &value_;
    }

    void Reset() noexcept {
        if (value_ == Policy::None())
            return;
        const clsLastErrorKept lastError;
        Policy::Close(value_);
        value_ = Policy::None();
    }

  private:
    Value value_ = Policy::None();
};

struct scFilePolicy {
    using Value = HANDLE;
    static Value None() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) noexcept { CloseHandle(value); }
};
using clsFileHandle = clsOwned<scFilePolicy>;

struct scHandlePolicy {
    using Value = HANDLE;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { CloseHandle(value); }
};
using clsHandle = clsOwned<scHandlePolicy>;

struct scFindPolicy {
    using Value = HANDLE;
    static Value None() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) noexcept { FindClose(value); }
};
using clsFindHandle = clsOwned<scFindPolicy>;

struct scRegistryKeyPolicy {
    using Value = HKEY;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { RegCloseKey(value); }
};
using clsRegistryKey = clsOwned<scRegistryKeyPolicy>;

// A library that is not unloaded as long as the object is there.
struct scLibraryPolicy {
    using Value = HMODULE;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { FreeLibrary(value); }
};
using clsLibrary = clsOwned<scLibraryPolicy>;

} // namespace tvut
