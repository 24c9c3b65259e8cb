// Stands between the DLL and one system function by rewriting the DLL's import table, so that a test can
// count its calls, make one of them fail, or stop the process there.
#pragma once

#include <windows.h>

#include <cstring>

namespace testing_prof {

// The slot through which the DLL calls a function; null when it does not import it.
inline void** ImportSlot(const char* function) {
    auto* base = reinterpret_cast<BYTE*>(GetModuleHandleW(L"tvUT22.dll"));
    const auto* headers =
        reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* module = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; module->Name; ++module) {
        auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + module->OriginalFirstThunk);
        auto* slot = reinterpret_cast<void**>(base + module->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++slot) {
            const auto* entry = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) && !std::strcmp(entry->Name, function))
                return slot;
        }
    }
    return nullptr;
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
