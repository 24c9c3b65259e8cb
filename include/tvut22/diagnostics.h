/* Util: diagnostic output.
 *
 * Lines go to a viewer that runs on this machine, or to a log file; while there is neither, a call
 * returns within nanoseconds. docs/diagnostics.md says how to switch output on and what lines look like.
 *
 * Every line carries the time, the thread, the processor, the last digit of a counter that counts every
 * line of the process, and an indentation, which callers raise and lower around groups of lines. A line
 * has at most 1,025 characters; more is cut off.
 *
 * Formats follow the system's C runtime in its wide functions: %s is UTF-16 text, %hs 8-bit text,
 * %I64u a 64-bit number, %#p a pointer. Text is UTF-16.
 *
 * Any thread may write, at any time but from within the loader's callbacks at process exit. Nothing here
 * fails, waits for a viewer, or keeps what it is given; writing leaves the thread's last error as it is.
 */
#ifndef TVUT22_DIAGNOSTICS_H
#define TVUT22_DIAGNOSTICS_H

#include <tvut22/calling.h>

#include <stdarg.h>

/* ---- Lines --------------------------------------------------------------------------------- */

/* Writes a line. Variable arguments: __cdecl.
 *   format  null writes nothing */
TVUT22_API void TVUT22_CALL_VARIADIC UtilDebug(const wchar_t* format, ...);

/* Writes a line with a module's tag and a change of the nesting level.
 *   moduleTag    shown before the line; null or empty: none. A viewer gets its first 31 characters
 *   levelChange  negative: the level is one less from this line on; positive: one more after it;
 *                0: as it is. Only the sign counts. Levels below 0 and above 50 count, but are shown as 0
 *                and 50. Nothing changes while output is off
 *   format       null writes nothing and changes no level */
TVUT22_API void TVUT22_CALL_VARIADIC UtilDebugExt(const wchar_t* moduleTag, INT levelChange,
                                                  const wchar_t* format, ...);
TVUT22_API void TVUT22_CALL UtilDebugExtV(const wchar_t* moduleTag, INT levelChange, const wchar_t* format,
                                          va_list arguments);

/* Writes a text as it stands; percent signs have no meaning. Null: nothing. */
TVUT22_API void TVUT22_CALL PasDebug(const wchar_t* text);

/* Writes "\nKX32UTIL['<host program>']: error in '<where>' (<what>): \n".
 *   where, what  terminated texts; null is shown as (null) */
TVUT22_API void TVUT22_CALL UtilError(const wchar_t* where, const wchar_t* what);

/* Returns whether diagnostic output is on: not 0 while a viewer or a log file takes lines. Costs a few
 * nanoseconds while nobody listens. */
TVUT22_API UINT TVUT22_CALL UtilGetFlags(void);

/* ---- Assertions ---------------------------------------------------------------------------- */

/* Shows the message box "Assertion Failure", and ends the process with exit code -1 when it is answered, in
 * whichever way. Does not return. The box shows 80 characters in all of line, file and expression; texts may
 * be null. */
TVUT22_API void TVUT22_CALL UtilAssert(const wchar_t* expression, const wchar_t* file, UINT line);

/* ---- The viewer ---------------------------------------------------------------------------- */

/* Look for a viewer now, and end the connection to one. Neither is needed: viewers are found at most a second
 * after they have started.
 * Result of UtilLOGPAN4Attach: TRUE when there is a viewer. After UtilLOGPAN4Detach the next look is a second
 * later. */
TVUT22_API BOOL TVUT22_CALL UtilLOGPAN4Attach(void);
TVUT22_API void TVUT22_CALL UtilLOGPAN4Detach(void);

#endif
