/* Util: checked heaps.
 *
 * A heap is a private heap of the system with a name and an owner. On a DEBUG heap every object carries its
 * size, the time and the call stack of its allocation, and words before and after its data that show whether
 * somebody wrote where he should not. Damage is reported as diagnostic lines, answered by a result, and
 * survived; a heap that is deleted with objects left writes who allocated each of them.
 *
 *     UtilHeap heap = UtilHeapCreate(job, L"Documents", 0);
 *     void* page = UtilHeapObjectAlloc(heap, 4096, UTIL_HEAP_ZERO);
 *     ...
 *     UtilHeapObjectFree(heap, page);
 *     UtilHeapDelete(heap);
 *
 * Objects  cost 4 bytes each, DEBUG objects 32 and a record of 360 bytes for their call stack. Payloads
 *          are aligned to 4 bytes.
 * Null     heap 0 stands for the C runtime's allocator where a call says so; elsewhere it does nothing
 *          and returns UTIL_OK.
 * Threads  any thread may call: one lock for the process is held for the whole of a call.
 * Reports  appear while diagnostic output is on (UtilGetFlags); results do not depend on it. Frees fill
 *          what they free with 0xCC while it is on.
 * Damage   that has reached the system's own structures can make the system fail within a call: the call
 *          is answered like any other on a damaged object, and that heap is not entered again: it allocates
 *          no memory and takes none back until it is deleted.
 */
#ifndef TVUT22_HEAPS_H
#define TVUT22_HEAPS_H

#include <tvut22/modules.h>

/* A heap; 0 is none. */
typedef struct UtilHeapObject* UtilHeap;

/* ---- Results ------------------------------------------------------------------------------- */

#define UTIL_HEAP_FAILED (-2)        /* shrinking failed; not a heap's handle */
#define UTIL_HEAP_CORRUPTED (-3)     /* the system finds the heap damaged, or loses its way in it */
#define UTIL_HEAP_BAD_OBJECT (-6)    /* no object of this heap, a damaged one, or not to be freed */
#define UTIL_HEAP_NOT_SUPPORTED (-7) /* the system lacks the service, or the heap is not DEBUG */

/* ---- Flags --------------------------------------------------------------------------------- */

/* Of heaps. */
#define UTIL_HEAP_UNSERIALISED 0x10u   /* the system's heap takes no lock of its own */
#define UTIL_HEAP_EXCEPTIONS 0x20u     /* an allocation that fails raises the system's exception */
#define UTIL_HEAP_SILENT_DELETE 0x100u /* no report of objects left when the heap is deleted */
/* Of allocations. */
#define UTIL_HEAP_ZERO 0x1u     /* the payload is zeroed */
#define UTIL_HEAP_FILL 0x2u     /* the payload is filled with 0xF5 when it is not zeroed */
#define UTIL_HEAP_NO_STACK 0x4u /* a DEBUG object without a record of the call stack */
/* Of both. */
#define UTIL_HEAP_NEVER_DEBUG 0x40u /* not DEBUG, whatever the job, the heap or UTIL_HEAP_DEBUG asks for */
#define UTIL_HEAP_DEBUG 0x40000000u /* DEBUG */

/* ---- Heaps --------------------------------------------------------------------------------- */

/* Makes a heap. It is DEBUG by its own flag or the job's UTIL_JOB_DEBUG_HEAPS, unless it has
 * UTIL_HEAP_NEVER_DEBUG.
 *   job    its owner; closing the job's last reference deletes the heap
 *   name   shown in reports; 32 characters are kept. Null or empty is shown as (NULL). Need not be unique
 *   flags  UTIL_HEAP_...; 0x80 is refused
 * Result: the heap; 0 when refused, for a handle that is no job's, and when there is no memory. */
TVUT22_API UtilHeap TVUT22_CALL UtilHeapCreate(UtilJob job, const wchar_t* name, UINT flags);

/* Deletes a heap with all that is in it, and reports what was left.
 * Result: UTIL_OK, or UTIL_HEAP_FAILED for a handle that is no heap's. */
TVUT22_API INT TVUT22_CALL UtilHeapDelete(UtilHeap heap);

/* Has the system check the heap, or the block of one object, and checks every object of a DEBUG heap.
 *   payload   an object; null: the whole heap
 *   reserved  0
 * Result: UTIL_OK, UTIL_HEAP_CORRUPTED, UTIL_HEAP_BAD_OBJECT for a damaged object in a sound heap,
 * UTIL_HEAP_NOT_SUPPORTED, or UTIL_HEAP_FAILED for a handle that is no heap's. */
TVUT22_API INT TVUT22_CALL UtilHeapValidate(UtilHeap heap, void* payload, UINT reserved);

/* Gives memory that the heap does not need back to the system.
 *   reserved  0
 * Result: UTIL_OK, UTIL_HEAP_NOT_SUPPORTED, or UTIL_HEAP_FAILED, for a handle that is no heap's, too. */
TVUT22_API INT TVUT22_CALL UtilHeapShrink(UtilHeap heap, UINT reserved);

/* Return the size in bytes of the last block in use that a walk over the heap meets; it is not the sum.
 * Where the system cannot walk, UtilHeapSize returns the sum of the payloads of a DEBUG heap.
 * Result: bytes, or
 *   UTIL_HEAP_CORRUPTED      the walk did not meet every object
 *   UTIL_HEAP_NOT_SUPPORTED  the system cannot walk: UtilHeapSizeObjects, and UtilHeapSize of a heap that is
 *                            not DEBUG
 *   UTIL_HEAP_FAILED         a handle that is no heap's */
TVUT22_API INT TVUT22_CALL UtilHeapSize(UtilHeap heap);
TVUT22_API INT TVUT22_CALL UtilHeapSizeObjects(UtilHeap heap);

/* ---- Objects ------------------------------------------------------------------------------- */

/* Allocates an object; heap 0: from the C runtime, with UTIL_HEAP_ZERO and UTIL_HEAP_FILL alone.
 *   size      bytes of the payload, 0 and above; negative sizes fail, with a report
 *   flags     UTIL_HEAP_...
 *   tag       kept with a DEBUG object
 *   reserved  0
 * Result: the payload, to be freed with UtilHeapObjectFree on the same heap; null when there is no memory,
 * unless the heap has UTIL_HEAP_EXCEPTIONS. */
TVUT22_API void* TVUT22_CALL UtilHeapObjectAlloc(UtilHeap heap, INT size, UINT flags);
TVUT22_API void* TVUT22_CALL UtilHeapObjectAllocExt(UtilHeap heap, INT size, UINT flags, UINT tag,
                                                    UINT reserved);

/* Frees an object; heap 0: one from the C runtime.
 *   payload   as UtilHeapObjectAlloc returned it on the same heap; null is no object, but UTIL_OK with heap 0
 * Result: UTIL_OK, or UTIL_HEAP_BAD_OBJECT: nothing is freed then. */
TVUT22_API INT TVUT22_CALL UtilHeapObjectFree(UtilHeap heap, void* payload);

/* Returns the size of an object's payload; heap 0: of one from the C runtime.
 * Result: bytes; 0 when the system does not know them, and for a null payload of heap 0; or
 * UTIL_HEAP_BAD_OBJECT, with heap 0 only where nothing can be read. */
TVUT22_API INT TVUT22_CALL UtilHeapObjectSize(UtilHeap heap, void* payload);

#endif
