// VARIANTs in their stored form; see variant_layout.h for the bytes.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <string>
#include <string_view>
#include <utility>

namespace tvut {

// A VARIANT that is cleared at its end.
class clsVariant {
  public:
    clsVariant() noexcept { VariantInit(&value_); }
    clsVariant(const clsVariant&) = delete;
    clsVariant& operator=(const clsVariant&) = delete;
    ~clsVariant() { VariantClear(&value_); }

    VARIANT& Get() noexcept { return value_; }
    VARIANT Release() noexcept { return std::exchange(value_, VARIANT{}); }

  private:
    VARIANT value_;
};

// The bytes of a variant and of everything it refers to. Throws clsException for one that means nothing
// outside the process (an interface pointer) or that cannot be copied, and a diagnostic line says so;
// std::bad_alloc.
std::string ProfpStoreVariant(const VARIANT& value);

// Makes a variant, empty so far, from its bytes. Throws clsException when they are none, std::bad_alloc.
void ProfpLoadVariant(std::string_view bytes, clsVariant& value);

} // namespace tvut
