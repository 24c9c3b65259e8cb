// The dialog stays open until its text is good or the user gives up.
#include "text_dialog.h"

#include "controls.h"
#include "pattern.h"
#include "resource.h"
#include "text_io.h"

namespace tool::logpan {

namespace {

void Begin(HWND dialog, const scTextQuestion& question) {
    SetWindowTextW(dialog, question.title);
    SetDlgItemTextW(dialog, ID_HINT, question.hint);
    SetDlgItemTextW(dialog, ID_TEXT, question.text.c_str());
    const auto length = static_cast<WPARAM>(question.text.size());
    SendDlgItemMessageW(dialog, ID_TEXT, EM_SETSEL, length, static_cast<LPARAM>(length));
}

void Accept(HWND dialog, scTextQuestion& question) {
    const std::wstring text = TextOf(GetDlgItem(dialog, ID_TEXT));
    try {
        question.check(text);
    } catch (const scBadPattern& bad) {
        SetDlgItemTextW(dialog, ID_PROBLEM, ToWide(bad.reason).c_str());
        return;
    }
    question.text = text;
    EndDialog(dialog, IDOK);
}

INT_PTR CALLBACK Handle(HWND dialog, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, second);
        Begin(dialog, *reinterpret_cast<const scTextQuestion*>(second));
        SetFocus(GetDlgItem(dialog, ID_TEXT));
        return FALSE; // the focus is set
    }
    if (message != WM_COMMAND || (LOWORD(first) != IDOK && LOWORD(first) != IDCANCEL))
        return FALSE;
    if (LOWORD(first) == IDOK)
        Accept(dialog, *reinterpret_cast<scTextQuestion*>(GetWindowLongPtrW(dialog, DWLP_USER)));
    else
        EndDialog(dialog, IDCANCEL);
    return TRUE;
}

} // namespace

std::optional<std::wstring> AskForText(HWND owner, scTextQuestion question) {
    const INT_PTR answer = DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_TEXT_DIALOG), owner,
                                           Handle, reinterpret_cast<LPARAM>(&question));
    if (answer != IDOK)
        return std::nullopt;
    return std::move(question.text);
}

} // namespace tool::logpan
