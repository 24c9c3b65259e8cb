// 200 reports are exported on a few threads, with a line that shows how far they are; a second batch is
// stopped in the middle of its work.
#include <tvut22/tvut22.hpp>

#include <atomic>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int reports = 200;

// What a report costs: some tenths of a millisecond of computing.
unsigned Export(int number) {
    unsigned sum = static_cast<unsigned>(number);
    for (int i = 0; i < 200000; ++i)
        sum = sum * 1664525u + 1013904223u;
    return sum;
}

void ShowProgress(int done) {
    std::fprintf(stderr, "\r%3d of %d reports", done, reports);
}

// A window would go on answering other threads during the wait, which is short, so that it can show the
// progress.
bool ExportAll(const tvut22::thread_pool& pool, std::vector<unsigned>& results) {
    std::atomic<int> done{0};
    for (int i = 0; i < reports; ++i) {
        const INT added = pool.add([&results, &done, i] {
            results[static_cast<std::size_t>(i)] = Export(i);
            ++done;
        });
        if (added != UTIL_OK)
            return false;
    }
    while (pool.finalize(50) == UTIL_TIMEOUT)
        ShowProgress(done);
    ShowProgress(done);
    std::fputc('\n', stderr);
    return done == reports;
}

// Each job owns a page, which is freed in any case: after the job, or when it is discarded.
void StopInTheMiddle(const tvut22::thread_pool& pool) {
    const auto page = std::make_shared<std::string>("a page");
    for (int i = 0; i < reports; ++i)
        pool.add([page](const volatile LONG& abort) {
            while (!abort) // a long job looks at this word
                Sleep(1);
        });
    pool.abort();
    std::printf("while it is aborted the pool takes no job: %d\n", pool.add([] {}));
    std::printf("all that ran are done: %d\n", pool.finalize());
    std::printf("pages that are still held: %ld\n", page.use_count() - 1);
}

} // namespace

int main() {
    tvut22::thread_pool pool(L"Export"); // as many threads as there are processors
    if (!pool)
        return 1;
    std::vector<unsigned> results(reports);
    if (!ExportAll(pool, results))
        return 1;
    int right = 0;
    for (int i = 0; i < reports; ++i)
        right += results[static_cast<std::size_t>(i)] == Export(i);
    std::printf("%d of %d reports are right\n", right, reports);
    StopInTheMiddle(pool);
    std::printf("closed: %d\n", pool.reset());
}
