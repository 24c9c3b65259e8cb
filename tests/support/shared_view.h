// Memory that processes share under a name.
#pragma once

#include "files.h"

namespace testing_prof {

template <class T>
class SharedView {
  public:
    explicit SharedView(const wchar_t* name, std::size_t bytes = sizeof(T))
        : mapping_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      static_cast<DWORD>(bytes), name)),
          view_(static_cast<T*>(MapViewOfFile(mapping_.get(), FILE_MAP_WRITE, 0, 0, 0))) {}
    ~SharedView() { UnmapViewOfFile(view_); }
    SharedView(const SharedView&) = delete;
    SharedView& operator=(const SharedView&) = delete;

    T* operator->() const { return view_; }
    T& operator*() const { return *view_; }

  private:
    Handle mapping_;
    T* view_;
};

} // namespace testing_prof
