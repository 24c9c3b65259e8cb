// What the reader of a form reports of an input that loads, but of which it has read a part only, or nothing.
//
// Nothing is refused for what it holds besides a profile; but who opens it and saves what was read would
// lose the rest, so a line names it.
#pragma once

#include "runtime/diagnostics.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class clsLoadWarnings {
  public:
    explicit clsLoadWarnings(std::u16string_view inputName) : inputName_(inputName) {}

    // Writes "WRN: 'the input': what".
    void Tell(std::u16string_view what) const noexcept { Begun(what).Write(); }
    // The same, with the line where it begins; or with a number of what there is.
    void TellFrom(std::u16string_view what, std::uint32_t line) const noexcept {
        Begun(what).Put(u", from line ").PutDecimal(line, 1).Put(u" on").Write();
    }
    void TellNumber(std::u16string_view what, std::uint32_t number) const noexcept {
        Begun(what).Put(u": ").PutDecimal(number, 1).Write();
    }

  private:
    clsDiagnosticLine Begun(std::u16string_view what) const noexcept {
        clsDiagnosticLine line;
        line.Put(u"WRN: '").Put(inputName_).Put(u"': ").Put(what);
        return line;
    }

    std::u16string_view inputName_;
};

} // namespace tvut
