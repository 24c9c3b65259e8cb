// What the standard library calls when it must throw, in place of what its runtime would give it.
//
// The runtime's exceptions hold their texts in strings, and bring these in two forms, streams of random
// numbers and the messages of the C runtime: 60 KB, and a text that may have no memory. Here the texts stay
// where they are.
//
// Other compilers need none of this.
#ifdef __MINGW32__

#include "platform/exception.h"

#include <bits/functexcept.h>
#include <new>

using tvut::clsException;

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl58-cpp): the names are the runtime's
namespace std {

void __throw_bad_alloc() {
    throw bad_alloc();
}
void __throw_bad_array_new_length() {
    throw bad_array_new_length();
}
void __throw_logic_error(const char* what) {
    throw clsException(what);
}
void __throw_length_error(const char* what) {
    throw clsException(what);
}
void __throw_out_of_range_fmt(const char* what, ...) { // the text's numbers are not put in
    throw clsException(what);
}
void __throw_system_error(int) {
    throw clsException("a lock was used wrongly");
}

} // namespace std
// NOLINTEND(bugprone-reserved-identifier,cert-dcl58-cpp)

#endif
