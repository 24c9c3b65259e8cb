// A string of the OLE allocator that a call returns.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace testing_prof {

class clsOleText {
  public:
    clsOleText() = default;
    explicit clsOleText(const std::wstring& text)
        : string_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    ~clsOleText() { SysFreeString(string_); }
    clsOleText(const clsOleText&) = delete;
    clsOleText& operator=(const clsOleText&) = delete;

    BSTR* Out() { return &string_; }
    BSTR Get() const { return string_; }
    std::wstring Text() const { return {string_, SysStringLen(string_)}; }

  private:
    BSTR string_ = nullptr;
};

} // namespace testing_prof
