/* The version of these headers, for callers and for resource scripts. The build takes
 * the library's own from here.
 *
 *     #if TVUT22_VERSION < (22 << 16 | 10)
 *     #error needs tvUT22 22.10
 *     #endif
 *
 * The library that a program runs with may be a newer one: UtilGetVersion(0) gives its TVUT22_VERSION. */
#ifndef TVUT22_VERSION_H
#define TVUT22_VERSION_H

#define TVUT22_VERSION_MAJOR 22
#define TVUT22_VERSION_MINOR 10
#define TVUT22_VERSION_TEXT "22.10"

#define TVUT22_VERSION (TVUT22_VERSION_MAJOR << 16 | TVUT22_VERSION_MINOR)

#endif
