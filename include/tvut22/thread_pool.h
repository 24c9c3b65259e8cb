/* Util: a thread pool, which runs many small jobs of a program on a few threads.
 *
 *     UtilThreadPool pool = UtilThreadPoolOpen(L"Export", 0, 0);
 *     for (UINT i = 0; i < count; ++i)
 *         UtilThreadPoolAdd(pool, ExportOne, (UINT_PTR)&reports[i]);
 *     UtilThreadPoolFinalize(pool, UTIL_POOL_FOREVER);     // all are done
 *     UtilThreadPoolClose(pool);
 *
 * Results are those of results.h. Any thread may call anything; no lock of the library is held while a job or
 * a discard runs.
 *
 * Open, Add and Abort may be called from a DllMain; jobs begin when the loader is free. Finalize and Close do
 * not wait on a thread that is in a DllMain: any job may need the loader, and would wait for that thread.
 *
 * Once the process is being shut down, from when its other threads are gone, every call returns UTIL_OK at
 * once, Open 0 and Add UTIL_CANCELLED, and calls nothing. A pool that nobody closed is no error then.
 *
 * While a pool is open the library stays loaded, so that no FreeLibrary takes the code from under a job.
 */
#ifndef TVUT22_THREAD_POOL_H
#define TVUT22_THREAD_POOL_H

#include <tvut22/calling.h>
#include <tvut22/results.h>

/* A pool: an opaque value of 32 bits, 0 for none. A closed one, or one that is no pool's, is refused. */
typedef struct UtilThreadPoolObject* UtilThreadPool;

/* Why a job is called. */
#define UTIL_POOL_RUN 0u       /* to do its work */
#define UTIL_POOL_DISCARDED 1u /* it will never run: it frees what "user" leads to */

/* A job. It is called exactly once for each Add that gave UTIL_OK: on a thread of the pool to run, or on the
 * thread that aborts or closes the pool to be discarded.
 *
 * reason     UTIL_POOL_RUN or UTIL_POOL_DISCARDED
 * user       as it was given to Add
 * abort      leads to a word that is 0 and becomes 1 once, when the pool is aborted or closed; valid until
 *            the job returns. Long jobs look at it now and then and return early. In a discard it is 1.
 *
 * A job may call Add and Abort of its own pool, and anything of other pools. Its thread has no message loop.
 * What it changes of the thread, such as COM or impersonation, it puts back; the thread's priority is put
 * back for it. An exception that leaves a job ends the process, as on any thread.
 */
typedef void(TVUT22_CALL* UtilThreadPoolJob)(UINT reason, UINT_PTR user, const volatile LONG* abort);

/* Flag of UtilThreadPoolOpen. */
#define UTIL_POOL_BACKGROUND 0x1u /* jobs run one step below normal priority */

/* Opens a pool. No thread is started: that is done when there is work, and threads that have been idle for
 * some seconds end.
 *
 * name       shown in diagnostic lines, at most 32 characters of it; need not be unique; null: empty
 * threads    the most jobs that run at a time, 1 to 256; 0: as many as the process has processors; more than
 *            256 count as 256
 * flags      0 or UTIL_POOL_BACKGROUND
 *
 * Result     the pool, to be closed with UtilThreadPoolClose; 0: an unknown flag, no memory, or 255 pools are
 *            open
 */
TVUT22_API UtilThreadPool TVUT22_CALL UtilThreadPoolOpen(const wchar_t* name, UINT threads, UINT flags);

/* Adds a job. Jobs begin in the order in which they were added: by one thread, or between threads in the
 * order in which their calls came to the pool.
 *
 * pool       a pool
 * job        called exactly once when the result is UTIL_OK, else never
 * user       handed to the job
 *
 * Result     UTIL_OK            the pool has the job
 *            UTIL_BAD_ARGUMENT  no open pool; job is null
 *            UTIL_FAILED        the system has no thread or no memory
 *            UTIL_TOO_LARGE     1,048,576 jobs are waiting
 *            UTIL_CANCELLED     the pool was aborted and not finalised since, or is being closed
 */
TVUT22_API INT TVUT22_CALL UtilThreadPoolAdd(UtilThreadPool pool, UtilThreadPoolJob job, UINT_PTR user);

/* Aborts a pool: jobs that wait are discarded, and it takes no more until it is finalised. They are discarded
 * in their order, on the calling thread, before the call returns. Jobs that run see their abort word become
 * 1, and are not waited for. A pool that is idle or aborted may be aborted; a job may abort its pool.
 *
 * pool       a pool
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  no open pool
 */
TVUT22_API INT TVUT22_CALL UtilThreadPoolAbort(UtilThreadPool pool);

/* For the time of UtilThreadPoolFinalize. */
#define UTIL_POOL_FOREVER 0xFFFFFFFFu

/* Waits until a pool is idle. That is when no job waits, runs or is being discarded; jobs that jobs add
 * meanwhile count as well. A pool that was aborted takes jobs again then. A thread that has windows answers
 * messages that other threads send to them while it waits; posted messages stay in its queue. Several threads
 * may wait at once.
 *
 * pool          a pool
 * milliseconds  how long to wait at most; 0: not at all; UTIL_POOL_FOREVER: without end
 *
 * Result        UTIL_OK            the pool was idle at one moment
 *               UTIL_BAD_ARGUMENT  no open pool
 *               UTIL_FROM_JOB      called from a job or a discard of this pool; nothing was done
 *               UTIL_IN_LOADER     called from within a DllMain while jobs wait or run; nothing was done
 *               UTIL_TIMEOUT       the time is over; jobs go on
 */
TVUT22_API INT TVUT22_CALL UtilThreadPoolFinalize(UtilThreadPool pool, UINT milliseconds);

/* Closes a pool: aborts it, waits without end as Finalize does, and makes the handle invalid. While it waits,
 * others that call Add get UTIL_CANCELLED, and others that call Finalize or Close wait with it; such a Close
 * returns UTIL_BAD_ARGUMENT.
 *
 * pool       a pool, or 0
 *
 * Result     UTIL_OK            also for 0
 *            UTIL_BAD_ARGUMENT  no open pool
 *            UTIL_JOBS_LEFT     jobs were waiting; this call discarded them
 *            UTIL_FROM_JOB      called from a job or a discard of this pool; nothing was done
 *            UTIL_IN_LOADER     called from within a DllMain while jobs run: what waited was discarded, the
 *                               handle is invalid, and the pool ends with the last of its jobs
 */
TVUT22_API INT TVUT22_CALL UtilThreadPoolClose(UtilThreadPool pool);

#endif
