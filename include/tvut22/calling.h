/* How every export is declared: linkage, import, calling convention.
 *
 * The DLL exports plain, undecorated names. Every function is __stdcall unless its declaration says
 * otherwise; so are callbacks. Text is UTF-16, but for the A forms of profile calls: theirs is 8-bit, in the
 * code page of PROF_OPTION_CODE_PAGE.
 */
#ifndef TVUT22_CALLING_H
#define TVUT22_CALLING_H

#ifdef _WIN64
#error "tvUT22 is a library for 32-bit programs: build for x86, with cmake -A Win32 or i686-w64-mingw32"
#endif

#include <tvut22/version.h>

#include <windows.h>

#ifdef TVUT22_BUILDING_DLL
#define TVUT22_IMPORT
#else
#define TVUT22_IMPORT __declspec(dllimport)
#endif

#ifdef __cplusplus
#define TVUT22_API extern "C" TVUT22_IMPORT
#else
#define TVUT22_API TVUT22_IMPORT
#endif

#define TVUT22_CALL __stdcall
#define TVUT22_CALL_VARIADIC __cdecl /* functions with variable arguments */

#endif
