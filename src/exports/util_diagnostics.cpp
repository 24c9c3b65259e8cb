// Exports of diagnostic output.
#include "exports/wide_text.h"
#include "platform/host.h"
#include "runtime/output/writer.h"

#include <tvut22/diagnostics.h>

#include <array>
#include <cstdio>
#include <cwchar>

using namespace tvut;

namespace {

// A caller's format and arguments as text, cut at the longest line. On the caller's stack: nothing is
// shared until the text is there.
class clsFormattedText {
  public:
    void Format(const wchar_t* format, va_list arguments) noexcept {
        va_list again;
        va_copy(again, arguments);
        const int length = _vsnwprintf(text_.data(), text_.size(), format, arguments);
        if (length >= 0)
            length_ = static_cast<std::size_t>(length);
        else if (_vscwprintf(format, again) > static_cast<int>(text_.size())) // cut, not refused
            length_ = text_.size();
        va_end(again);
    }
    std::u16string_view View() const noexcept { return {FromWide(text_.data()), length_}; }

  private:
    std::array<wchar_t, clsDiagnosticLine::longest> text_;
    std::size_t length_ = 0;
};

void WriteFormatted(const wchar_t* tag, INT levelChange, const wchar_t* format, va_list arguments) noexcept {
    if (!format || !UtilpDiagnosticWriter().IsOn())
        return;
    clsFormattedText text;
    text.Format(format, arguments);
    UtilpDiagnosticWriter().Write(UtilpView(tag), {levelChange}, text.View());
}

} // namespace

TVUT22_API void TVUT22_CALL_VARIADIC UtilDebug(const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(nullptr, 0, format, arguments);
    va_end(arguments);
}

TVUT22_API void TVUT22_CALL_VARIADIC UtilDebugExt(const wchar_t* moduleTag, INT levelChange,
                                                  const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(moduleTag, levelChange, format, arguments);
    va_end(arguments);
}

TVUT22_API void TVUT22_CALL UtilDebugExtV(const wchar_t* moduleTag, INT levelChange, const wchar_t* format,
                                          va_list arguments) {
    WriteFormatted(moduleTag, levelChange, format, arguments);
}

TVUT22_API void TVUT22_CALL PasDebug(const wchar_t* text) {
    if (text)
        UtilpDiagnosticWriter().Write({}, {0}, UtilpView(text));
}

TVUT22_API void TVUT22_CALL UtilError(const wchar_t* where, const wchar_t* what) {
    const std::u16string_view host = PlatformHostTag();
    UtilDebug(L"\nKX32UTIL['%.*s']: error in '%s' (%s): %s\n", static_cast<int>(host.size()),
              ToWide(host.data()), where, what, L"");
}

TVUT22_API UINT TVUT22_CALL UtilGetFlags() {
    return UtilpDiagnosticsOn();
}

TVUT22_API void TVUT22_CALL UtilAssert(const wchar_t* expression, const wchar_t* file, UINT line) {
    std::array<wchar_t, 81> text{};
    _snwprintf(text.data(), text.size() - 1, L"line %u in file %s:\n\"%s\"", line, file, expression);
    MessageBoxW(nullptr, text.data(), L"Assertion Failure", MB_TASKMODAL | MB_ICONERROR | MB_RETRYCANCEL);
    ExitProcess(static_cast<UINT>(-1));
}

TVUT22_API BOOL TVUT22_CALL UtilLOGPAN4Attach() {
    return UtilpDiagnosticWriter().Attach();
}

TVUT22_API void TVUT22_CALL UtilLOGPAN4Detach() {
    UtilpDiagnosticWriter().Detach();
}
