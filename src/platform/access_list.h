// Files and folders with the rights to them, as the system keeps them, and what these allow.
//
// All functions return 0 or the system's error.
#pragma once

#include "platform/owned.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace tvut {

// What a path leads to, open for looking at its rights; others may do with it what they want meanwhile.
// Functions that allocate throw std::bad_alloc.
class clsSecuredFile {
  public:
    // Links are followed.
    DWORD OpenToRead(std::wstring_view path);
    // A link is opened itself.
    DWORD OpenToChange(std::wstring_view path);

    DWORD ReadAttributes(DWORD& attributes) const noexcept;
    DWORD KeepsRights(bool& keeps) const noexcept;

    // Owner, group and list, as one descriptor of the system's.
    DWORD ReadDescriptor(std::vector<std::byte>& descriptor) const;

    // Replaces the list, here and as far as it is inherited below.
    DWORD ReplaceList(std::vector<std::byte>& list) const noexcept;

  private:
    DWORD Open(std::wstring_view path, DWORD access, DWORD flags);

    clsFileHandle handle_;
};

// The list in a descriptor, a part of it; empty when there is none, and everyone may do everything.
DWORD PlatformListOf(std::span<const std::byte> descriptor, std::span<const std::byte>& list) noexcept;

// What the user that the calling thread acts for may do.
class clsAccessCheck {
  public:
    DWORD Begin() noexcept;
    // All rights that a descriptor gives that user.
    DWORD Granted(std::vector<std::byte>& descriptor, DWORD& rights) const noexcept;

  private:
    clsHandle token_;
};

} // namespace tvut
