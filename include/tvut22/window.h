/* Util: what window programs need: help, subclasses, hooks, names of messages, lists of handles.
 *
 * Results are those of results.h. Handles of this header are opaque values of 32 bits, 0 for none; a handle
 * that is closed, or none of its kind, is refused with UTIL_BAD_ARGUMENT, and closing 0 returns UTIL_OK.
 * After UTIL_FAILED the last-error value is the system's reason. docs/window.md says more.
 */
#ifndef TVUT22_WINDOW_H
#define TVUT22_WINDOW_H

#include <tvut22/calling.h>
#include <tvut22/results.h>

#include <oleauto.h>

/* ---- Names of messages ----------------------------------------------------------------------- */

/* Names a window message, for logs. Any thread.
 *
 * message    any number
 * window     the window that gets it, whose class tells apart numbers that each class uses in its own way; 0:
 *            not known
 * result     null, or leads to null or a string of the OLE allocator, which the text replaces; it is the
 *            caller's. By the first row that holds:
 *              a message below 0x400        L"WM_PAINT", L"LB_ADDSTRING"
 *              one of the window's class    L"TB_ADDBUTTONSW", L"EM_SETCHARFORMAT"
 *              one of the common controls   L"LVM_INSERTITEMW"
 *              0x400 to 0x7FFF              L"WM_USER", L"WM_USER+0x12"
 *              0x8000 to 0xBFFF             L"WM_APP", L"WM_APP+0x1"
 *              0xC000 to 0xFFFF             the text under which somebody has registered the number
 *              all else                     L"0x0123", at least four digits
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  window is neither 0 nor a window; *result is untouched, as below
 *            UTIL_FAILED        no memory
 */
TVUT22_API INT TVUT22_CALL UtilWindowMessageName(UINT message, HWND window, BSTR* result);

#endif
