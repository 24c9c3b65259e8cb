/* Util: what every window program needs: subclasses that come off cleanly, hooks.
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
 * Results are those of results.h. Handles are opaque values of 32 bits, 0 for none; one that is closed, or of
 * another kind, is refused. Callbacks get "user" as it was given and are called with no lock of the library
 * held; an exception that leaves one ends the process.
 *
 * While a subclass or a hook is there the library stays loaded; the last one lets it go about a second later.
 */
#ifndef TVUT22_WINDOW_H
#define TVUT22_WINDOW_H

#include <tvut22/calling.h>
#include <tvut22/results.h>

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
 * are there), ERROR_NOT_ENOUGH_MEMORY, or what the system gave
 */
TVUT22_API UtilHook TVUT22_CALL UtilHookCBT(UtilCBTProc proc, UINT_PTR user);

/* Looks out for Ctrl+Break: the virtual key VK_CANCEL going down in the messages that the calling thread
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

/* Tells how often Ctrl+Break was seen since the last ask. Each press counts once, by whichever way it is seen
 * first.
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

#endif
