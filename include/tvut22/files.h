/* Util: paths taken apart and put together, the system's folders in stored paths, temporary files.
 *
 *     BSTR file = NULL;
 *     if (UtilPathMerge(L"C:\\Unpacked", nameFromArchive, UTIL_PATH_INSIDE, &file) == UTIL_OK)
 *         ...                              // below C:\Unpacked, whatever the archive says
 *     if (UtilTempFileCreate(NULL, L"Report 3/4.pdf", 0, &file) == UTIL_OK)
 *         ...                              // gone at the latest when the process has ended
 *     SysFreeString(file);
 *
 * Results are those of results.h. A text goes to a BSTR*: null where it is not wanted, else it leads to null
 * or to a string of the OLE allocator, which is reallocated. It is the caller's, who frees it with
 * SysFreeString. It stays untouched unless the result is UTIL_OK, and may be what an argument points to. The
 * thread's last-error value stays as it is.
 *
 * Any thread at any time. Expand and Collapse load a system library when they are first needed, and the calls
 * on temporary files may wait: none of them belongs into a DllMain.
 *
 * Separators are "\" and "/"; after "\\?\" only "\". Lengths are in UTF-16 characters, at most 32,767 of a
 * result.
 */
#ifndef TVUT22_FILES_H
#define TVUT22_FILES_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>
#include <tvut22/results.h>

/* ---- Paths ----------------------------------------------------------------------------------- */

/* Cuts a path into four parts that put together are the path again, to the character.
 *
 * path       any text
 * root       receives drive, share or device with the separator that ends it, such as "C:\", "C:", "\",
 *            "\\server\share\"; empty for a relative path. docs/files.md has all forms.
 * folder     receives what stands from the root to the last separator, that one with it
 * name       receives the last component without its extension
 * extension  receives the last component from its last dot on; empty where that is its first character, and
 *            for "." and ".."
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  path is null
 *            UTIL_FAILED        no memory
 */
TVUT22_API INT TVUT22_CALL UtilPathSplit(const wchar_t* path, BSTR* root, BSTR* folder, BSTR* name,
                                         BSTR* extension);

/* Flag of UtilPathMerge. */
#define UTIL_PATH_INSIDE 0x1u /* the path is a stranger's: the result must not lie outside the base */

/* Merges two paths: what "path" means for somebody who stands in the folder "base". The file system is not
 * asked. Separators become single "\"; "." goes; ".." takes the component before it along, and stays in front
 * of a relative result; a separator at the end stays. After "\\?\" nothing is normalised.
 *
 * base       a folder; null or empty: path stands alone
 * path       null or empty: the base. Absolute: stands alone. "\x": from the root of the base. "C:x": below a
 *            base on the same drive. Anything else: below the base.
 * flags      0, or UTIL_PATH_INSIDE for paths from archives, mails, downloads: the base must be absolute, and
 *            path relative; each of its components must be a bare file name: no "..", no device's name, none
 *            of < > : " | ? *, no control character, no blank or dot at its end
 * result     receives the path
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  both are null or empty; an unknown flag; another drive than the base's; with
 *                               UTIL_PATH_INSIDE a base that is not absolute or names no folder
 *            UTIL_UNSAFE        UTIL_PATH_INSIDE refuses the path
 *            UTIL_TOO_LARGE     the result would be too long
 *            UTIL_FAILED        no memory
 */
TVUT22_API INT TVUT22_CALL UtilPathMerge(const wchar_t* base, const wchar_t* path, UINT flags, BSTR* result);

/* Makes a file's name of any text, such as a report's title. It has at most 200 characters, is a bare file
 * name as UTIL_PATH_INSIDE asks for, and is the same when made again. Runs of characters that no name can
 * hold become "_" and white space single blanks; blanks around it and dots at its end go; a device's name
 * gets "_" after it; a longer name keeps its extension of up to 16 characters.
 *
 * text       any text; of an empty one "_" is made
 * name       receives the name
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  text is null
 *            UTIL_FAILED        no memory
 */
TVUT22_API INT TVUT22_CALL UtilPathMakeName(const wchar_t* text, BSTR* name);

/* ---- Folders of the system ------------------------------------------------------------------- */

/* Expands a path that begins with a token for one of the system's folders. "<Documents>\letter.txt" is such a
 * path; docs/files.md lists the sixteen tokens. They compare without regard to case. Folders are those of the
 * user for whom the thread acts, as they are at the call; none is made.
 *
 * path       a path; one that does not begin with "<" is the result as it is
 * result     receives the path
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  path is null
 *            UTIL_NOT_FOUND     "<" begins no token with a separator or the end after it; the system does
 *                               not name that folder
 *            UTIL_TOO_LARGE     the result would be too long
 *            UTIL_FAILED        no memory
 */
TVUT22_API INT TVUT22_CALL UtilPathExpand(const wchar_t* path, BSTR* result);

/* Collapses a path: the longest of the system's folders that it begins with becomes its token. So it can be
 * stored and holds for another user or on another machine; expanded it names the same file. Letters compare
 * without regard to case.
 *
 * path       a path; one in none of the folders is the result as it is
 * result     receives the path
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  path is null
 *            UTIL_TOO_LARGE     the result would be too long
 *            UTIL_FAILED        no memory
 */
TVUT22_API INT TVUT22_CALL UtilPathCollapse(const wchar_t* path, BSTR* result);

/* ---- Temporary files ------------------------------------------------------------------------- */

/* Flag of UtilTempFileCreate. */
#define UTIL_TEMP_FOLDER 0x1u /* a folder */

/* Makes an empty file, or a folder, that was not there before, and registers it. What is registered is
 * removed, newest first, when the library is unloaded or the process ends in an orderly way. In the process's
 * own temporary folder, what is still open then, or left by a process that was killed, goes when a later
 * process first makes or adds a temporary file.
 *
 * folder     where; it must be there. Null or empty: the process's own temporary folder, into which only its
 *            user may look, below the one that the system names.
 * name       a wish, of which a file's name is made as UtilPathMakeName does it; null or empty: "tmp". Where
 *            it is taken, " (2)" to " (9999)" stands before its extension.
 * flags      0 or UTIL_TEMP_FOLDER
 * path       receives the full path; not null
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  path is null; an unknown flag; no folder can have the name of folder
 *            UTIL_NO_ACCESS     the folder may not be written to
 *            UTIL_NOT_FOUND     there is no such folder
 *            UTIL_TOO_LARGE     10,000 are registered; the path would be too long
 *            UTIL_FAILED        the system failed, as with a full disk; all names are taken; no memory
 *          A diagnostic line reports the system's reason.
 */
TVUT22_API INT TVUT22_CALL UtilTempFileCreate(const wchar_t* folder, const wchar_t* name, UINT flags,
                                              BSTR* path);

/* Registers a file that is there, or a folder with all that will be in it, to be removed like those made by
 * UtilTempFileCreate. To register it twice is to register it once. Outside of the process's own temporary
 * folder nothing of it is remembered when the process is killed.
 *
 * path       absolute, or relative to the folder that is current now
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  path is null or empty, the root of a drive or share, a device, or a name that
 *                               none can have
 *            UTIL_NO_ACCESS     it may not be looked at
 *            UTIL_NOT_FOUND     it is not there
 *            UTIL_TOO_LARGE     10,000 are registered
 *            UTIL_FAILED        the system failed; no memory
 */
TVUT22_API INT TVUT22_CALL UtilTempFileAdd(const wchar_t* path);

/* Releases a registered file or folder, to stay or to be removed now.
 *
 * path       of the file: absolute or relative, with either separator, in letters of either case, with "\\?\"
 *            or without; its short name is another one
 * keep       not 0: it stays and is the caller's. 0: it is removed, read-only or not, and a folder with all
 *            that is in it; links in there are removed themselves, what they lead to stays. While somebody
 *            has it open and does not share its deletion, removing is tried for 2 seconds.
 *
 * Result     UTIL_OK            also when it is gone already
 *            UTIL_BAD_ARGUMENT  as of UtilTempFileAdd
 *            UTIL_NO_ACCESS     it, or something in it, is still in use or may not be removed; it stays
 *                               registered, and a diagnostic line reports the system's reason
 *            UTIL_NOT_FOUND     it is not registered
 *            UTIL_FAILED        the system failed; it stays registered; no memory
 */
TVUT22_API INT TVUT22_CALL UtilTempFileRelease(const wchar_t* path, BOOL keep);

#endif
