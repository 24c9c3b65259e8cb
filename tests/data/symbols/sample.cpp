// A module whose functions and lines are known; make.sh makes the files beside this one of it.
#include "sample.h"

namespace {

int shared = 1;

[[gnu::noinline]] int Local(int number) {
    shared += Twice(number);
    return shared;
}

} // namespace

namespace product {

[[gnu::noinline]] int Render(int pages) {
    int sum = 0;
    for (int i = 0; i < pages; ++i)
        sum += Local(i);
    return sum;
}

} // namespace product

extern "C" __declspec(dllexport) int __stdcall SampleStart(int pages) {
    return product::Render(pages) - 1;
}

#line 1234 "C:\\far\\away\\generated.inc"
extern "C" int __stdcall SampleEntry(void*, unsigned, void*) {
    return shared;
}
