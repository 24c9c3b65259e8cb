// What the demangler writes its numbers with, in place of what the compiler's runtime would give it: a
// printing of everything, long doubles included, of 25 KB. Whole numbers are all that it writes.
#ifdef __MINGW32__

#include <cstdarg>
#include <cstdio>

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the runtime's
extern "C" int __mingw_vsprintf(char* text, const char* format, va_list arguments) {
    return __ms_vsprintf(text, format, arguments);
}

#endif
