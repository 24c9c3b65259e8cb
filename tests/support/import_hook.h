// Stands between the DLL and one system function by rewriting the DLL's import table, so that a test can
// count its calls, make one of them fail, or stop the process there.
#pragma once

#include <windows.h>

#include <cstring>

namespace testing_prof {

// The slot through which the DLL calls a function; null when it does not import it. The tables of names and
// those of slots lie in the same order, those of functions that are bound late among them.
inline void** ImportSlot(const char* function, const wchar_t* library = L"tvUT22.dll") {
    auto* base = reinterpret_cast<BYTE*>(GetModuleHandleW(library));
    const auto* headers =
        reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const auto* const directories = headers->OptionalHeader.DataDirectory;
    const auto* const first = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(
        base + directories[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress);
    const auto& slots = directories[IMAGE_DIRECTORY_ENTRY_IAT];
    const DWORD distance = first->FirstThunk - first->OriginalFirstThunk;
    for (DWORD at = slots.VirtualAddress; at < slots.VirtualAddress + slots.Size; at += sizeof(void*)) {
        const DWORD name = *reinterpret_cast<DWORD*>(base + at - distance);
        if (name != 0 && !IMAGE_SNAP_BY_ORDINAL(name) &&
            !std::strcmp(reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name)->Name, function))
            return reinterpret_cast<void**>(base + at);
    }
    return nullptr;
}

// Whether a slot leads out of the DLL. One that is bound late leads to a piece of code in it until then.
inline bool IsBound(const char* function, const wchar_t* library = L"tvUT22.dll") {
    HMODULE at = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(*ImportSlot(function, library)), &at);
    return at && at != GetModuleHandleW(library);
}

// Puts a replacement into an import slot for the life of the object.
class clsImportHook {
  public:
    template <class Function>
    clsImportHook(const char* name, Function* replacement) : slot_(ImportSlot(name)) {
        if (!slot_)
            return;
        original_ = *slot_;
        Write(reinterpret_cast<void*>(replacement));
    }
    ~clsImportHook() {
        if (slot_)
            Write(original_);
    }
    clsImportHook(const clsImportHook&) = delete;
    clsImportHook& operator=(const clsImportHook&) = delete;

    explicit operator bool() const { return slot_; }

  private:
    void Write(void* value) const {
        DWORD before = 0;
        VirtualProtect(slot_, sizeof(void*), PAGE_READWRITE, &before);
        *slot_ = value;
        VirtualProtect(slot_, sizeof(void*), before, &before);
    }

    void** slot_;
    void* original_ = nullptr;
};

} // namespace testing_prof
