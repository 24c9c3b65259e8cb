// The library a second time in one process: a copy of its file under another name.
#pragma once

#include "files.h"

#include <initializer_list>
#include <utility>

namespace testing_prof {

class clsCopy {
  public:
    // Loads the file, which `makeFile` made.
    explicit clsCopy(const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {}
    ~clsCopy() { Unload(); }
    clsCopy(const clsCopy&) = delete;
    clsCopy& operator=(const clsCopy&) = delete;

    // Makes such a file; byte strings in it may be replaced by others that are as long.
    using Change = std::pair<std::string_view, std::string_view>;
    static void MakeFile(const std::wstring& path, std::initializer_list<Change> changes = {}) {
        wchar_t original[MAX_PATH];
        GetModuleFileNameW(GetModuleHandleW(L"tvUT22.dll"), original, MAX_PATH);
        Bytes bytes = ReadBytes(original);
        for (const auto& [from, to] : changes)
            for (std::size_t at = 0; (at = bytes.find(from, at)) != Bytes::npos; at += to.size())
                bytes.replace(at, from.size(), to);
        WriteBytes(path, bytes);
    }

    explicit operator bool() const { return module_; }
    void Unload() {
        if (module_)
            FreeLibrary(std::exchange(module_, nullptr));
    }

    // The copy's own export: find(UtilDebug, "UtilDebug").
    template <class Function>
    Function* Find(Function&, const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

  private:
    HMODULE module_;
};

} // namespace testing_prof
