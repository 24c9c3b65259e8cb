/* Util: results that calls of several families share. A name means the same in all of them.
 *
 * Profiles, heaps, jobs and conversions between bytes and text have results of their own, beside their
 * declarations.
 */
#ifndef TVUT22_RESULTS_H
#define TVUT22_RESULTS_H

#define UTIL_OK 0               /* success */
#define UTIL_YES 1              /* an answer */
#define UTIL_NO 0               /* an answer */
#define UTIL_BAD_ARGUMENT (-2)  /* null where something is wanted, an unknown flag, no handle of this kind */
#define UTIL_NO_ACCESS (-3)     /* denied, or in use by somebody */
#define UTIL_FAILED (-4)        /* the system failed, or memory has run out */
#define UTIL_DAMAGED (-5)       /* not what it claims to be */
#define UTIL_NOT_FOUND (-6)     /* there is no such thing */
#define UTIL_TOO_LARGE (-7)     /* beyond a bound */
#define UTIL_NOT_SUPPORTED (-8) /* of a kind that is not known */
#define UTIL_CANCELLED (-9)     /* a callback or an abort wanted it */
#define UTIL_UNSAFE (-10)       /* it would lead where it must not: out of the folder, from https to http */
#define UTIL_BAD_PASSWORD (-11) /* missing or wrong */
#define UTIL_EXISTS (-12)       /* it is there already */
#define UTIL_JOBS_LEFT (-13)    /* jobs were discarded */
#define UTIL_FROM_JOB (-14)     /* not possible from within a job */
#define UTIL_IN_LOADER (-15)    /* not possible while the thread loads or unloads a library */
#define UTIL_TIMEOUT (-16)      /* the time is over */
#define UTIL_WRONG_THREAD (-17) /* another thread has to make this call */
#define UTIL_NOT_PARSED (-18)   /* the text cannot be read as what it should be */
#define UTIL_SERVER_REFUSED (-19) /* the server said no */
#define UTIL_MISMATCH (-20)       /* not what was expected */

#endif
