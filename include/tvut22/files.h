/* Util: paths taken apart and put together, the system's folders in stored paths, temporary files.
 *
 *     BSTR file = nullptr;
 *     if (UtilPathMerge(L"C:\\Unpacked", nameFromArchive, UTIL_PATH_INSIDE, &file) == UTIL_OK)
 *         ...                                       // below C:\Unpacked, whatever the archive says
 *     if (UtilTempFileCreate(NULL, L"Report 3/4.pdf", 0, &file) == UTIL_OK)
 *         ...                                       // gone at the latest when the process has ended
 *     SysFreeString(file);
 *
 * Results are those of results.h. A text goes to a BSTR*: null where it is not wanted, else it leads to null
 * or to a string of the OLE allocator, which is reallocated; it is the caller's, who frees it with
 * SysFreeString. It is untouched unless the result is UTIL_OK, and may be what an argument points to. The
 * thread's last-error value stays as it is. Any thread at any time; Expand and Collapse load shell32 when
 * they are first needed, so they are no calls for a DllMain, and neither is what makes or removes temporary
 * files.
 *
 * Separators are "\" and "/"; after "\\?\" only "\". Lengths are UTF-16 characters, at most 32,767 of a
 * result.
 */
#ifndef TVUT22_FILES_H
#define TVUT22_FILES_H

#include <tvut22/calling.h>
#include <tvut22/results.h>

#include <oleauto.h>

/* ---- Paths ----------------------------------------------------------------------------------- */

/* Cuts a path into four parts that put together are the path again, to the character.
 *
 * path       any text
 * root       receives drive, share or device with the separator that ends it, such as "C:\",
 * "\\server\share\", "C:", "\", "\\?\UNC\server\share\"; empty for a relative path. docs/files.md has all
 * forms. folder     receives what stands from the root to the last separator, that one with it name receives
 * the last component without its extension extension  receives the last component from its last dot on; empty
 * where that is its first character, and for
 *            "." and ".."
 *
 * Result     UTIL_OK; UTIL_BAD_ARGUMENT when path is null; UTIL_FAILED without memory
 */
TVUT22_API INT TVUT22_CALL UtilPathSplit(const wchar_t* path, BSTR* root, BSTR* folder, BSTR* name,
                                         BSTR* extension);

/* Merges two paths: the one that is meant by "path" for somebody who stands in the folder "base". The file
 * system is not asked. Separators become single "\"; "." goes, ".." takes the component before it along; a
 * separator at the end stays. A result that begins with "\\?\" is put together only.
 *
 * base       a folder; null or empty: path stands alone
 * path       null or empty: the base. Absolute: stands alone. "\x": from the base's root. "C:x": below a base
 * on the same drive. Else below the base. flags      0, or UTIL_PATH_INSIDE for paths from archives, mails,
 * downloads: the result is the base, which must be absolute, or lies below it, and each component that comes
 * from path is a bare file name: no "..", device name, < > : " | ? * or control character, and no blank or
 * dot at its end result     receives the path
 *
 * Result     UTIL_OK; UTIL_BAD_ARGUMENT when both are null or empty, for an unknown flag, for another drive
 * than the base's, with UTIL_PATH_INSIDE for a base that is not absolute or names no folder; UTIL_UNSAFE for
 * a path that UTIL_PATH_INSIDE refuses; UTIL_TOO_LARGE; UTIL_FAILED without memory
 */
#define UTIL_PATH_INSIDE 0x1u
TVUT22_API INT TVUT22_CALL UtilPathMerge(const wchar_t* base, const wchar_t* path, UINT flags, BSTR* result);

/* Makes a file's name of any text, such as a report's title: of at most 200 characters, a bare file name as
 * UTIL_PATH_INSIDE asks for, and the same when made again. Runs of characters that no name can hold become
 * "_", white space single blanks; blanks around and dots at the end go; a device's name gets "_" after it; a
 * longer name keeps its extension of up to 16 characters.
 *
 * text       any text; "_" is made of an empty one
 * name       receives the name
 *
 * Result     UTIL_OK; UTIL_BAD_ARGUMENT when text is null; UTIL_FAILED without memory
 */
TVUT22_API INT TVUT22_CALL UtilPathMakeName(const wchar_t* text, BSTR* name);

/* ---- Folders of the system ------------------------------------------------------------------- */

/* Expands a path that begins with a token for one of the system's folders, such as "<Documents>\letter.txt".
 * Tokens compare without regard to case; docs/files.md lists the sixteen. Folders are those of the user for
 * whom the thread acts, as they are at the call; none is made.
 *
 * path       a path. One that does not begin with "<" is the result as it is.
 * result     receives the path
 *
 * Result     UTIL_OK; UTIL_BAD_ARGUMENT when path is null; UTIL_NOT_FOUND when "<" begins no token with the
 * end or a separator after it, or the system does not name that folder; UTIL_TOO_LARGE; UTIL_FAILED without
 * memory
 */
TVUT22_API INT TVUT22_CALL UtilPathExpand(const wchar_t* path, BSTR* result);

/* Collapses a path: replaces the longest of the system's folders that it begins with by its token, so that it
 * can be stored and means the same for another user or on another machine. Letters are compared without
 * regard to case. Expanded again it names the same file.
 *
 * path       a path; one in none of the folders is the result as it is
 * result     receives the path
 *
 * Result     UTIL_OK; UTIL_BAD_ARGUMENT when path is null; UTIL_TOO_LARGE; UTIL_FAILED without memory
 */
TVUT22_API INT TVUT22_CALL UtilPathCollapse(const wchar_t* path, BSTR* result);

/* ---- Temporary files ------------------------------------------------------------------------- */

/* Makes an empty file, or a folder, that nobody else has made, and registers it: what is registered is
 * removed, newest first, when the library is unloaded or the process ends in an orderly way. What is still
 * open then, and what a process leaves that is killed, goes when a later process first makes or adds one, if
 * it is in the process's own temporary folder.
 *
 * folder     where; it must be there. Null or empty: the process's own temporary folder, which only its user
 * may look into, below the one that the system names. name       the name wished for, of which
 * UtilPathMakeName makes a file's name; null or empty: "tmp". Where it is taken, " (2)" to " (9999)" stands
 * before its extension. flags      0, or UTIL_TEMP_FOLDER for a folder path       receives the full path; not
 * null
 *
 * Result     UTIL_OK; UTIL_BAD_ARGUMENT when path is null or for an unknown flag; UTIL_NOT_FOUND when there
 * is no such folder; UTIL_NO_ACCESS; UTIL_TOO_LARGE when 10,000 are registered or the path gets too long;
 * UTIL_FAILED when the disk is full, all names are taken, without memory, or for another reason of the
 * system's, which a diagnostic line tells
 */
#define UTIL_TEMP_FOLDER 0x1u
TVUT22_API INT TVUT22_CALL UtilTempFileCreate(const wchar_t* folder, const wchar_t* name, UINT flags,
                                              BSTR* path);

/* Registers a file that is there, or a folder with all that will be in it, to be removed as those above.
 * Registering twice is registering once. Outside of the process's own temporary folder it is not remembered
 * when the process is killed.
 *
 * path       absolute, or relative to the current folder of now
 *
 * Result     UTIL_OK; UTIL_BAD_ARGUMENT when path is null or empty, the root of a drive or share, or a
 * device; UTIL_NOT_FOUND when it is not there; UTIL_NO_ACCESS; UTIL_TOO_LARGE when 10,000 are registered;
 *            UTIL_FAILED without memory
 */
TVUT22_API INT TVUT22_CALL UtilTempFileAdd(const wchar_t* path);

/* Releases a registered file or folder.
 *
 * path       as it was registered, or another way to write it; letters without regard to case
 * keep       not 0: it stays, and is the caller's. 0: it is removed now, a folder with all that is in it,
 * read-only or not; links in it go themselves, not what they lead to. While somebody has it open without
 * sharing its deletion, this is tried for 2 seconds.
 *
 * Result     UTIL_OK, also when it is gone already; UTIL_BAD_ARGUMENT as above; UTIL_NOT_FOUND when it is not
 *            registered; UTIL_NO_ACCESS when it, or something in it, could not be removed: it stays
 * registered then, and a diagnostic line tells why; UTIL_FAILED for another reason of the system's
 */
TVUT22_API INT TVUT22_CALL UtilTempFileRelease(const wchar_t* path, BOOL keep);

#endif
