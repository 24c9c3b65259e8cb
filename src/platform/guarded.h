// Running code that may touch memory that is not there.
//
// The system reports such an access as a structured exception, which the compiler for this target cannot
// catch; so the frame that does is made by hand, at the cost of some nanoseconds. The body is left where it
// stands: it must own nothing, hold nothing and throw nothing.
#pragma once

// The frame itself: in assembler, or by the compiler that can.
extern "C" unsigned long TvutGuardedCall(void (*body)(void*), void* argument);

namespace tvut {

// Calls the body, a lambda. 0, or the code of the exception that ended it: an access violation, a guard
// page, which is one again afterwards, a page that could not be read, damage that the system's heap has
// found, or memory that has run out.
template <class Body>
unsigned long PlatformGuarded(Body& body) noexcept {
    return TvutGuardedCall([](void* argument) { (*static_cast<Body*>(argument))(); }, &body);
}

} // namespace tvut
