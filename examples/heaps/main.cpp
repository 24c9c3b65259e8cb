// A module's heap, its C++ face, and what the library says when somebody misuses it: on purpose, an object is
// left, one is written past its end, one is freed twice.
#include <cstdio>
#include <cstring>
#include <string>
#include <tvut22/tvut22.hpp>
#include <vector>

namespace {

struct Document {
    explicit Document(int pageCount) : pages(pageCount) {}
    int pages;
};

void useWell(UtilHeap heap) {
    const auto document = tvut22::make_on<Document>(heap, 12);
    std::vector<int, tvut22::heap_allocator<int>> pages(tvut22::heap_allocator<int>{heap});
    for (int page = 1; page <= document->pages; ++page)
        pages.push_back(page);
    std::printf("%d pages on the heap\n", static_cast<int>(pages.size()));
}

void leak(UtilHeap heap) {
    auto* const text = static_cast<char*>(UtilHeapObjectAlloc(heap, 24, UTIL_HEAP_ZERO));
    std::strcpy(text, "nobody frees this");
}

void overrun(UtilHeap heap) {
    auto* const text = static_cast<char*>(UtilHeapObjectAlloc(heap, 8, UTIL_HEAP_ZERO));
    std::memcpy(text, "too long", 9); // the terminator has no room
    std::printf("freeing what was overrun: %d\n", UtilHeapObjectFree(heap, text));
}

void freeTwice(UtilHeap heap) {
    void* const block = UtilHeapObjectAlloc(heap, 16, 0);
    std::printf("freeing once: %d\n", UtilHeapObjectFree(heap, block));
    std::printf("freeing twice: %d\n", UtilHeapObjectFree(heap, block));
}

} // namespace

int main() {
    UtilModuleOnAttach(L"heaps.exe");
    UtilJob job = UtilJobOpen(L"EXAMPLE", UTIL_JOB_DEBUG_HEAPS);
    const UtilHeap heap = UtilHeapCreate(job, L"Documents", 0);
    useWell(heap);
    leak(heap);
    overrun(heap);
    freeTwice(heap);
    std::printf("closing the job: %d\n", UtilJobClose(job)); // deletes the heap, and says what was left
    UtilModuleOnDetach(L"heaps.exe");
}
