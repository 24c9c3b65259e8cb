/* Util: what is left of a crash: a report, a dump, the product's own notes; and stack traces at any time.
 *
 *     UtilProtection options = {sizeof options};
 *     options.flags = UTIL_PROTECT_END;
 *     options.product = L"Invoice Designer";
 *     if (UtilExHandlerStartProtection(&options) > 0)
 *         OfferToSendReports();                            // from an earlier run
 *     UtilExHandlerSetNote(L"Document", path);             // what the user works on
 *
 * When a thread of the process crashes, in whichever module, a report (text) and a dump (for debuggers) are
 * written into a folder by a thread that was made ready for it. That thread needs nothing of the process: no
 * heap, lock, C runtime or loader, so both are written as well when the heap is overwritten or locked.
 *
 * Caught are: exceptions that nobody handles, stack overflows, abort and what ends in it (an uncaught C++
 * exception, std::terminate), pure virtual calls, and invalid parameters of the C runtimes that end the
 * process for them; of every C runtime that is loaded as a DLL. Not caught are: fast-fail (int 0x29, /GS,
 * heap corruption that the system finds), TerminateProcess, a stack pointer that leads nowhere, what the
 * loader catches (an exception thrown in a DllMain; abort there is caught), and anything while a debugger has
 * the process.
 *
 * A dump holds what was in memory, customers' data included.
 *
 * Results are those of results.h. Any thread may call anything.
 */
#ifndef TVUT22_CRASH_H
#define TVUT22_CRASH_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>
#include <tvut22/results.h>

/* ---- Protection ------------------------------------------------------------------------------- */

/* Called when report and dump of a crash are written, on the prepared thread. It may do what it likes within
 * what is left of 30 seconds from the crash; the process is as it was when it crashed, so every lock may be
 * held for ever. What faults in it ends it.
 *
 * report     full path of the report; null: none could be written
 * dump       full path of the dump; null: none could be written
 * user       as it was given to StartProtection
 */
typedef void(TVUT22_CALL* UtilCrashHandler)(const wchar_t* report, const wchar_t* dump, UINT_PTR user);

/* Flags of UtilProtection. */
#define UTIL_PROTECT_END 0x1u    /* the process ends when all is written; see below */
#define UTIL_PROTECT_FULL 0x2u   /* dumps with all memory */
#define UTIL_PROTECT_NOTICE 0x4u /* a message box names the report in the end, for 60 seconds at most */

/* How a process is to be protected. Zeros, but for size, will do. */
typedef struct UtilProtection {
    UINT size;              /* of this structure, 32 or more; what comes after is ignored */
    UINT flags;             /* UTIL_PROTECT_... */
    const wchar_t* folder;  /* where reports go, made when missing; null: "Reports" in a folder of the host
                               program's name in the user's local application data */
    const wchar_t* product; /* shown in reports; null: the host program's name */
    const wchar_t* version; /* shown in reports; null: the host program's file version */
    UINT keep;              /* reports kept in the folder, the newest; 0: 10 */
    UtilCrashHandler after; /* may be null */
    UINT_PTR user;          /* for "after" */
} UtilProtection;

/* Starts protection, or counts a further start: the options of the first hold until the last End. Reports in
 * the folder beyond the newest "keep" are removed, with their dumps; files of other names, and of other host
 * programs, are left alone.
 *
 * With UTIL_PROTECT_END the process ends with the exception's code, after abort and its kin with 3; so it
 * does when nobody answers a notice in time. Without it the previous handler is called, then the system goes
 * on as if nothing protected the process. From now on threads that begin and have 320 KB of stack or more
 * keep 32 KB of it for a stack overflow; so does the calling thread.
 *
 * Costs a waiting thread, a megabyte of address space that is used at the first crash only, and nothing a
 * call. When a module that brings its own C runtime is loaded later, it calls UtilModuleOnAttach as all
 * modules do.
 *
 * options    null: all zero. Texts are copied.
 *
 * Result     the number of reports that wait in the folder, 0 for none; or
 *            UTIL_BAD_ARGUMENT   size below 32, an unknown flag, a folder whose path is too long
 *            UTIL_NO_ACCESS      the folder cannot be made or written in
 *            UTIL_FAILED         no thread, no memory
 *            UTIL_NOT_SUPPORTED  this system lacks a call that is needed
 */
TVUT22_API INT TVUT22_CALL UtilExHandlerStartProtection(const UtilProtection* options);

/* Takes back one UtilExHandlerStartProtection; after the last one the handlers that were there before are
 * back, where they are still ours. Unloading the library ends protection, too.
 *
 * Result     UTIL_OK; UTIL_NOT_FOUND: protection was not started
 */
TVUT22_API INT TVUT22_CALL UtilExHandlerEndProtection(void);

/* Sets a note that each later report and dump shows, protection or not. Notes stand in the order in which
 * their names were first set. They are kept in fixed memory: nothing is allocated, and a dump holds them.
 *
 * name       at most 63 characters of it count
 * value      at most 255 characters of it count; null removes the note
 *
 * Result     UTIL_OK             also for the removal of a note that is not there
 *            UTIL_BAD_ARGUMENT   null or empty name
 *            UTIL_TOO_LARGE      64 notes are there
 */
TVUT22_API INT TVUT22_CALL UtilExHandlerSetNote(const wchar_t* name, const wchar_t* value);

/* ---- Stack traces and dumps ------------------------------------------------------------------- */

/* Tells where a thread is, as a text of one frame a line, the innermost first, at most 64. A line is as much
 * as is known of "designer.exe+0x1d44 _Z11render_pageR4Page+0x12 (page.cpp:41)", and ends with CR LF. Frames
 * that were found by searching the stack end with " ?". Functions and lines come from the modules' own
 * symbols, or a debug file beside them, else from the system's debug-help service.
 *
 * thread     0 or the caller's own: the caller, without this call itself. Another thread of this process
 *            stands still while its frames are copied. They are named when it runs again, so nothing that it
 *            holds can keep this call from returning
 * context    null, or registers to begin with; their stack must not change meanwhile, and thread is 0 then
 * skip       frames that are left out besides
 * result     null: nothing is named and delivered. Else it leads to null or to a string of the OLE allocator,
 *            which is reallocated; the caller frees it with SysFreeString. Left as it is unless the result is
 *            UTIL_OK
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT   both a thread and a context
 *            UTIL_NOT_FOUND      this process has no such thread
 *            UTIL_NO_ACCESS      the thread may not be looked at
 *            UTIL_FAILED         no memory
 */
TVUT22_API INT TVUT22_CALL UtilDebugHelpGetStackTrace(UINT thread, const CONTEXT* context, UINT skip,
                                                      BSTR* result);

/* Writes the caller's frames to the diagnostic output, as lines of a group below a title.
 *
 * title      the first line; null: empty
 * skip       frames that are left out, besides this call itself
 * frames     how many at most, up to 64; 0: 40
 *
 * Result     the number of frames that were written; 0 while nobody listens, at the cost of some nanoseconds
 */
TVUT22_API INT TVUT22_CALL UtilStackTrace(const wchar_t* title, UINT skip, UINT frames);

/* Flag of UtilDebugHelpWriteMiniDump. */
#define UTIL_DUMP_FULL 0x1u /* all memory */

/* Writes a dump of a process that goes on, for debuggers: its threads with their stacks, its modules, and the
 * notes of this process. Its threads stand still meanwhile. The file appears when it is complete; until then,
 * and when it fails, a file of that name stays as it was.
 *
 * file       the dump to be made
 * flags      0 or UTIL_DUMP_FULL
 * process    0: this one; or the identifier of another 32-bit process that may be read, such as a child that
 *            hangs
 * thread     the thread of the exception; 0: the caller. Without an exception it does not count
 * exception  in this process, or null
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT   null or empty file, an unknown flag
 *            UTIL_NOT_FOUND      no such process
 *            UTIL_NO_ACCESS      the process may not be read, the file not be made
 *            UTIL_NOT_SUPPORTED  a 64-bit process
 *            UTIL_FAILED         the disk is full, no memory
 */
TVUT22_API INT TVUT22_CALL UtilDebugHelpWriteMiniDump(const wchar_t* file, UINT flags, UINT process,
                                                      UINT thread, EXCEPTION_POINTERS* exception);

/* ---- Support archive -------------------------------------------------------------------------- */

#define UTIL_SUPPORT_TAKE 0x1u /* reports that are in the finished archive are removed from their folder */

/* Writes one ZIP archive that a customer can send. It holds "system.txt" (the program, the system, the user's
 * language, code page, monitors, memory, drives, and the modules), "reports" (all reports and dumps in the
 * folder of the protection, none without protection), "log" (the file of the diagnostic output, where one is
 * named), and "files" (what is given here). A file that cannot be read becomes a line of "missing.txt". The
 * archive takes the place of a file of that name when it is complete; until then, and when it fails, that
 * stays as it was.
 *
 * Dumps hold what was in memory. Files that others hold are waited for. Not for use after a crash.
 *
 * archive    the file to be made
 * files      files to be added, folders with all below them; of the same names the second is "name-2.ini" and
 *            so on. Null: none
 * count      of files
 * flags      0 or UTIL_SUPPORT_TAKE
 *
 * Result     UTIL_OK             also when files are missing
 *            UTIL_BAD_ARGUMENT   a null or empty path, an unknown flag, a name that no file can have
 *            UTIL_NO_ACCESS      the archive's folder is not there, or the archive cannot be made in it
 *            UTIL_FAILED         the disk is full, no memory, the old archive cannot be replaced
 */
TVUT22_API INT TVUT22_CALL UtilDebugHelpWriteSupportArchive(const wchar_t* archive,
                                                            const wchar_t* const* files, UINT count,
                                                            UINT flags);

#endif
