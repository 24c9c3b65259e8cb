/* Links every declared function through the import library: a wrong number of argument bytes in the
 * export list fails to link, a wrong name would fail to load, and what is reached must be the export.
 * It needs no C runtime, so it can be linked by the tools of compilers that have none here. */
#include <tvut22/tvut22.h>

static int visited, faults;

static void Say(const char* text) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text, (DWORD)lstrlenA(text), &written, NULL);
}

static void CheckExport(const char* name, FARPROC function) {
    ++visited;
    if (function && GetProcAddress(GetModuleHandleA("tvUT22.dll"), name) == function)
        return;
    ++faults;
    Say(name);
    Say(" leads elsewhere\n");
}

int main(void) {
#define VISIT(name) CheckExport(#name, (FARPROC)(void*)name);
#include <every_export.inc>
    Say(faults == 0 ? "every function is the export\n" : "");
    return visited == 0 || faults != 0;
}

#ifdef WITHOUT_C_RUNTIME
void mainCRTStartup(void) {
    ExitProcess((UINT)main());
}
#endif
