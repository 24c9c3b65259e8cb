/* Util: what window programs need: help that opens, subclasses that come off cleanly, hooks, names of
 * messages, lists of handles.
 *
 *     UtilSubclass subclass = UtilWindowSubclass(edit, OnEditMessage, (UINT_PTR)form);
 *     ...
 *     LRESULT TVUT22_CALL OnEditMessage(UtilSubclass subclass, HWND window, UINT message, WPARAM w, LPARAM l,
 *                                       UINT_PTR user) {
 *         if (message == WM_PASTE)
 *             return PasteInto((Form*)user);                             // answered here
 *         return UtilWindowCallNext(subclass, window, message, w, l);    // comes off by itself in the end
 *     }
 *
 * Results are those of results.h. Handles of this header are opaque values of 32 bits, 0 for none; a handle
 * that is closed, or none of its kind, is refused with UTIL_BAD_ARGUMENT, and closing 0 returns UTIL_OK.
 * After UTIL_FAILED the last-error value is the system's reason. Callbacks get "user" as it was given and are
 * called with no lock of the library held; an exception that leaves one ends the process.
 *
 * While a subclass or a hook is there the library stays loaded; the last one lets it go about a second later.
 */
#ifndef TVUT22_WINDOW_H
#define TVUT22_WINDOW_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>
#include <tvut22/results.h>

/* ---- Help ------------------------------------------------------------------------------------ */

/* A help file of the program: an opaque value of 32 bits, 0 for none. */
typedef struct UtilHelpObject* UtilHelp;

/* Names a help file. Nothing is looked for, loaded or shown: a program without its help file starts.
 *
 * owner      the window that help of a .chm file stays above; 0: none
 * file       a path, or an address that begins with http: or https:; a relative path is one of the current
 *            folder at this call. Its ending, in any case, decides what shows it:
 *              .chm                      the system's HTML help, on the calling thread, which needs
 *                                        a message loop
 *              .htm, .html, an address   the default browser
 *              .pdf, .txt                the program that the system opens such files with
 *
 * Result     the help file, to be closed with UtilHelpClose; 0, and the last-error value tells why:
 *            ERROR_INVALID_PARAMETER for null or an empty text, ERROR_INVALID_WINDOW_HANDLE,
 *            ERROR_NOT_ENOUGH_MEMORY, ERROR_TOO_MANY_OPEN_FILES when 1,024 are open
 */
TVUT22_API UtilHelp TVUT22_CALL UtilHelpOpen(HWND owner, const wchar_t* file);

/* Show a page of a help file: by its name in the file, by its number, by a word of the index.
 *
 * A .chm file that comes from a network, a removable drive or the internet shows empty pages in the system's
 * viewer. It is copied to the user's temporary folder and shown from there; a copy is made again when size or
 * time of the file have changed.
 *
 * help       from UtilHelpOpen
 * topic      such as L"print/margins.htm#left" in a .chm file, elsewhere the part after # of an address;
 *            null: the first page
 * id         a number that the .chm file maps to a page, elsewhere the part after # of an address
 * keyword    a word of the index of a .chm file; null or empty: the index itself
 *
 * .pdf and .txt files are opened as they are, whatever is asked for. Any thread may call these; none belongs
 * into a DllMain.
 *
 * Result     UTIL_OK
 *            UTIL_NOT_FOUND      the file is missing; the viewer gave no window: no such topic or word
 *            UTIL_NOT_SUPPORTED  a file of another ending; keywords in a browser; the system has no viewer
 *            UTIL_BAD_ARGUMENT   no such help file
 *            UTIL_IN_LOADER      called from a DllMain or at the end of the process; nothing was done
 *            UTIL_FAILED         the system refused, or no memory
 */
TVUT22_API INT TVUT22_CALL UtilHelpShowTopic(UtilHelp help, const wchar_t* topic);
TVUT22_API INT TVUT22_CALL UtilHelpShowContext(UtilHelp help, UINT id);
TVUT22_API INT TVUT22_CALL UtilHelpShowKeyword(UtilHelp help, const wchar_t* keyword);

/* Closes a help file. With the last one that is open the viewer's windows are closed, if there are any; not
 * from within a DllMain or at the end of the process, where the viewer is never called.
 *
 * help       0: nothing happens
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  no such help file
 */
TVUT22_API INT TVUT22_CALL UtilHelpClose(UtilHelp help);

/* ---- Subclassing ------------------------------------------------------------------------------ */

/* A subclass of a window: a procedure that sees the window's messages before the window does. */
typedef struct UtilSubclassObject* UtilSubclass;

/* Called on the window's thread for each message. What it returns is the answer to the message; it passes the
 * message on with UtilWindowCallNext, changed if it likes, or it does not and has answered.
 *
 * It may subclass the window again, remove its own subclass or any other one of the thread, and destroy the
 * window.
 *
 * subclass   as UtilWindowSubclass returned it
 * window     the window
 * message, w, l   the message
 * user       as it was given to UtilWindowSubclass
 */
typedef LRESULT(TVUT22_CALL* UtilWindowProc)(UtilSubclass subclass, HWND window, UINT message, WPARAM w,
                                             LPARAM l, UINT_PTR user);

/* Subclasses a window of the calling thread. The newest subclass is asked first. A window may have any number
 * of them, with the same procedure, too.
 *
 * It comes off by itself after the window's last message, WM_NCDESTROY, which it still sees; and when the
 * window's thread ends.
 *
 * They are subclasses of comctl32 (SetWindowSubclass), in one order with those that others set that way. A
 * procedure that is set with SetWindowLongPtr after the first of them is asked before all of them. As long as
 * one is there, subclasses that were removed keep passing messages on, so that it can be taken off later.
 *
 * window     a window of the calling thread
 * proc       its procedure
 * user       handed to the procedure
 *
 * Result     the subclass; 0: there is none, and the last error is ERROR_INVALID_PARAMETER (no procedure),
 *            ERROR_INVALID_WINDOW_HANDLE, ERROR_INVALID_THREAD_ID (a window of another thread),
 *            ERROR_NO_MORE_USER_HANDLES (8,192 are there), ERROR_NOT_ENOUGH_MEMORY, or what the system gave
 */
TVUT22_API UtilSubclass TVUT22_CALL UtilWindowSubclass(HWND window, UtilWindowProc proc, UINT_PTR user);

/* Passes a message on to the subclass before this one, and at last to the window's own procedure. Only from
 * within the subclass's procedure; it may have been removed there before.
 *
 * subclass, window   as the procedure got them
 * message, w, l      the message, or what is to come instead of it
 *
 * Result     the answer; 0 when the procedure of this subclass is not being called on this thread, and when
 *            the window is gone
 */
TVUT22_API LRESULT TVUT22_CALL UtilWindowCallNext(UtilSubclass subclass, HWND window, UINT message, WPARAM w,
                                                  LPARAM l);

/* Removes a subclass, in any order, at any time, from within procedures, too. Calls of its procedure that are
 * under way end as they are; no other will come.
 *
 * subclass   a subclass, or 0
 *
 * Result     UTIL_OK            also for 0, and once for a subclass that came off by itself, until its handle
 *                               is forgotten for thousands of newer ones
 *            UTIL_BAD_ARGUMENT  no subclass
 *            UTIL_WRONG_THREAD  called on another thread than the window's; nothing was done
 */
TVUT22_API INT TVUT22_CALL UtilWindowUnsubclass(UtilSubclass subclass);

/* ---- Hooks ------------------------------------------------------------------------------------ */

/* A hook. It belongs to the thread that made it, and is gone when that thread has ended. */
typedef struct UtilHookObject* UtilHook;

/* Called for what happens to the windows of the hook's thread; see CBTProc of the system.
 *
 * hook       as UtilHookCBT returned it; it may be closed here
 * code       HCBT_CREATEWND, HCBT_ACTIVATE, ...: 0 and above
 * w, l       what belongs to the code
 * user       as it was given to UtilHookCBT
 *
 * Result     0: older hooks are asked; else the system gets this answer at once, which forbids what it asks
 *            about
 */
typedef LRESULT(TVUT22_CALL* UtilCBTProc)(UtilHook hook, INT code, WPARAM w, LPARAM l, UINT_PTR user);

/* Called when the user has pressed Ctrl+Break: once a press, however long the keys are held.
 *
 * hook       as UtilHookCtrlBreak returned it
 * user       as it was given to UtilHookCtrlBreak
 *
 * Result     TRUE: that was meant for this hook. Older ones are not asked, the key does not arrive at a
 *            window, and an event of a console does not end the process. FALSE: it goes on
 */
typedef BOOL(TVUT22_CALL* UtilBreakProc)(UtilHook hook, UINT_PTR user);

/* Hooks the calling thread: the procedure is asked before the system creates, activates, moves, sizes or
 * destroys a window of this thread. The newest hook is asked first; one system hook serves them all, so that
 * a hook that others set after the first of them is asked before all of them.
 *
 * proc       its procedure
 * user       handed to the procedure
 *
 * Result     the hook, to be closed with UtilHookClose; 0: there is none, and the last error is
 *            ERROR_INVALID_PARAMETER (no procedure), ERROR_NO_MORE_USER_HANDLES (1,024 hooks of both kinds
 *            are there), ERROR_NOT_ENOUGH_MEMORY, or what the system gave
 */
TVUT22_API UtilHook TVUT22_CALL UtilHookCBT(UtilCBTProc proc, UINT_PTR user);

/* Hooks Ctrl+Break. That is the virtual key VK_CANCEL going down in the messages that the calling thread
 * takes from its queue, and CTRL_BREAK_EVENT of a console.
 *
 * The newest hook is asked first: of the thread for a key, of the process for an event. For a key it is asked
 * on the hook's thread, for an event on the system's own, where it may still be running when UtilHookClose
 * returns.
 *
 * proc       its procedure, or null: it is only counted, see UtilHookBreakSeen
 * user       handed to the procedure
 *
 * Result     the hook, to be closed with UtilHookClose; 0 as for UtilHookCBT
 */
TVUT22_API UtilHook TVUT22_CALL UtilHookCtrlBreak(UtilBreakProc proc, UINT_PTR user);

/* Tells how often Ctrl+Break was seen since this was last asked. Each press counts once, by whichever way it
 * is seen first.
 *
 * Asked on the hook's thread it also looks at the keyboard while a window of this process is in front, so
 * that a long loop that handles no messages can be stopped. The procedure is not called by this: that is done
 * when the thread takes the key from its queue. Any thread may ask.
 *
 * hook       a hook that UtilHookCtrlBreak returned
 *
 * Result     how often, 0 and above
 *            UTIL_BAD_ARGUMENT  no such hook
 */
TVUT22_API INT TVUT22_CALL UtilHookBreakSeen(UtilHook hook);

/* Closes a hook. From within its own procedure, too, which ends as it is; no other call will come on this
 * thread.
 *
 * hook       a hook of either kind, or 0
 *
 * Result     UTIL_OK            also for 0
 *            UTIL_BAD_ARGUMENT  no hook; one whose thread has ended
 *            UTIL_WRONG_THREAD  called on another thread than the hook's; nothing was done
 */
TVUT22_API INT TVUT22_CALL UtilHookClose(UtilHook hook);

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

/* ---- Lists of handles ------------------------------------------------------------------------ */

/* What UtilHandleListMgr does. */
#define UTIL_HANDLES_ADD 1u    /* notes a handle that the caller has made */
#define UTIL_HANDLES_REMOVE 2u /* takes out a handle that the caller frees */
#define UTIL_HANDLES_COUNT 3u  /* counts entries */
#define UTIL_HANDLES_CHECK 4u  /* looks for handles that have been freed and not taken out */
#define UTIL_HANDLES_MARK 5u   /* gives the present moment a number */
#define UTIL_HANDLES_REPORT 6u /* reports entries in diagnostic lines */

/* Kinds of handles. */
#define UTIL_HANDLE_GDI 1u    /* pens, brushes, fonts, bitmaps, regions, palettes, DCs, metafiles */
#define UTIL_HANDLE_ICON 2u   /* icons and cursors */
#define UTIL_HANDLE_MENU 3u   /* menus */
#define UTIL_HANDLE_WINDOW 4u /* windows */
#define UTIL_HANDLE_KERNEL 5u /* all that CloseHandle closes */

/* Keeps the process's list of handles: which are there, who made them, which were freed twice. Any thread.
 * Reports are groups of diagnostic lines, with call stacks as in reports of heaps.
 *
 * When the last module has detached (UtilModuleOnDetach), what is left is reported once.
 *
 * command    UTIL_HANDLES_...
 * handle     the handle; for REPORT a number that MARK has given, or 0
 * kind       UTIL_HANDLE_...; 0 stands for any kind, except in ADD. MARK does not look at it.
 * label      for ADD: what the handle is for, of which 31 characters are kept; null: nothing
 *
 * Result     ADD, which notes the time and 16 frames of the caller's stack as well:
 *              UTIL_OK
 *              UTIL_EXISTS        the handle was in the list: it was freed without being taken out, which is
 *                                 reported; its new entry takes the place of the old one
 *              UTIL_TOO_LARGE     65,536 handles are in the list; reported once
 *              UTIL_FAILED        no memory
 *              UTIL_BAD_ARGUMENT  handle is 0
 *            REMOVE:
 *              UTIL_OK
 *              UTIL_NOT_FOUND     not in the list, or there with another kind; reported with the
 *                                 caller's stack
 *            COUNT: the number of entries
 *            CHECK: how many of them the system does not know any more; each is reported, none taken out
 *            MARK: 1, and one more with each call
 *            REPORT: how many entries were added after the mark
 *            All:
 *              UTIL_BAD_ARGUMENT  unknown command or kind; a mark that was not given
 *              UTIL_FAILED        no memory
 */
TVUT22_API INT TVUT22_CALL UtilHandleListMgr(UINT command, HANDLE handle, UINT kind, const wchar_t* label);

#endif
