/* How diagnostic lines reach a viewer: for those who write one, or a program that sends to one.
 *
 * A viewer publishes LogpanSharedInfo in a named file mapping and receives one UDP datagram or more a
 * line on the loopback address. Senders look for the mapping once a second, so a viewer may start and
 * end at any time; while it runs it may change every field but the first, with aligned 32-bit writes.
 *
 * Senders also know an older transport, used while no shared info is published: a mailslot that takes
 * 8-bit text, and a small mapping with the handle of the viewer's window.
 *
 * All numbers are little-endian. Nothing a viewer publishes can make a sender fail or wait.
 */
#ifndef TVUT22_VIEWER_H
#define TVUT22_VIEWER_H

#include <windows.h>

/* The mapping of the shared info. Senders try the first name, then the second. */
#define LOGPAN_SHARED_INFO_LOCAL L"Local\\LOGPANSharedData"
#define LOGPAN_SHARED_INFO_GLOBAL L"Global\\LOGPANSharedData"

/* Published by the viewer, read by senders before every line. */
typedef struct LogpanSharedInfo {
    UINT32 size;            /* bytes of the structure: 24, or more when a viewer adds fields of its own */
    UINT32 port;            /* UDP port on the loopback address (IPv4), host byte order; 0: none */
    UINT64 mask;            /* not 0: the viewer wants lines */
    UINT32 largestDatagram; /* bytes of the largest datagram that it takes, header included; less than
                               512 counts as 512, more than 65507 as 65507 */
    UINT32 window;          /* the viewer's window, or 0 */
} LogpanSharedInfo;

#define LOGPAN_TAG_LENGTH 32

/* The first bytes of every datagram; the text follows. A line too long for one datagram continues in
 * the next ones: each repeats the header, with the same time, thread and sequence. */
typedef struct LogpanPacketHeader {
    UINT32 headerSize;            /* 112 */
    SYSTEMTIME time;              /* local time of the line */
    WCHAR tag[LOGPAN_TAG_LENGTH]; /* the module's tag, terminated; empty: none */
    UINT32 thread;                /* the writing thread's id */
    UINT32 processor;             /* the processor it ran on */
    UINT32 sequence;              /* '0' to '9': the last digit of the process's line counter */
    UINT32 reserved;              /* 0 */
    UINT32 kind;                  /* 1: a line */
    UINT32 subKind;               /* 0 */
    UINT32 textBytes;             /* bytes of UTF-16 text after the header, not terminated. A line's
                                     first text begins with its indentation, a blank a level. */
} LogpanPacketHeader;

/* The older transport. A message is one line, or a piece of at most 510 characters of one, in the
 * sender's code page. */
#define LOGPAN_MAILSLOT L"\\\\.\\mailslot\\logpan"
#define LOGPAN_GLOBAL_DATA L"LOGPANGlobalData" /* a mapping of 4 bytes: the viewer's window */
#define LOGPAN_WINDOW_CLASS L"QmzClsLOGPAN16"  /* its class */

#endif
