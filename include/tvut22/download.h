/* Util: files from the web, there whole or not at all.
 *
 *     UtilDownloadOptions options = {sizeof options};
 *     options.flags = UTIL_DOWNLOAD_HTTPS_ONLY;
 *     options.sha256 = L"2cf24dba5fb0a30e26e83b2ac5b9e29e1b161e5c1fa7425e73043362938b9824";
 *     if (UtilDownloadFile(L"https://example.com/words.txt", L"C:\\Data\\words.txt", &options) != UTIL_OK)
 *         ...                                             // C:\Data\words.txt is as it was
 *
 * The system's own client fetches them, with the proxy, the certificates and the credentials that the user
 * has there. An error page, half a file and a redirection without end are failures. Each failed call writes
 * one diagnostic line with the reason. docs/download.md tells what happens in which order.
 *
 * Results are those of results.h.
 */
#ifndef TVUT22_DOWNLOAD_H
#define TVUT22_DOWNLOAD_H

#include <tvut22/calling.h>
#include <tvut22/results.h>

/* The address and every redirection must be https. */
#define UTIL_DOWNLOAD_HTTPS_ONLY 0x1

/* Called on the thread that called UtilDownloadFile: once before anything is asked, when bytes have come and
 * at least every 100 ms, also while nothing comes, and once with done = total when the answer is complete and
 * before the file is put in place.
 *
 * done       bytes so far; never fewer than before
 * total      bytes in all, 0 while not known
 * user       what the options have there
 *
 * Result     0 ends the transfer within 200 ms; not called again then
 */
typedef BOOL(TVUT22_CALL* UtilDownloadCallback)(ULONGLONG done, ULONGLONG total, UINT_PTR user);

typedef struct UtilDownloadOptions {
    UINT size;                     /* 40, or more in programs of later versions */
    UINT flags;                    /* UTIL_DOWNLOAD_... */
    const wchar_t* sha256;         /* 64 hexadecimal digits that the contents must have; null or empty: any */
    UtilDownloadCallback callback; /* may be null */
    UINT_PTR user;                 /* handed to the callback */
    UINT patience;                 /* milliseconds without a byte or answer that end it; 0: 30,000 */
    ULONGLONG limit;               /* bytes at most; 0: 4 GiB */
    UINT status;                   /* set by the call: the HTTP status of the last answer, 0: none came */
    UINT reserved;                 /* 0 */
} UtilDownloadOptions;

/* Fetches a file and puts it in place, in one step, when all of it is there and right. Whatever else happens,
 * the file is as it was before, and nothing lies beside it.
 *
 * url        http:// or https:// with a host, at most 2,083 characters; no user name or password, no blank
 *            and no control character. A fragment (#...) is not sent.
 * file       the file to make or replace; made and put in place with the rights of the calling thread
 * options    null: none
 *
 * Any thread, with or without COM, any number at once; of two onto one file each is whole, and the last one
 * stays. Not from a DllMain, where it returns UTIL_FAILED. The calling thread waits, and handles no messages
 * meanwhile: a window's thread leaves this to a job of a thread pool, or handles them in its callback.
 *
 * Result     UTIL_OK             file holds all of it
 *            UTIL_BAD_ARGUMENT   no such address, an impossible file name, wrong options; nothing was asked
 *            UTIL_NO_ACCESS      file cannot be made or replaced
 *            UTIL_FAILED         server not found or not reached, connection broken, not as many bytes as
 *                                announced, disk or memory full
 *            UTIL_TOO_LARGE      more bytes than the limit
 *            UTIL_CANCELLED      the callback returned 0
 *            UTIL_UNSAFE         certificate refused; redirected from https to http or to another scheme;
 *                                http where only https is allowed
 *            UTIL_TIMEOUT        the patience is over
 *            UTIL_SERVER_REFUSED a status other than 200 to 299, or more than 10 redirections
 *            UTIL_MISMATCH       the contents have another checksum
 */
TVUT22_API INT TVUT22_CALL UtilDownloadFile(const wchar_t* url, const wchar_t* file,
                                            UtilDownloadOptions* options);

#endif
