/* Every function of the public headers: its name, and where the import library leads. */
#ifndef EVERY_EXPORT_H
#define EVERY_EXPORT_H

#include <windows.h>

void VisitExports(void (*visit)(const char* name, FARPROC function));

#endif
