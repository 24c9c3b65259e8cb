// Named shared memory: a file mapping over the paging file, and the view of it.
#pragma once

#include "platform/guarded.h"
#include "platform/owned.h"

#include <cstddef>
#include <cstring>

namespace tvut {

struct scViewPolicy {
    using Value = void*;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { UnmapViewOfFile(value); }
};
using clsView = clsOwned<scViewPolicy>;

class clsMapping {
  public:
    // What another process published, for reading; HasObject() is false when there is no such name.
    static clsMapping OpenForReading(const wchar_t* name) noexcept;

    // The memory of that name, made when there is none.
    static clsMapping OpenOrCreate(const wchar_t* name, std::size_t bytes) noexcept;

    // Maps the first bytes, in place of what is mapped now, which stays when that fails. Fails for memory
    // that is only reserved; the first page stands for the rest.
    bool Map(std::size_t bytes) noexcept;

    bool HasObject() const noexcept { return static_cast<bool>(object_); }
    bool HasView() const noexcept { return static_cast<bool>(view_); }
    template <class Contents>
    Contents* As() const noexcept {
        return static_cast<Contents*>(view_.Get());
    }

    // For memory of others, who may have published a file that has been cut short meanwhile. False where
    // nothing is mapped, or no longer.
    template <class Contents>
    bool Read(Contents& contents) const noexcept {
        return Touch([&] { std::memcpy(&contents, view_.Get(), sizeof contents); });
    }
    template <class Contents>
    bool Write(const Contents& contents) const noexcept {
        return Touch([&] { std::memcpy(view_.Get(), &contents, sizeof contents); });
    }

  private:
    template <class Body>
    bool Touch(Body body) const noexcept {
        const bool touched = HasView() && PlatformGuarded(body) == 0;
        if (!touched)
            SetLastError(ERROR_NOACCESS);
        return touched;
    }

    clsHandle object_;
    clsView view_;
    DWORD access_ = 0;
};

} // namespace tvut
