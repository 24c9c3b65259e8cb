// The library a second time in one process: a copy of its file under another name.
#pragma once

#include "files.h"

#include <algorithm>
#include <utility>

namespace testing_prof {

class Copy {
  public:
    /// Loads the file, which `makeFile` made.
    explicit Copy(const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {}
    ~Copy() { unload(); }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    static void makeFile(const std::wstring& path) { writeFile(path, library()); }

    /// The same with one byte string in it replaced by another that is as long.
    static void makeFile(const std::wstring& path, std::string_view from, std::string_view to) {
        Bytes bytes = library();
        for (std::size_t at = 0; (at = bytes.find(from, at)) != Bytes::npos; at += to.size())
            std::copy(to.begin(), to.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
        writeFile(path, bytes);
    }

    explicit operator bool() const { return module_; }
    void unload() {
        if (module_)
            FreeLibrary(std::exchange(module_, nullptr));
    }

    /// The copy's own export: find(UtilDebug, "UtilDebug").
    template <class Function>
    Function* find(Function&, const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

  private:
    static Bytes library() {
        wchar_t path[MAX_PATH];
        GetModuleFileNameW(GetModuleHandleW(L"tvUT22.dll"), path, MAX_PATH);
        return readFile(path);
    }

    HMODULE module_;
};

} // namespace testing_prof
