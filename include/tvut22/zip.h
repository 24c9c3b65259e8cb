/* Util: ZIP archives, made so that every program opens them, and taken apart although nobody vouches for
 * them.
 *
 *     UtilZip zip = UtilZIPCreate(L"report.zip", NULL);
 *     UtilZIPAppend(zip, L"C:\\Data\\Report 3", NULL); // a folder with all below it
 *     if (UtilZIPClose(zip, TRUE) == UTIL_OK)
 *         ...                                         // report.zip is the new archive; else it is as it was
 *     if (UtilExtractZip(L"received.zip", L"C:\\Unpacked", NULL) == UTIL_OK)
 *         ...                                         // nothing of it lies outside C:\Unpacked
 *
 * The format is PKWARE's (APPNOTE.TXT 6.3) with Zip64, names in UTF-8, and the AES encryption of WinZip
 * (AE-1, AE-2). docs/zip.md tells what is read and written in detail.
 *
 * Results are those of results.h; what failed and why goes to the diagnostic output in one line each. The
 * thread's last-error value stays as it is, except where a call says otherwise. Paths may be longer than
 * MAX_PATH. Texts end with a NUL and stay the caller's.
 *
 * One thread at a time uses an archive's handle; different handles and UtilExtractZip any threads. Ciphers
 * load a system library when they are first needed: no call belongs into a DllMain.
 */
#ifndef TVUT22_ZIP_H
#define TVUT22_ZIP_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>
#include <tvut22/results.h>

/* An archive that is being made; 0 is none. */
typedef struct UtilZipObject* UtilZip;

/* ---- Choosing and watching ------------------------------------------------------------------- */

/* Flags of an entry. */
#define UTIL_ZIP_IS_FOLDER 0x1u
#define UTIL_ZIP_IS_ENCRYPTED 0x2u
#define UTIL_ZIP_IS_LINK 0x4u      /* a symbolic link of another system, which is never made */
#define UTIL_ZIP_IS_RENAMED 0x8u   /* the target differs from the name: Windows could not have it */
#define UTIL_ZIP_IS_QUESTION 0x10u /* asks whether the entry is wanted; without it this is progress */

/* An entry as a callback is shown it; all of it holds until the callback returns. 56 bytes. */
typedef struct UtilZipEntry {
    UINT size;             /* of the structure; later versions may have more */
    UINT flags;            /* UTIL_ZIP_IS_... */
    const wchar_t* name;   /* in the archive, "/" between components; a folder's ends with "/" */
    const wchar_t* target; /* unpacking into a folder: the full path that will be written; else null */
    ULONGLONG bytes;       /* unpacked; of a stream that is added 0 until all of it is */
    ULONGLONG packed;      /* in the archive; while it is added, what has been written of it so far */
    ULONGLONG done;        /* bytes of this entry that are handled */
    FILETIME modified;     /* UTC; 0 when it is not known */
    UINT index;            /* of the entry, from 0, as the archive lists them */
    UINT count;            /* of entries in the archive; 0 while entries are added */
} UtilZipEntry;

/* Answers of a callback; any other cancels. */
#define UTIL_ZIP_GO 0
#define UTIL_ZIP_SKIP 1 /* not this one: to a question only, else it counts as UTIL_ZIP_GO */

/* Called on the thread of the call that it belongs to, with no lock held.
 *
 * entry      what it is about
 * user       from UtilZipOptions
 *
 * Result     UTIL_ZIP_GO, UTIL_ZIP_SKIP, anything else to cancel
 */
typedef INT(TVUT22_CALL* UtilZipCallback)(const UtilZipEntry* entry, UINT_PTR user);

/* Flags of options. */
#define UTIL_ZIP_STORE 0x1u          /* UtilZIPCreate: nothing is compressed */
#define UTIL_ZIP_KEEP_EXISTING 0x10u /* UtilExtractZip: a file that is there stays, its entry is skipped */

/* 32 bytes. All that is 0 means: as usual. */
typedef struct UtilZipOptions {
    UINT size;                /* of the structure: 32, or more when a later one is given */
    UINT flags;               /* UTIL_ZIP_..., of the call that they are given to */
    const wchar_t* password;  /* null or empty: none */
    UtilZipCallback callback; /* null: all entries are wanted */
    UINT_PTR user;            /* handed to the callback */
    UINT reserved;            /* 0 */
    ULONGLONG limit;          /* UtilExtractZip: bytes that may be unpacked in all; 0: 4 GiB */
} UtilZipOptions;

/* ---- Making ---------------------------------------------------------------------------------- */

/* Begins an archive. It is written to a temporary file beside the wanted one, which is not touched until
 * UtilZIPClose. With a password, every entry that is no folder is enciphered by AES-256.
 *
 * file       where the archive will be
 * options    null: compressed, without password and callback. The callback is asked before each entry, and
 *            called after each 1 MiB of it and at its end.
 *
 * Result     the archive, to be closed with UtilZIPClose; 0 when it cannot be begun, and the last-error value
 *            says why: ERROR_INVALID_PARAMETER for a bad argument, ERROR_INVALID_NAME for a name that no file
 *            can have, ERROR_ACCESS_DENIED for a file that is read-only or a folder, or the system's reason.
 *            At most 1,024 are open at a time.
 */
TVUT22_API UtilZip TVUT22_CALL UtilZIPCreate(const wchar_t* file, const UtilZipOptions* options);

/* Adds a file, or a folder with all below it, hidden files and empty folders too. Links below it are passed
 * over, and so is the archive itself. An entry that fails takes all of the call back: the archive is as it
 * was, and goes on.
 *
 * zip        the archive
 * source     the file or folder; waited for up to 10 s while others keep it from being shared
 * name       its name in the archive, "/" or "\" between components, each of which must be a bare file name
 *            as for UTIL_PATH_INSIDE; null: the last component of source
 *
 * Result     UTIL_OK            also when the callback did not want it: nothing is added then
 *            UTIL_BAD_ARGUMENT  no such archive, source is null or empty, a name that no file could have
 *            UTIL_EXISTS        the archive has the name, without regard to case, or a file in its way
 *            UTIL_NOT_FOUND     there is no such source
 *            UTIL_NO_ACCESS     a file or folder may not be read
 *            UTIL_TOO_LARGE     more than 1,000,000 entries, or 64 MiB of directory; a name of more than
 *                               32,700 characters; a file that grew past 4 GiB meanwhile
 *            UTIL_CANCELLED     the callback said so
 *            UTIL_FAILED        reading failed, no memory; or the archive cannot be written: every later call
 *                               fails then
 */
TVUT22_API INT TVUT22_CALL UtilZIPAppend(UtilZip zip, const wchar_t* source, const wchar_t* name);

/* Adds files and folders under their own names. Where a name is taken, " (2)", " (3)" and so on stands before
 * its extension. Each source is added or not as UtilZIPAppend has it, and the others are not affected.
 *
 * zip        the archive
 * sources    files and folders. One with * or ? in its last component stands for the files that match, in the
 *            order of their names.
 * count      how many
 * folder     where in the archive they go; null or empty: at its top
 *
 * Result     UTIL_OK, or the code of the first source that failed, as of UtilZIPAppend. UTIL_CANCELLED ends
 *            the call at once.
 */
TVUT22_API INT TVUT22_CALL UtilZIPAppendList(UtilZip zip, const wchar_t* const* sources, UINT count,
                                             const wchar_t* folder);

/* Adds what a stream holds, from its beginning, or from where it stands if it cannot seek, to its end.
 *
 * zip        the archive
 * stream     any implementation
 * name       the entry's name as of UtilZIPAppend, not null
 * modified   its time, UTC; null: now
 *
 * Result     as of UtilZIPAppend
 */
TVUT22_API INT TVUT22_CALL UtilZIPAppendStream(UtilZip zip, IStream* stream, const wchar_t* name,
                                               const FILETIME* modified);

/* Ends an archive. Its handle is invalid afterwards, whatever the result.
 *
 * zip        the archive; 0: nothing happens
 * keep       not 0: the archive is completed, flushed to the disk, and put in the place of its file in one
 *            step. 0: it is given up.
 *
 * Whenever the archive does not come into place, the file is as it was. A process that is killed leaves at
 * most one file "~PRF........tmp" beside it.
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  no such archive
 *            UTIL_NO_ACCESS     the file cannot be replaced; tried for 10 s while others have it open
 *            UTIL_FAILED        it cannot be written, now or before; or a callback called this
 */
TVUT22_API INT TVUT22_CALL UtilZIPClose(UtilZip zip, BOOL keep);

/* ---- Taking apart ---------------------------------------------------------------------------- */

/* Lists, tests or unpacks an archive. In this order: the directory is read and checked, the callback is asked
 * for each entry, the sizes of those wanted are held against the limit and the free space; nothing is written
 * before. Then each wanted entry is unpacked, the callback called after each 1 MiB of it and at its end.
 *
 * A file appears with its whole contents, checked, its times, and its attributes read-only and hidden, or not
 * at all; one that is there is replaced. An entry that fails writes nothing and does not keep the others from
 * being unpacked. No folder below the target is entered that is a link.
 *
 * file       the archive; waited for up to 10 s while others keep it from being shared
 * folder     where to unpack, made when it is missing; null: nothing is written, each wanted entry is tested.
 *            A callback that answers UTIL_ZIP_SKIP to each question gets a listing.
 * options    null: all entries, at most 4 GiB, no password
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT   file is null or empty, or the options are wrong
 *            UTIL_NOT_FOUND      there is no such file
 *            UTIL_NO_ACCESS      it may not be read, the folder may not be made
 *            UTIL_DAMAGED        no ZIP archive, or a damaged one: nothing is written
 *            UTIL_UNSAFE         a name leads out of the folder: nothing is written
 *            UTIL_TOO_LARGE      the limit, the free space, 1,000,000 entries, 64 MiB of directory, or 32,700
 *                                characters of a path are not enough: nothing is written
 *            UTIL_NOT_SUPPORTED  an archive on several disks: nothing is written
 *            UTIL_CANCELLED      the callback said so; files that are complete stay
 *            UTIL_FAILED         reading or writing failed, no memory; files that are complete stay
 *            or the reason of the first entry that failed:
 *            UTIL_DAMAGED        its header, data, length, CRC or authentication code
 *            UTIL_NOT_SUPPORTED  another method than stored and deflated, unknown encryption, a symbolic link
 *            UTIL_BAD_PASSWORD   the password is missing or wrong
 *            UTIL_UNSAFE         a folder on its way is a link
 *            UTIL_NO_ACCESS      its file or folder cannot be made or replaced
 */
TVUT22_API INT TVUT22_CALL UtilExtractZip(const wchar_t* file, const wchar_t* folder,
                                          const UtilZipOptions* options);

#endif
