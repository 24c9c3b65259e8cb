/* Util: the runtime of a product's modules. One header a subject, all of them here.
 *
 * Text is UTF-16 throughout; the calls carry no W after their names.
 */
#ifndef TVUT22_UTIL_H
#define TVUT22_UTIL_H

#include <tvut22/crash.h>
#include <tvut22/diagnostics.h>
#include <tvut22/docinfo.h>
#include <tvut22/download.h>
#include <tvut22/files.h>
#include <tvut22/heaps.h>
#include <tvut22/html.h>
#include <tvut22/locale.h>
#include <tvut22/modules.h>
#include <tvut22/results.h>
#include <tvut22/security.h>
#include <tvut22/text.h>
#include <tvut22/thread_pool.h>
#include <tvut22/window.h>
#include <tvut22/zip.h>

#endif
