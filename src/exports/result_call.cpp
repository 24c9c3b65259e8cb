#include "exports/result_call.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

constexpr std::size_t mostTexts = 8;

struct scStringPolicy {
    using Value = BSTR;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { SysFreeString(value); }
};
using clsString = clsOwned<scStringPolicy>;

} // namespace

UtilResult UtilpGive(std::initializer_list<scWantedText> texts) noexcept {
    std::array<clsString, mostTexts> made;
    auto* next = made.data();
    for (const auto& [place, text] : texts) {
        if (place)
            *next = clsString(SysAllocStringLen(ToWide(text.data()), static_cast<UINT>(text.size())));
        if (place && !*next)
            return UtilResult::failed;
        ++next;
    }
    next = made.data();
    for (const auto& [place, text] : texts) {
        if (place) {
            SysFreeString(*place);
            *place = next->Take();
        }
        ++next;
    }
    return UtilResult::ok;
}

} // namespace tvut
