// A viewer of help files that shows nothing: it writes down what it is asked for.
#include <windows.h>

#include <cstdio>
#include <htmlhelp.h>

extern "C" __declspec(dllexport) HWND WINAPI
    HtmlHelpW(HWND owner, LPCWSTR file, UINT command, DWORD_PTR data) {
    wchar_t line[2048], record[MAX_PATH];
    GetEnvironmentVariableW(L"TVUT22_HELP_RECORD", record, MAX_PATH);
    int length =
        _snwprintf(line, 2048, L"%u %ls %ls", command, owner ? L"owner" : L"none", file ? file : L"-");
    if (command == HH_KEYWORD_LOOKUP) {
        const auto& lookup = *reinterpret_cast<const HH_AKLINK*>(data);
        length += _snwprintf(line + length, 500, L" %d '%ls' %d", lookup.cbStruct, lookup.pszKeywords,
                             lookup.fIndexOnFail);
    } else if (data != 0) {
        length += _snwprintf(line + length, 500, L" %lu", static_cast<unsigned long>(data));
    }
    length += _snwprintf(line + length, 4, L"\n");
    const HANDLE out = CreateFileW(record, FILE_APPEND_DATA, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(out, line, static_cast<DWORD>(length) * sizeof *line, &written, nullptr);
    CloseHandle(out);
    const bool isMissing = file && wcsstr(file, L"nowhere") != nullptr;
    return command == HH_CLOSE_ALL || isMissing ? nullptr : GetDesktopWindow();
}
