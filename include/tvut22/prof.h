/* Prof: the profile store.
 *
 * A profile is a tree of named lists that hold named items; every item is text, and the typed calls
 * format and parse that text. A profile is opened as a job, read and changed through the job's
 * handle, and saved where the caller wants it.
 *
 *     ProfJob job = ProfJobOpenW(L"C:\\Data\\report.prf");
 *     INT copies = 1; // what it stays if the item's text is no number
 *     ProfGetIntW(job, 0, L"Print/Copies", &copies, 1);
 *     ProfSetIntW(job, 0, L"Print/Copies", copies + 1);
 *     ProfSaveW(job, NULL, PROF_FORM_TEXT);
 *     ProfJobClose(job);
 *
 * Rules that hold for every call below and are not repeated there:
 *
 * Jobs      Handle 0 is the invalid job: a call given it does nothing and returns 0, unless another
 *           value is stated. Any other value must come from an open call and not be closed yet.
 * Lists     Handle 0 is the job's root list. A handle stays valid until its list, a list above it,
 *           or the job is deleted or emptied. Any other value, such as a list of another job or one that
 *           has been deleted, is refused like a path that leads nowhere, unless a new list has taken the
 *           place. What it points to is not looked at.
 * Paths     Segments separated by "/". A leading "/" starts at the root list whatever is passed for
 *           the list. Names compare exactly: by code unit, case-sensitive. There is no escaping, so
 *           a name that holds "/" cannot be reached by a path; an empty segment is the empty name.
 *           A segment followed by another counts with its first 255 characters only.
 * Order     A list keeps its entries in the order they came in. Names need not be unique: a call
 *           that reads or sets takes the first match. Items and lists are looked up apart.
 * Null      A null path reaches nothing: nothing is done and 0 (Get: PROF_NOT_FOUND, with the
 *           default stored) is returned, unless stated otherwise. Null output pointers are allowed
 *           and receive nothing.
 * Text      Terminated by NUL; an A form's text is in the code page of PROF_OPTION_CODE_PAGE. What that
 *           code page lacks comes out of the A forms as its default character, mostly "?", or as a
 *           similar one; the profile keeps the text as it is.
 * Ownership The library copies every text it is given and never keeps a caller's pointer.
 * Threads   A job and its lists are used by one thread at a time; different jobs by any threads at
 *           once. ProfJobAddRef and ProfJobClose may be called from any thread.
 * Callbacks A callback, and a stream that a call is given, returns from each of its calls. One that leaves
 *           by longjmp or an exception leaves the library's call unfinished: the job stays usable, but is
 *           never freed.
 * Reasons   When a call that opens, saves, or works with a file, a stream or the clipboard fails, the
 *           thread's last error (GetLastError) is the system's reason. What the library finds itself is
 *           ERROR_INVALID_NAME (no file can have this name), ERROR_INVALID_DATA (contents that cannot be
 *           parsed or decoded), ERROR_FILE_TOO_LARGE, ERROR_NOT_ENOUGH_MEMORY, ERROR_INVALID_PARAMETER (a
 *           null argument, no list), ERROR_NOT_FOUND (no profile on the clipboard). A stream's HRESULT is
 *           translated, or ERROR_READ_FAULT or ERROR_WRITE_FAULT.
 * Memory    When memory runs out a call returns its failure value (Append and Set report nothing) and
 *           leaves the profile as it was, apart from lists that its path has created by then.
 */
#ifndef TVUT22_PROF_H
#define TVUT22_PROF_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>

/* One open profile. Reference-counted; 0 is invalid. */
typedef struct ProfJobObject* ProfJob;

/* One list inside a job's tree; 0 means the root list. */
typedef struct ProfListObject* ProfList;

/* ---- Results ------------------------------------------------------------------------------- */

#define PROF_OK 0                  /* success */
#define PROF_OPEN_FAILED (-1)      /* open: not a valid file name, or the file could not be opened */
#define PROF_CONVERT_FAILED (-2)   /* ProfAppendFiles: a file could not be read or kept */
#define PROF_EXCLUSIVE_FAILED (-3) /* open: an exclusive open failed, other than by sharing */
#define PROF_CLIPBOARD_FAILED (-3) /* ProfSaveToClipboard: no clipboard or no temporary file */
#define PROF_SAVE_FAILED (-4)      /* save: the profile could not be written */
#define PROF_DECODE_FAILED (-4)    /* ProfGetStream, ProfGetFile: not decoded or not written */
#define PROF_INVALID_JOB (-5)      /* ProfGetError, ProfDebugList, ProfCopyList: invalid job handle */
#define PROF_NOT_FOUND (-6)        /* Get: no such item (typed Get: or its text is empty) */
#define PROF_LOAD_FAILED (-7)      /* open: the contents could not be parsed */
#define PROF_COPY_FAILED (-8)      /* ProfCopyList: failed or stopped */
#define PROF_NO_GLOBAL_MEMORY (-8) /* ProfSaveToClipboard: no memory that the clipboard would take */
#define PROF_NOT_PARSED (-9)       /* Get: the item's text is not of the type asked for */
#define PROF_LOCKED (-10)          /* open: locked by others for 10 seconds, or it could not be read */

/* ---- Flags and options --------------------------------------------------------------------- */

/* Save flags, low four bits: the form. Any low nibble but 0 and 2 means XML. */
#define PROF_FORM_TEXT 0x0u
#define PROF_FORM_XML 0x1u
#define PROF_FORM_XFDF 0x2u
/* Save flags, further bits. */
#define PROF_SAVE_COMPRESSED 0x40u         /* always write the compressed wrapper */
#define PROF_SAVE_COMPRESSED_AS_READ 0x80u /* ... if the profile was read from a compressed one */

/* Flags of ProfJobOpenStreamObject. Other bits are reserved and ignored. */
#define PROF_READ_FOREIGN_XFDF 0x1u /* read XFDF as other programs write it */
#define PROF_READ_PLAIN_INI 0x2u    /* every [section] is a list of the root list */
#define PROF_READ_FOREIGN_XML 0x4u  /* read the XML form as other XML programs leave it */

/* Options of ProfSetOption and ProfGetOption. */
#define PROF_OPTION_CODE_PAGE 1u /* code page of the A forms and of 8-bit files; first: GetACP() */

/* ---- Jobs ---------------------------------------------------------------------------------- */

/* Opens a profile from a file, which is closed again before the call returns.
 *
 * fileName  the file; null opens an empty profile without a file. Here and in all calls that take one, a
 *           path may be longer than MAX_PATH without "\\?\" before it.
 *
 * Result    a job with one reference, to be released with ProfJobClose; 0 only when memory runs
 *           out. Every other failure leaves a usable job, and ProfGetError reports it:
 *           PROF_OPEN_FAILED   the last component is a reserved device name (CON, PRN, AUX, NUL,
 *                              COM1-9, LPT1-9, alone or with one extension), ends in a blank or a
 *                              dot, or holds one of < > : " / | ? * or a control character; or the
 *                              file does not exist or cannot be opened
 *           PROF_LOCKED        a sharing violation lasted 10 seconds (it is retried every 100 ms);
 *                              or the contents could not be read or would not fit into memory
 *           PROF_LOAD_FAILED   the contents are malformed (a compressed profile that is damaged or too
 *                              large, XML in another layout); what was read before stays in the tree.
 *                              A diagnostic line reports the reason and the number of the line, counted
 *                              without blank lines.
 *
 * An empty file is an empty profile. A file that begins with "ZZmQ" is a compressed profile and may
 * unfold to at most 256 MiB. The encoding is the one of a byte-order mark: UTF-16 (little- or big-endian) or
 * UTF-8. Without a mark it is UTF-16 little-endian when line ends, "=" and brackets are written in it, else
 * UTF-8 when the whole input is valid UTF-8, else the code page of PROF_OPTION_CODE_PAGE.
 *
 * In the text form each list is a line "[name]" and a block in braces, each item a line name=value;
 * blank lines and lines that begin with # or ; are skipped. A file whose first header line is not
 * "[/]" is taken as a plain sequence of sections: the first header is skipped, each later one opens
 * a list inside the one before (no brace closes it). What stands before the first header is not read, the
 * items above the first section of an .ini file included. To read an .ini file whole and flat, open it with
 * PROF_READ_PLAIN_INI.
 *
 * A file that begins with the first line of the XML form or of the XFDF form is read in that form. Both are
 * read line by line, as ProfSave lays them out: an element that shares its line with another, or goes over
 * several, is refused or skipped. Any other file that begins with "<" is read as text: an empty profile,
 * unless a line "[/]" follows. A diagnostic line that begins "WRN: '<file>': " names what was passed over. A
 * program that would save such a profile over its file asks first.
 *
 * Values of an XFDF file become items of the root list. They get their names from lines <field> name="..."
 * alone, which neither ProfSave nor other programs write; without such a line their name is empty. To read
 * what those write, open the file with PROF_READ_FOREIGN_XFDF.
 */
TVUT22_API ProfJob TVUT22_CALL ProfJobOpenA(const char* fileName);
TVUT22_API ProfJob TVUT22_CALL ProfJobOpenW(const wchar_t* fileName);

/* Opens a profile from a file and holds the file open for reading and writing until the job ends;
 * meanwhile others may only read it. The file is created when it does not exist.
 *
 * Parameters, result and errors as ProfJobOpen, but a file that cannot be opened for a reason other
 * than sharing returns PROF_EXCLUSIVE_FAILED, and a file whose contents could not be loaded is closed.
 */
TVUT22_API ProfJob TVUT22_CALL ProfJobOpenExclusiveA(const char* fileName);
TVUT22_API ProfJob TVUT22_CALL ProfJobOpenExclusiveW(const wchar_t* fileName);

/* Opens a profile from a stream, which is read from its start to its end.
 *
 * stream  any IStream; null opens an empty profile. It is used during the call only. One that cannot
 *         seek is read from where it stands.
 *
 * Result  as ProfJobOpen; a stream that fails to read returns PROF_LOCKED.
 */
TVUT22_API ProfJob TVUT22_CALL ProfJobOpenStream(IStream* stream);

/* As ProfJobOpenStream, with a name and flags.
 *
 * name   names the profile in diagnostic lines; "(Stream)" does when it is null or empty. No file of
 *        that name is opened, and the job has no file of its own.
 * flags  PROF_READ_...; 0 reads as ProfJobOpenStream does. PROF_READ_PLAIN_INI reads an .ini file as
 *        other programs do: each section is a list of the root list, items before the first section
 *        belong to the root, blanks around name and value are dropped, everything else stays as it
 *        is (quotes and inline comments are part of the value, braces mean nothing).
 *        PROF_READ_FOREIGN_XFDF reads XFDF as other programs write it, whatever its first line (but that
 *        of the XML form) and however its tags are spread over lines: a field that holds fields is a list,
 *        each value of a field is an item under the field's name, a field with neither an item without
 *        text. Values beside fields in one field have the empty name. Annotations, rich text and all that
 *        is no field are skipped. The lists of XFDF that ProfSave wrote are lists. Profiles in the other
 *        forms are read as without it.
 *        PROF_READ_FOREIGN_XML reads the XML form after other programs have written it anew: as XML 1.0,
 *        however elements, attributes and white space are laid out, with any quotes, references, CDATA and
 *        comments, and in the encoding that 8-bit XML declares, where it is one of the character sets that
 *        UtilDocInfoGet knows. Blanks and line ends around elements are layout, all text in an item is its
 *        value, and line ends in values become CR LF. Elements that no profile has are passed over, and a
 *        diagnostic line says so. What stands to the letter as ProfSave writes it, whole or cut off, is read
 *        as without the flag. XML that is not well-formed or whose root element is neither <profile> nor
 *        <xfdf> is refused: PROF_LOAD_FAILED; so are names of more than 1 MiB and more than 262,143 lists
 *        within each other. The text of the document is in memory as a whole meanwhile. Profiles in the
 *        other forms are read as without it.
 *        PROF_READ_FOREIGN_XML and PROF_READ_FOREIGN_XFDF together read either, as the root element says.
 *        With PROF_READ_PLAIN_INI no other flag counts.
 */
TVUT22_API ProfJob TVUT22_CALL ProfJobOpenStreamObjectA(IStream* stream, const char* name, UINT flags);
TVUT22_API ProfJob TVUT22_CALL ProfJobOpenStreamObjectW(IStream* stream, const wchar_t* name, UINT flags);

/* Adds one reference to a job. Any thread. */
TVUT22_API void TVUT22_CALL ProfJobAddRef(ProfJob job);

/* Releases one reference to a job; the last one closes the held file and frees the profile, with every list
 * handle of it. Any thread. */
TVUT22_API void TVUT22_CALL ProfJobClose(ProfJob job);

/* Returns the error of opening and loading the job: PROF_OK or one of the codes of ProfJobOpen. Later calls
 * do not change it. PROF_INVALID_JOB for the invalid job. */
TVUT22_API INT TVUT22_CALL ProfGetError(ProfJob job);

/* ---- Saving -------------------------------------------------------------------------------- */

/* Saves a profile to a file.
 *
 * fileName  the target; null means the job's own file. When the job holds its file (exclusive open),
 *           a null name and a name equal to the job's, compared without regard to case, write
 *           through the held file.
 * flags     a form (PROF_FORM_...) and PROF_SAVE_... bits.
 *
 * Result    PROF_OK, or PROF_SAVE_FAILED: no name or an invalid one, a read-only or locked target, a
 *           full disk, or a result beyond 2 GiB (a tree nested a million deep would be hundreds of
 *           gigabytes of indentation). 0 for an invalid job. The job keeps its changes whatever the result.
 *
 * The text form is UTF-16 little-endian with a byte-order mark and CR LF line ends. In names "=",
 * "[" and "]" are written as U+2338, U+301A, U+301B, and in names and values every character below
 * U+0020 as the one 0x2400 above it; reading turns them back. List names are written unchanged.
 * What stands for something else does not survive being read again: names that begin with "#", ";",
 * "{", "}" or a blank; U+2338, U+301A and U+301B in names of items, U+2401 to U+241F in names and values
 * of items; line ends in names of lists.
 *
 * The XML form is UTF-16, too, and keeps every text but one thing: CR LF, a lone CR and a lone LF are all
 * written as &cr; and read as CR LF. Other XML programs can read it unless a text holds a character below
 * U+0020 other than TAB, CR and LF, half a surrogate pair, U+FFFE or U+FFFF, or a name TAB, CR or LF.
 *
 * The XFDF form is UTF-8 without a byte-order mark. Its texts are not escaped, though reading turns
 * references back, so what holds "&", "<", ">", a quote in a name or a line end in a name may come back as
 * something else or not at all; half a surrogate pair is written as U+FFFD.
 *
 * A target that the job does not hold is replaced in one step: the new contents are written to a temporary
 * file in the same folder, which then takes the target's place and, as far as the system allows, its
 * attributes, creation time and access rights. A link under the name is replaced itself. While others have
 * the target open, the step is tried again for up to two seconds. If they still have it open then, and let
 * it be written but not replaced (as fopen opens a file), the temporary file is copied over the target. Only
 * in that case does a failure, or the end of the process, leave the target torn; the whole contents are in
 * the file "~PRF........sav" beside it then.
 *
 * A held file is first brought to its new length, so that a full disk shows before old contents are
 * overwritten. A failure after that, and the end of the process, leave it torn.
 */
TVUT22_API INT TVUT22_CALL ProfSaveA(ProfJob job, const char* fileName, UINT flags);
TVUT22_API INT TVUT22_CALL ProfSaveW(ProfJob job, const wchar_t* fileName, UINT flags);

/* Saves a profile into a stream, from its start, and cuts the stream where the profile ends. A stream that
 * cannot seek is written from where it stands; one that cannot change its size keeps what it held after the
 * profile. flags and result as ProfSave, PROF_SAVE_FAILED for a null stream, too. After PROF_SAVE_FAILED the
 * stream's contents are undefined. The stream may close the job while it is written to, but must not change
 * it. */
TVUT22_API INT TVUT22_CALL ProfSaveToStream(ProfJob job, IStream* stream, UINT flags);

/* ---- Clipboard ----------------------------------------------------------------------------- */

/* Puts a profile on the clipboard, under a private format.
 *
 * owner  the window that opens the clipboard; may be null.
 * flags  a form (PROF_FORM_TEXT); other bits are ignored, the profile is never compressed.
 *
 * Result  PROF_OK; PROF_CLIPBOARD_FAILED when a temporary file cannot be made or the clipboard cannot be
 *         opened or set (others who have it open are waited for a fifth of a second);
 *         PROF_SAVE_FAILED when the profile cannot be written in that form; PROF_NO_GLOBAL_MEMORY.
 *
 * The clipboard is not emptied: what else is on it stays. A caller that wants to replace it empties it
 * before. Beside the profile a notice is put under CF_TEXT, for programs that know no profiles: the
 * characters "PROF data available" and a NUL in UTF-16, although the format is one of 8-bit text.
 */
TVUT22_API INT TVUT22_CALL ProfSaveToClipboard(ProfJob job, HWND owner, UINT flags);

/* Opens a profile from the clipboard.
 *
 * owner   the window that opens the clipboard; may be null.
 *
 * Result  as ProfJobOpen; PROF_OPEN_FAILED, with an empty profile, when the clipboard cannot be opened,
 *         holds no profile, or a temporary file cannot be made. The job has no file of its own.
 *
 * The profile ends before the zeros at the end of its block, which may be longer than what was put there.
 */
TVUT22_API ProfJob TVUT22_CALL ProfJobOpenClipboard(HWND owner);

/* Tells whether the clipboard holds a profile: nonzero, or 0. Any thread. */
TVUT22_API BOOL TVUT22_CALL ProfIsClipboardDataAvailable(void);

/* ---- Lists --------------------------------------------------------------------------------- */

/* Finds a list by path: at each segment the first list of that name, with no second try.
 *
 * path    null yields the start list itself; exactly ".." yields the list that holds it.
 *
 * Result  the list; 0 when a segment is missing, and for ".." of the root list.
 */
TVUT22_API ProfList TVUT22_CALL ProfGetListA(ProfJob job, ProfList list, const char* path);
TVUT22_API ProfList TVUT22_CALL ProfGetListW(ProfJob job, ProfList list, const wchar_t* path);

/* Makes an empty list at a path: at each segment the first list of that name is taken, or appended
 * when missing; the last one, when it was there, is emptied in its place and keeps its handle.
 * Result: the list, or 0 when memory runs out. */
TVUT22_API ProfList TVUT22_CALL ProfCreateListA(ProfJob job, ProfList list, const char* path);
TVUT22_API ProfList TVUT22_CALL ProfCreateListW(ProfJob job, ProfList list, const wchar_t* path);

/* Appends a new list for every segment of the path, whether or not one of that name exists: "A/B"
 * makes a new A that holds a new B. Result: the last list, or 0 when memory runs out. */
TVUT22_API ProfList TVUT22_CALL ProfAppendListA(ProfJob job, ProfList list, const char* path);
TVUT22_API ProfList TVUT22_CALL ProfAppendListW(ProfJob job, ProfList list, const wchar_t* path);

/* Deletes lists, with all that is in them.
 *
 * path  every list that it reaches, through every list of each segment's name, is deleted. Null
 *       deletes the list handle itself, wherever it is in the tree. The root list stays.
 *
 * ProfDeleteList(job, 0, NULL) deletes an item, not a list: the first one that is met when the whole tree
 * is walked in order, each list entered where it stands.
 */
TVUT22_API void TVUT22_CALL ProfDeleteListA(ProfJob job, ProfList list, const char* path);
TVUT22_API void TVUT22_CALL ProfDeleteListW(ProfJob job, ProfList list, const wchar_t* path);

/* Deletes every entry of a list; the list and its handle stay. */
TVUT22_API void TVUT22_CALL ProfEmptyList(ProfJob job, ProfList list);

/* Appends copies of all entries of a source list, with all that is in them, to a destination list.
 * Nothing is merged. The two may be of one job, even the same list or one inside the other: what is
 * copied is what was there when the call began.
 *
 * Result  PROF_OK; PROF_INVALID_JOB for an invalid source job; PROF_COPY_FAILED for another failure,
 *         an invalid destination job among them (what was copied before stays).
 */
TVUT22_API INT TVUT22_CALL ProfCopyList(ProfJob destinationJob, ProfList destinationList, ProfJob sourceJob,
                                        ProfList sourceList);

/* Called once an entry by ProfEnum. name and value (empty for a list) are valid during the call;
 * subList is 0 for an item. Return 0 to stop. The callback may change the profile: deleted entries
 * are not visited any more, entries appended since the walk began are not visited either, and
 * emptying or deleting the list itself ends the walk. A job whose last reference the callback closes
 * lives until the walk ends. */
typedef BOOL(TVUT22_CALL* ProfEnumCallbackA)(ProfJob job, const char* name, const char* value,
                                             ProfList subList, UINT_PTR user);
typedef BOOL(TVUT22_CALL* ProfEnumCallbackW)(ProfJob job, const wchar_t* name, const wchar_t* value,
                                             ProfList subList, UINT_PTR user);

/* Walks the entries of one list in order, without entering the lists it holds.
 * Result: 1 when every entry was visited, also for an empty list; 0 when the callback stopped the
 * walk, for an invalid job, list or callback, or when memory runs out. */
TVUT22_API BOOL TVUT22_CALL ProfEnumA(ProfJob job, ProfList list, ProfEnumCallbackA callback, UINT_PTR user);
TVUT22_API BOOL TVUT22_CALL ProfEnumW(ProfJob job, ProfList list, ProfEnumCallbackW callback, UINT_PTR user);

/* Writes a list and all that is in it to the diagnostic output, a line an entry, indented by one
 * blank a level and ended by "\n". Result: PROF_OK, also for an invalid list, of which nothing is written; or
 * PROF_INVALID_JOB. */
TVUT22_API INT TVUT22_CALL ProfDebugList(ProfJob job, ProfList list);

/* ---- Items --------------------------------------------------------------------------------- */

/* Deletes every item that the path reaches, through every list of each segment's name. */
TVUT22_API void TVUT22_CALL ProfDeleteItemA(ProfJob job, ProfList list, const char* path);
TVUT22_API void TVUT22_CALL ProfDeleteItemW(ProfJob job, ProfList list, const wchar_t* path);

/* Append adds an item at the end of its list, whatever is there. Set puts a new value in the
 * place of the first item of that name, or appends one. Both create the lists on the way that are missing.
 * A null value text is the empty text; a null point or rectangle adds nothing.
 *
 * Type      Stored text
 * String    the text itself
 * Bool      TRUE or FALSE
 * Int       decimal
 * IntHex    x and 8 upper-case hexadecimal digits
 * Int64     decimal, as unsigned: -1 is 18446744073709551615
 * Int64Hex  x and upper-case hexadecimal digits
 * Double    six decimals, decimal point whatever the locale
 * Point     (x,y)
 * Rect      (left,top,right,bottom)
 * RectLTWH  (left,top,width,height) of the rectangle given by its four sides
 * Colorref  (red,green,blue), each 0 to 255
 */
TVUT22_API void TVUT22_CALL ProfAppendStringA(ProfJob job, ProfList list, const char* path,
                                              const char* value);
TVUT22_API void TVUT22_CALL ProfAppendStringW(ProfJob job, ProfList list, const wchar_t* path,
                                              const wchar_t* value);
TVUT22_API void TVUT22_CALL ProfSetStringA(ProfJob job, ProfList list, const char* path, const char* value);
TVUT22_API void TVUT22_CALL ProfSetStringW(ProfJob job, ProfList list, const wchar_t* path,
                                           const wchar_t* value);
TVUT22_API void TVUT22_CALL ProfAppendBoolA(ProfJob job, ProfList list, const char* path, BOOL value);
TVUT22_API void TVUT22_CALL ProfAppendBoolW(ProfJob job, ProfList list, const wchar_t* path, BOOL value);
TVUT22_API void TVUT22_CALL ProfSetBoolA(ProfJob job, ProfList list, const char* path, BOOL value);
TVUT22_API void TVUT22_CALL ProfSetBoolW(ProfJob job, ProfList list, const wchar_t* path, BOOL value);
TVUT22_API void TVUT22_CALL ProfAppendIntA(ProfJob job, ProfList list, const char* path, INT value);
TVUT22_API void TVUT22_CALL ProfAppendIntW(ProfJob job, ProfList list, const wchar_t* path, INT value);
TVUT22_API void TVUT22_CALL ProfSetIntA(ProfJob job, ProfList list, const char* path, INT value);
TVUT22_API void TVUT22_CALL ProfSetIntW(ProfJob job, ProfList list, const wchar_t* path, INT value);
TVUT22_API void TVUT22_CALL ProfAppendIntHexA(ProfJob job, ProfList list, const char* path, UINT value);
TVUT22_API void TVUT22_CALL ProfAppendIntHexW(ProfJob job, ProfList list, const wchar_t* path, UINT value);
TVUT22_API void TVUT22_CALL ProfSetIntHexA(ProfJob job, ProfList list, const char* path, UINT value);
TVUT22_API void TVUT22_CALL ProfSetIntHexW(ProfJob job, ProfList list, const wchar_t* path, UINT value);
TVUT22_API void TVUT22_CALL ProfAppendInt64A(ProfJob job, ProfList list, const char* path, INT64 value);
TVUT22_API void TVUT22_CALL ProfAppendInt64W(ProfJob job, ProfList list, const wchar_t* path, INT64 value);
TVUT22_API void TVUT22_CALL ProfSetInt64A(ProfJob job, ProfList list, const char* path, INT64 value);
TVUT22_API void TVUT22_CALL ProfSetInt64W(ProfJob job, ProfList list, const wchar_t* path, INT64 value);
TVUT22_API void TVUT22_CALL ProfAppendInt64HexA(ProfJob job, ProfList list, const char* path, INT64 value);
TVUT22_API void TVUT22_CALL ProfAppendInt64HexW(ProfJob job, ProfList list, const wchar_t* path, INT64 value);
TVUT22_API void TVUT22_CALL ProfSetInt64HexA(ProfJob job, ProfList list, const char* path, INT64 value);
TVUT22_API void TVUT22_CALL ProfSetInt64HexW(ProfJob job, ProfList list, const wchar_t* path, INT64 value);
TVUT22_API void TVUT22_CALL ProfAppendDoubleA(ProfJob job, ProfList list, const char* path, double value);
TVUT22_API void TVUT22_CALL ProfAppendDoubleW(ProfJob job, ProfList list, const wchar_t* path, double value);
TVUT22_API void TVUT22_CALL ProfSetDoubleA(ProfJob job, ProfList list, const char* path, double value);
TVUT22_API void TVUT22_CALL ProfSetDoubleW(ProfJob job, ProfList list, const wchar_t* path, double value);
TVUT22_API void TVUT22_CALL ProfAppendPointA(ProfJob job, ProfList list, const char* path,
                                             const POINT* value);
TVUT22_API void TVUT22_CALL ProfAppendPointW(ProfJob job, ProfList list, const wchar_t* path,
                                             const POINT* value);
TVUT22_API void TVUT22_CALL ProfSetPointA(ProfJob job, ProfList list, const char* path, const POINT* value);
TVUT22_API void TVUT22_CALL ProfSetPointW(ProfJob job, ProfList list, const wchar_t* path,
                                          const POINT* value);
TVUT22_API void TVUT22_CALL ProfAppendRectA(ProfJob job, ProfList list, const char* path, const RECT* value);
TVUT22_API void TVUT22_CALL ProfAppendRectW(ProfJob job, ProfList list, const wchar_t* path,
                                            const RECT* value);
TVUT22_API void TVUT22_CALL ProfSetRectA(ProfJob job, ProfList list, const char* path, const RECT* value);
TVUT22_API void TVUT22_CALL ProfSetRectW(ProfJob job, ProfList list, const wchar_t* path, const RECT* value);
TVUT22_API void TVUT22_CALL ProfAppendRectLTWHA(ProfJob job, ProfList list, const char* path,
                                                const RECT* value);
TVUT22_API void TVUT22_CALL ProfAppendRectLTWHW(ProfJob job, ProfList list, const wchar_t* path,
                                                const RECT* value);
TVUT22_API void TVUT22_CALL ProfSetRectLTWHA(ProfJob job, ProfList list, const char* path, const RECT* value);
TVUT22_API void TVUT22_CALL ProfSetRectLTWHW(ProfJob job, ProfList list, const wchar_t* path,
                                             const RECT* value);
TVUT22_API void TVUT22_CALL ProfAppendColorrefA(ProfJob job, ProfList list, const char* path, COLORREF value);
TVUT22_API void TVUT22_CALL ProfAppendColorrefW(ProfJob job, ProfList list, const wchar_t* path,
                                                COLORREF value);
TVUT22_API void TVUT22_CALL ProfSetColorrefA(ProfJob job, ProfList list, const char* path, COLORREF value);
TVUT22_API void TVUT22_CALL ProfSetColorrefW(ProfJob job, ProfList list, const wchar_t* path, COLORREF value);

/* Reads an item's text.
 *
 * buffer        receives at most size - 1 characters (A: bytes; never half a character of UTF-8 or of a
 *               code page of one or two bytes a character) and a NUL;
 *               may be null to ask for the length only, and may be what path points to.
 * size          of the buffer in characters (A: bytes). With 0 the buffer is not written to, unless
 *               defaultValue is null: its NUL is written all the same. Pass a null buffer to ask for the
 *               length.
 * defaultValue  what the buffer receives when there is no such item; null is the empty text. May be
 *               the buffer itself.
 *
 * Result        the length of the whole stored text in UTF-16 characters (both forms), so a result
 *               >= size means that the W buffer got only its beginning; PROF_NOT_FOUND when there is
 *               no such item. 0 for the invalid job, with the default stored.
 */
TVUT22_API INT TVUT22_CALL ProfGetStringA(ProfJob job, ProfList list, const char* path, char* buffer,
                                          UINT size, const char* defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetStringW(ProfJob job, ProfList list, const wchar_t* path, wchar_t* buffer,
                                          UINT size, const wchar_t* defaultValue);

/* Returns the length of an item's text in UTF-16 characters without a terminator, or PROF_NOT_FOUND. */
TVUT22_API INT TVUT22_CALL ProfGetStringLengthA(ProfJob job, ProfList list, const char* path);
TVUT22_API INT TVUT22_CALL ProfGetStringLengthW(ProfJob job, ProfList list, const wchar_t* path);

/* Typed Get: reads an item's text and parses it.
 *
 * out           receives the value.
 * defaultValue  stored in out when there is no such item or its text is empty. A null pointer to a
 *               default counts as all zeros; it may be out itself.
 *
 * Result        PROF_OK; PROF_NOT_FOUND with the default stored; PROF_NOT_PARSED when the text is of
 *               another type: Int, Int64 and Colorref then leave out as it was, Point and Rect may
 *               have stored the numbers that came before the fault. 0 and nothing stored for the
 *               invalid job.
 *
 * Type      Accepted text (parsing stops at the first character that does not fit)
 * Bool      true when it begins with T, Y or y; anything else is false
 * Int       x and hexadecimal digits, or decimal
 * Int64     x and hexadecimal digits, or decimal (a minus sign wraps)
 * Double    a decimal number with optional fraction and exponent; anything else is 0
 * Point     (x,y)
 * Rect      (left,top,right,bottom)
 * RectLTWH  (left,top,width,height); out receives the four sides
 * Colorref  x and hexadecimal digits, or (red,green,blue), each taken modulo 256
 *
 * Whole numbers that are too large wrap; blanks may stand before each number; the closing
 * parenthesis is not required. All but Double look at the first 199 characters (Int64: 63) only.
 */
TVUT22_API INT TVUT22_CALL ProfGetBoolA(ProfJob job, ProfList list, const char* path, BOOL* out,
                                        BOOL defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetBoolW(ProfJob job, ProfList list, const wchar_t* path, BOOL* out,
                                        BOOL defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetIntA(ProfJob job, ProfList list, const char* path, INT* out,
                                       INT defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetIntW(ProfJob job, ProfList list, const wchar_t* path, INT* out,
                                       INT defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetInt64A(ProfJob job, ProfList list, const char* path, INT64* out,
                                         INT64 defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetInt64W(ProfJob job, ProfList list, const wchar_t* path, INT64* out,
                                         INT64 defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetDoubleA(ProfJob job, ProfList list, const char* path, double* out,
                                          double defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetDoubleW(ProfJob job, ProfList list, const wchar_t* path, double* out,
                                          double defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetPointA(ProfJob job, ProfList list, const char* path, POINT* out,
                                         const POINT* defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetPointW(ProfJob job, ProfList list, const wchar_t* path, POINT* out,
                                         const POINT* defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetRectA(ProfJob job, ProfList list, const char* path, RECT* out,
                                        const RECT* defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetRectW(ProfJob job, ProfList list, const wchar_t* path, RECT* out,
                                        const RECT* defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetRectLTWHA(ProfJob job, ProfList list, const char* path, RECT* out,
                                            const RECT* defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetRectLTWHW(ProfJob job, ProfList list, const wchar_t* path, RECT* out,
                                            const RECT* defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetColorrefA(ProfJob job, ProfList list, const char* path, COLORREF* out,
                                            COLORREF defaultValue);
TVUT22_API INT TVUT22_CALL ProfGetColorrefW(ProfJob job, ProfList list, const wchar_t* path, COLORREF* out,
                                            COLORREF defaultValue);

/* ---- Variants ------------------------------------------------------------------------------ */

/* Append or set an item that holds a variant, placed as by ProfAppendString and ProfSetString.
 *
 * value  any value that VariantCopyInd takes and that means something outside the process; references
 *        (VT_BYREF) are resolved. Null adds nothing.
 *
 * Types    EMPTY, NULL, I1 to I8, UI1 to UI8, INT, UINT, R4, R8, CY, DATE, BOOL, ERROR, DECIMAL, BSTR (null,
 *          embedded NULs and odd byte counts included), UNKNOWN and DISPATCH that are null, and arrays of
 *          these and of VARIANT, with up to 64 dimensions and nested up to 64 deep.
 * Refused  UNKNOWN and DISPATCH that are not null, RECORD, anything else: nothing is stored, an item that
 *          was there stays, and a diagnostic line reports it.
 *
 * The stored text is "var://" and the text form of the variant's bytes, compressed when these are 101 or
 * more; docs/variants.md fixes them.
 */
TVUT22_API void TVUT22_CALL ProfAppendVariant(ProfJob job, ProfList list, const wchar_t* path,
                                              const VARIANT* value);
TVUT22_API void TVUT22_CALL ProfSetVariant(ProfJob job, ProfList list, const wchar_t* path,
                                           const VARIANT* value);

/* Reads a variant from an item.
 *
 * out     is initialised, not cleared: what it held is not freed. The caller frees what it receives with
 *         VariantClear. It is VT_EMPTY unless the result is PROF_OK.
 *
 * Result  PROF_OK; PROF_NOT_FOUND when there is no such item or its text is empty; PROF_NOT_PARSED when
 *         its text is no variant, or is damaged, or memory runs out. 0 and out as it was for the
 *         invalid job.
 */
TVUT22_API INT TVUT22_CALL ProfGetVariant(ProfJob job, ProfList list, const wchar_t* path, VARIANT* out);

/* As ProfGetVariant, from a text that the caller holds, such as the value that a callback of ProfEnumW is
 * given. Result: PROF_OK or PROF_NOT_PARSED, the latter for a null text as well. */
TVUT22_API INT TVUT22_CALL ProfGetVariantFromContents(const wchar_t* text, VARIANT* out);

/* ---- Bytes, streams and files -------------------------------------------------------------- */

/* Items can hold bytes: compressed, as Base64 after "@2@" (docs/byte-text.md). No bytes are the empty
 * text. With a key text the compressed bytes are enciphered when they are 8 or more; a null key is the
 * empty key, which enciphers nothing. Read with another key they give PROF_DECODE_FAILED, or, hardly ever,
 * other bytes. More than 256 MiB cannot be stored, nor read. Storing n bytes takes up to 4 n of memory,
 * and at least as much of 2.7 n as compression does not save in one piece. */

/* Append an item with the bytes of a stream or a file, whatever is there under that name.
 *
 * stream    any IStream, read from its start to its end, or from where it stands when it cannot seek. It
 *           may change the profile while it is read.
 * fileName  a file, opened as by ProfJobOpen: while it is locked, for up to 10 seconds.
 *
 * Nothing is appended when the source fails, is too large or memory runs out: GetLastError says why. It is
 * ERROR_SUCCESS when the item was appended.
 */
TVUT22_API void TVUT22_CALL ProfAppendStreamA(ProfJob job, ProfList list, const char* path, const char* key,
                                              IStream* stream);
TVUT22_API void TVUT22_CALL ProfAppendStreamW(ProfJob job, ProfList list, const wchar_t* path,
                                              const wchar_t* key, IStream* stream);
TVUT22_API void TVUT22_CALL ProfAppendFileA(ProfJob job, ProfList list, const char* path, const char* key,
                                            const char* fileName);
TVUT22_API void TVUT22_CALL ProfAppendFileW(ProfJob job, ProfList list, const wchar_t* path,
                                            const wchar_t* key, const wchar_t* fileName);

/* Write the bytes of an item, the first one of that name, to a stream or a file.
 *
 * stream    is written from its start and cut where the bytes end; one that cannot seek is written from
 *           where it stands. After PROF_DECODE_FAILED its contents are undefined.
 * fileName  is made, or replaced in one step as by ProfSave: when anything fails no file is left over,
 *           and one that was there stays as it was.
 *
 * Result    PROF_OK; PROF_NOT_FOUND when there is no such item; PROF_DECODE_FAILED when its text does not
 *           decode (with this key) or the bytes cannot be written. Any plain Base64 text decodes.
 */
TVUT22_API INT TVUT22_CALL ProfGetStreamA(ProfJob job, ProfList list, const char* path, const char* key,
                                          IStream* stream);
TVUT22_API INT TVUT22_CALL ProfGetStreamW(ProfJob job, ProfList list, const wchar_t* path, const wchar_t* key,
                                          IStream* stream);
TVUT22_API INT TVUT22_CALL ProfGetFileA(ProfJob job, ProfList list, const char* path, const char* key,
                                        const char* fileName);
TVUT22_API INT TVUT22_CALL ProfGetFileW(ProfJob job, ProfList list, const wchar_t* path, const wchar_t* key,
                                        const wchar_t* fileName);

/* Appends files to a list: for each a list "File.Entry" with the items "Name", the file's name without its
 * folder, and "Contents", its bytes.
 *
 * list   where the entries go.
 * files  names and wildcard patterns, separated by semicolons; blanks around each are dropped, empty ones
 *        skipped. A pattern has * (any characters) or ? (one) in its last component; *.* is every name;
 *        letters compare without regard to case. Folders are not entered, hidden files are taken.
 *        A name that holds a semicolon can be reached by a pattern.
 * key    as above.
 *
 * Files that others have locked are waited for, 10 seconds in all. The entries come in the order of the
 * elements, those of a pattern ordered by name without regard to case. Names are as the file system has them
 * and are not made unique.
 *
 * Result  PROF_OK, also when nothing was found (a diagnostic line reports each element); PROF_NOT_FOUND
 *         for an invalid list; PROF_CONVERT_FAILED when a file could not be read or kept, as a line says,
 *         too: the files before it have been appended, those after it have not.
 */
TVUT22_API INT TVUT22_CALL ProfAppendFilesA(ProfJob job, ProfList list, const char* files, const char* key);
TVUT22_API INT TVUT22_CALL ProfAppendFilesW(ProfJob job, ProfList list, const wchar_t* files,
                                            const wchar_t* key);

/* Writes every "File.Entry" of a list, in order, into a folder.
 *
 * folder  is made when it is missing, but not the folder that it is in. Null and empty are refused.
 * key     as above.
 *
 * Files are made or replaced as by ProfGetFile; of entries with one name the last one stays. A name that is
 * more than a name is refused: one with a separator, drive or stream (\ / :), "." and "..", a character
 * that no name may hold, a blank or dot at its end, a device.
 *
 * Result  PROF_OK when every entry was written; PROF_SAVE_FAILED when the folder could not be made, which
 *         ends the call, or an entry was skipped: each is reported by a diagnostic line and keeps none of the
 *         others from being written; GetLastError returns the last reason; PROF_NOT_FOUND for an invalid
 *         list.
 */
TVUT22_API INT TVUT22_CALL ProfExtractFilesA(ProfJob job, ProfList list, const char* folder, const char* key);
TVUT22_API INT TVUT22_CALL ProfExtractFilesW(ProfJob job, ProfList list, const wchar_t* folder,
                                             const wchar_t* key);

/* ---- Converters ---------------------------------------------------------------------------- */

/* Parse a text that the caller holds. out always receives a value: the default for a null text and
 * for one that is not of the type (RECT: all four members then).
 *
 * BOOL      as ProfGetBool; the empty text is true
 * INT       decimal only (no leading x)
 * INT64     decimal only
 * RECT      as ProfGetRect
 * COLORREF  as ProfGetColorref
 */
TVUT22_API void TVUT22_CALL ProfLPSTRtoBOOLA(const char* text, BOOL* out, BOOL defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoBOOLW(const wchar_t* text, BOOL* out, BOOL defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoINTA(const char* text, INT* out, INT defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoINTW(const wchar_t* text, INT* out, INT defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoINT64A(const char* text, INT64* out, INT64 defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoINT64W(const wchar_t* text, INT64* out, INT64 defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoRECTA(const char* text, RECT* out, const RECT* defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoRECTW(const wchar_t* text, RECT* out, const RECT* defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoCOLORREFA(const char* text, COLORREF* out, COLORREF defaultValue);
TVUT22_API void TVUT22_CALL ProfLPSTRtoCOLORREFW(const wchar_t* text, COLORREF* out, COLORREF defaultValue);

/* ---- Library ------------------------------------------------------------------------------- */

/* Returns the version: selector 0 gives 5642 (major * 256 + minor), 1 the major number 22, 2 the minor number
 * 10, any other selector -1. */
TVUT22_API INT TVUT22_CALL ProfGetVersion(INT selector);

/* Sets an option of the process (low 16 bits of the value); unknown options are ignored. Any thread;
 * a change is seen by calls that begin after it. PROF_OPTION_CODE_PAGE keeps whatever it is set to; 0, and a
 * code page that the system does not know, converts as the process's own, which GetACP returns. */
TVUT22_API void TVUT22_CALL ProfSetOption(UINT option, UINT value);

/* Reads an option of the process; 0 for an unknown option. Any thread. */
TVUT22_API UINT TVUT22_CALL ProfGetOption(UINT option);

/* Does nothing: kept for callers of earlier versions. */
TVUT22_API void TVUT22_CALL ProfSetDebug(BOOL flag);

#endif
