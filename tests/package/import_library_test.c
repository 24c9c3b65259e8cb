/* Links every declared function through the import library: a wrong number of argument bytes in the
 * export list fails to link, a wrong name would fail to load, and what is reached must be the export. */
#include <every_export.h>

#include <stdio.h>

static int visited, faults;

static void CheckExport(const char* name, FARPROC function) {
    ++visited;
    if (function && GetProcAddress(GetModuleHandleA("tvUT22.dll"), name) == function)
        return;
    ++faults;
    fprintf(stderr, "%s leads elsewhere\n", name);
}

int main(void) {
    VisitExports(CheckExport);
    printf("%d functions, %d faults\n", visited, faults);
    return visited == 0 || faults != 0;
}
