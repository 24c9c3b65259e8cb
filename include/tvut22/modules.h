/* Util: modules and their jobs, the library's version, the language.
 *
 * A module of the product opens a job under its own name before it uses the library's heaps; heaps
 * belong to the job, and closing the job's last reference destroys what is left of them and reports it.
 *
 *     UtilModuleOnAttach(L"REPORT.DLL");
 *     UtilJob job = UtilJobOpen(L"REPORT", 0);
 *     ...
 *     UtilJobClose(job);
 *     UtilModuleOnDetach(L"REPORT.DLL");
 *
 * Any thread may call; jobs are guarded by one lock for the process, held for the whole of a call,
 * its diagnostic lines included.
 */
#ifndef TVUT22_MODULES_H
#define TVUT22_MODULES_H

#include <tvut22/calling.h>
#include <tvut22/results.h>

/* A job. Reference-counted by its name; 0 is invalid. */
typedef struct UtilJobObject* UtilJob;

/* ---- Results: UTIL_OK, and ----------------------------------------------------------------- */

#define UTIL_BAD_JOB (-2)    /* not a job's handle */
#define UTIL_HEAPS_LEFT (-5) /* the job still had heaps; they were reported and destroyed */

/* ---- Jobs ---------------------------------------------------------------------------------- */

/* Flags of UtilJobOpen. */
#define UTIL_JOB_TRACE 0x80000000u       /* every call on the job and its heaps writes diagnostic lines */
#define UTIL_JOB_DEBUG_HEAPS 0x40000000u /* heaps of the job check their objects, unless they refuse */

/* Opens the job of a name, or adds a reference to the one that is open.
 *   name   compared exactly, case-sensitive; a job keeps 32 characters of it, so that a longer name never
 *          finds an open job and always makes another. Null is the empty name.
 *   flags  UTIL_JOB_...; those of the open that makes the job hold, later ones are ignored
 * Result: the job, to be closed by UtilJobClose once for each open; 0 when memory has run out. */
TVUT22_API UtilJob TVUT22_CALL UtilJobOpen(const wchar_t* name, UINT flags);

/* Drops a reference to a job; the last one destroys the job and, with a report of each, the heaps left in it.
 * Result: UTIL_OK, UTIL_HEAPS_LEFT, or UTIL_BAD_JOB for a handle that no open job has. Job 0 is
 * passed over: UTIL_OK. */
TVUT22_API INT TVUT22_CALL UtilJobClose(UtilJob job);

/* ---- Modules ------------------------------------------------------------------------------- */

/* Announce that a module of the product has been loaded or is about to be unloaded. Both write a line:
 * "++module [host program's file] [module's file]", the last part only when a DLL of that name is loaded,
 * and "--module [host program's file]"; files are full names. While modules are there the connection to a
 * running viewer is kept; the last one that goes closes it, and what the list of handles holds is reported
 * (UtilHandleListMgr). A DllMain may call both, except at the end of the process: nothing is left to do then.
 *   module  the module's name, such as its file name; null is shown as (NULL) */
TVUT22_API void TVUT22_CALL UtilModuleOnAttach(const wchar_t* module);
TVUT22_API void TVUT22_CALL UtilModuleOnDetach(const wchar_t* module);

/* ---- The library --------------------------------------------------------------------------- */

/* Returns the library's version.
 *   which  0: 0x0016000A, major version in the high half, minor in the low half; 1: major, 22;
 *          2: minor, 10; 3: 0
 * Result: as above; 0xFFFFFFFF for any other value. */
TVUT22_API UINT TVUT22_CALL UtilGetVersion(UINT which);

/* ---- Language ------------------------------------------------------------------------------ */

/* Keeps the language of the host program's user interface for the user. It is the registry's value "Language"
 * of Software\Velmor\Appearance\<host program's name>, of the user that the process runs for;
 * where the machine's value "Registry.ImpersonationAware" under software\Velmor is not 0, it is the one for
 * whom the calling thread acts.
 *   language  a number, kept as it is; what it stands for is the product's own matter
 * Result: 0, or the registry's error. */
TVUT22_API INT TVUT22_CALL UtilLanguageSet(UINT language);

/* Returns the language that was kept. Where none was, it is the primary language identifier of the user's
 * interface language of the system (such as 7 for German, 9 for English). */
TVUT22_API UINT TVUT22_CALL UtilLanguageGet(void);

#endif
