/* tvUT22: runtime library for 32-bit Windows desktop applications.
 *
 * This header pulls in one header a family; include it, or the family's own. All of them compile
 * as C11 and as C++17 and later.
 */
#ifndef TVUT22_TVUT22_H
#define TVUT22_TVUT22_H

#include <tvut22/prof.h>
#include <tvut22/text.h>

#endif
