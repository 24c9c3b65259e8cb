/* Util: who the user is, what he may do with a file, acting for another one, and paths on other computers.
 *
 *     UtilImpersonation guest = UtilImpersonateUser(L"OFFICE\\printer", password, 0);
 *     if (guest) {
 *         if (UtilCheckAccess(file, UTIL_ACCESS_READ) == UTIL_YES)
 *             Print(file);                                // as OFFICE\printer
 *         UtilImpersonateEnd(guest);                      // the thread is who it was
 *     }
 *
 * An account is "DOMAIN\name", "name@domain", "name", ".\name" for one of this computer, or the text of a
 * SID, "S-1-5-32-544", of at most 512 characters. Where an account may be null it is the user that the
 * calling thread acts for: that of its impersonation, else that of the process. Names of groups differ with
 * the language of Windows; the texts of SIDs do not.
 *
 * Results are those of results.h, and leave the thread's last-error value alone unless a call says
 * otherwise. Texts are handed over as files.h says: a BSTR* is null when the text is not wanted, else leads
 * to null or a string of the OLE allocator, which the text replaces; it is untouched unless the result is
 * UTIL_OK. Any thread may call anything. Calls that look names up may ask a domain controller and wait for
 * it; none of them belongs into a DllMain. docs/security.md tells more.
 */
#ifndef TVUT22_SECURITY_H
#define TVUT22_SECURITY_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>
#include <tvut22/results.h>

/* ---- Impersonation ------------------------------------------------------------------------------- */

/* A thread's acting for another user: an opaque value of 32 bits, 0 for none. */
typedef struct UtilImpersonationObject* UtilImpersonation;

/* Flag of UtilImpersonateUser: calls on this computer stay those of the caller, and only connections to
 * others are made as the account, also one of a domain that this computer does not know. The account is not
 * checked before such a connection is made. */
#define UTIL_LOGON_NETWORK 0x1u

/* Logs a user on and lets the calling thread act for him. A thread's impersonations form a stack: the new one
 * stands on top of any that the thread has, of this library or not. Threads that it starts act for the
 * process.
 *
 * account    not null
 * password   null: an empty one. It goes to the system as it stands: no copy is made, and no diagnostic line
 *            has it. The caller wipes his own.
 * flags      0 for an interactive logon, or UTIL_LOGON_NETWORK
 *
 * Result     the impersonation, to be ended with UtilImpersonateEnd on the same thread; 0 when there is none,
 *            the thread is as it was then, and the last-error value tells why: ERROR_INVALID_PARAMETER for a
 *            null or empty account and an unknown flag, ERROR_INVALID_NAME for a malformed one,
 *            ERROR_LOGON_FAILURE, ERROR_TOO_MANY_OPEN_FILES when there are 4,096, or the system's reason. A
 *            line says so: ERR: UtilImpersonateUser('account'): error.
 */
TVUT22_API UtilImpersonation TVUT22_CALL UtilImpersonateUser(const wchar_t* account, const wchar_t* password,
                                                             UINT flags);

/* Lets the calling thread act by a copy of a token.
 *
 * token      a primary token or one for impersonation, open for TOKEN_QUERY and TOKEN_DUPLICATE; it stays the
 *            caller's. null: the process's own, for acting as oneself in between.
 *
 * Result     as of UtilImpersonateUser, without a line. ERROR_BAD_IMPERSONATION_LEVEL for a token that can
 *            only identify its user, and where the system lets the thread have no more than that, as it does
 *            with other users' tokens in a process that may not impersonate.
 */
TVUT22_API UtilImpersonation TVUT22_CALL UtilImpersonateToken(HANDLE token);

/* Ends the newest impersonation of the calling thread: the thread has the token that it had before, or none.
 * When the system refuses that, the process ends with exit code 0xC0000061 after a line, rather than go on as
 * somebody else. A thread that ends takes its impersonations along.
 *
 * impersonation  0: nothing happens
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  not the newest one of this thread, or none at all; nothing has happened
 */
TVUT22_API INT TVUT22_CALL UtilImpersonateEnd(UtilImpersonation impersonation);

/* ---- Users --------------------------------------------------------------------------------------- */

/* Returns the SID of an account, "S-1-5-21-...". The text of a SID is checked and returned in canonical form,
 * and nobody is asked for it.
 *
 * account    may be null
 *
 * Result     UTIL_OK
 *            UTIL_NOT_FOUND     nobody is called so
 *            UTIL_BAD_ARGUMENT  a malformed text
 *            UTIL_NO_ACCESS, UTIL_FAILED
 */
TVUT22_API INT TVUT22_CALL UtilSidFromAccount(const wchar_t* account, BSTR* sid);

/* Returns the account that a SID belongs to: "DOMAIN\name", or "name" for one without domain.
 *
 * sid        such as L"S-1-5-32-544"; not null
 *
 * Result     UTIL_OK
 *            UTIL_NOT_FOUND     it has no name
 *            UTIL_BAD_ARGUMENT  not the text of a SID
 *            UTIL_NO_ACCESS, UTIL_FAILED
 */
TVUT22_API INT TVUT22_CALL UtilAccountFromSid(const wchar_t* sid, BSTR* account);

/* Tells whether the user that the calling thread acts for belongs to a group with effect: the group is
 * enabled, and not only there to deny.
 *
 * group      an account; null: the administrators. Their rights are without effect in a process that is not
 *            elevated.
 *
 * Result     UTIL_YES, UTIL_NO, or an error as of UtilSidFromAccount
 */
TVUT22_API INT TVUT22_CALL UtilIsMember(const wchar_t* group);

/* ---- Access rights ------------------------------------------------------------------------------- */

#define UTIL_ACCESS_READ 0x1u           /* contents, attributes, the list of a folder */
#define UTIL_ACCESS_WRITE 0x2u          /* contents; in folders new files and folders */
#define UTIL_ACCESS_EXECUTE 0x4u        /* run a program, pass through a folder */
#define UTIL_ACCESS_DELETE 0x8u         /* remove the file or folder itself */
#define UTIL_ACCESS_CHANGE_RIGHTS 0x10u /* the list of rights, and the owner */

/* Tells whether the user that the calling thread acts for has all of some rights to a file or folder, by what
 * the system keeps with it. Nothing is opened for writing, and nothing is made. Links are followed.
 *
 * path       a file or folder. One that is not there is UTIL_NOT_FOUND, except for UTIL_ACCESS_WRITE alone:
 *            then the answer is whether a new file may be made in its folder or, where that is missing too,
 *            a new folder in the nearest one above. Below a file nothing can be: UTIL_NOT_FOUND.
 * rights     one or more of the above. Deleting is also had by the right to remove what is in the folder
 *            around; writing never to a file with the read-only attribute.
 *
 * Not seen are the rights of a network share beside those of its folder, locks, and privileges such as that
 * for backups. A yes is no promise: others may change the rights at any time.
 *
 * Result     UTIL_YES, UTIL_NO
 *            UTIL_NOT_FOUND     see above
 *            UTIL_NO_ACCESS     its rights may not be read
 *            UTIL_BAD_ARGUMENT  a null or malformed path, no right, an unknown one
 *            UTIL_FAILED
 */
TVUT22_API INT TVUT22_CALL UtilCheckAccess(const wchar_t* path, UINT rights);

/* Gives an account exactly these rights to a file, or to a folder with all below that inherits from it. What
 * was said of the account there before, allowed or denied, is replaced. Entries of others, inherited ones,
 * the owner, and whether the list is protected stay as they are.
 *
 * path       a file or folder; a link is refused
 * account    may be null
 * rights     any of the above; 0 only removes the account's entries
 *
 * Result     UTIL_OK            also where no list is kept with the file, and everyone may do everything
 *            UTIL_NOT_FOUND     no such file, folder or account; nothing is changed here and below
 *            UTIL_NO_ACCESS     the rights may not be read or changed
 *            UTIL_NOT_SUPPORTED the volume keeps no rights
 *            UTIL_BAD_ARGUMENT  a null or malformed text, an unknown right, a link
 *            UTIL_FAILED        the list would be longer than 64 KB, no memory, or the system failed
 *            A diagnostic line reports each of the system's errors: ERR: UtilGrantAccess('path','account'):
 *            error.
 */
TVUT22_API INT TVUT22_CALL UtilGrantAccess(const wchar_t* path, const wchar_t* account, UINT rights);

/* ---- Network paths ------------------------------------------------------------------------------- */

/* Returns the path by which another computer reaches the same: "X:\a" as "\\server\share\a" where X leads to
 * "\\server\share", whether or not the connection is up. Drives that subst made are followed, at most 8 deep.
 * The path of a share is returned as it is, "\\?\UNC\server\share" as "\\server\share". Paths are looked at
 * as text; no server is asked and waited for.
 *
 * path       not null
 *
 * Result     UTIL_OK
 *            UTIL_NOT_FOUND     a drive of this computer alone, a path without drive, or one after "\\?\"
 *                               with names that can be said in no other way
 *            UTIL_BAD_ARGUMENT  null, empty, no server or share after "\\", or beyond 32,767 characters
 *            UTIL_FAILED        the system failed, no memory
 */
TVUT22_API INT TVUT22_CALL UtilPathToNetwork(const wchar_t* path, BSTR* network);

/* Returns the path of the same on this computer: by the drive that leads to it or nearest above it, else by
 * the folder that this computer shares, where it is this computer's share. A path that is local already is
 * returned as it is. No other computer is asked.
 *
 * network    not null
 *
 * Result     UTIL_OK
 *            UTIL_NOT_FOUND     no drive leads there
 *            UTIL_BAD_ARGUMENT  as of UtilPathToNetwork
 *            UTIL_FAILED
 */
TVUT22_API INT TVUT22_CALL UtilPathToLocal(const wchar_t* network, BSTR* path);

#endif
