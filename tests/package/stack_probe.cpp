// A function that keeps an SSE value on the stack, compiled as the library is.
//
// Whether the library's own code does so changes with every version of it and of the compiler; this
// shows that the flags protect it when it does.
#include <cstdint>
#include <emmintrin.h>

// How far the value is from where SSE instructions may expect it.
extern "C" int __stdcall MisalignmentOfAVector(int number) {
    __m128i value = _mm_set1_epi32(number);
    __m128i* volatile place = &value; // volatile: the value must really be somewhere
    return static_cast<int>(reinterpret_cast<std::uintptr_t>(place) % alignof(__m128i));
}
