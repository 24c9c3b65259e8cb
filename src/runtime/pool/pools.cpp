// A place is taken before a pool is made, and given back when that fails, so that 255 are never exceeded. A
// handle that is being used keeps its pool alive; closing a handle lets the pool go, which ends itself when
// the last of its runners has left.
#include "runtime/pool/pools.h"

#include "runtime/diagnostics.h"
#include "runtime/handle_table.h"

#include <new>

namespace tvut {

namespace {

// What a handle stands for. A pool stays for its runners after that.
struct scOpenPool {
    explicit scOpenPool(clsPool& opened) noexcept : pool(opened) {}
    ~scOpenPool() { pool.LetGo(); }
    scOpenPool(const scOpenPool&) = delete;
    scOpenPool& operator=(const scOpenPool&) = delete;

    clsPool& pool;
};

constexpr unsigned mostPools = 255;

// Many more slots than pools: a handle that was closed comes back after 2^24 others at the earliest, of which
// each slot has but 2^14.
constexpr std::size_t slots = 2048;
static_assert((slots - mostPools) * (1u << 14) >= 1u << 24);

constinit clsHandleTable<scOpenPool, HandleKind::threadPool, slots> pools;
constinit std::atomic<unsigned> openPools{0};

// ---- Lines -----------------------------------------------------------------------------------------

// "Error: UtilThreadPoolAdd('name'): 12 jobs do this", the number only where there is a text after it.
void Tell(std::u16string_view head, std::u16string_view pool, std::u16string_view text,
          std::size_t number = 0, std::u16string_view after = {}) noexcept {
    if (!UtilpDiagnosticsOn())
        return;
    clsDiagnosticLine line;
    line.Put(head).Put(u"('").Put(pool).Put(u"'): ").Put(text);
    if (!after.empty())
        line.Put(static_cast<std::int32_t>(number)).Put(after);
    line.Write();
}

// Why a call that waits did not.
void TellRefusal(std::u16string_view head, const clsPool& pool, const scPoolOutcome& outcome) noexcept {
    if (outcome.result == UtilResult::fromJob)
        Tell(head, pool.Name(), u"called from a job of this pool");
    else if (outcome.result == UtilResult::inLoader)
        Tell(head, pool.Name(), u"called from within the loader while ", outcome.left, u" jobs run");
}

// ---- Opening ---------------------------------------------------------------------------------------

bool TakePlace() noexcept {
    const bool taken = openPools.fetch_add(1, std::memory_order_relaxed) < mostPools;
    if (!taken)
        openPools.fetch_sub(1, std::memory_order_relaxed);
    return taken;
}

std::uint32_t Open(std::u16string_view name, unsigned threads, bool background) noexcept {
    std::unique_ptr<clsPool> pool(new (std::nothrow) clsPool(name, threads));
    if (!pool || !pool->UseThreads(PlatformMakePoolThreads(*pool, threads, background)))
        return 0;
    std::unique_ptr<scOpenPool> open(new (std::nothrow) scOpenPool(*pool));
    if (!open)
        return 0;
    (void)pool.release(); // it ends itself once nobody needs it
    return pools.Add(open);
}

} // namespace

std::uint32_t UtilpOpenPool(std::u16string_view name, unsigned threads, bool background) noexcept {
    name = name.substr(0, clsPool::longestName);
    if (!TakePlace()) {
        Tell(u"Error: UtilThreadPoolOpen", name, u"", mostPools, u" pools are open");
        return 0;
    }
    const std::uint32_t handle = Open(name, threads, background);
    if (handle == 0)
        openPools.fetch_sub(1, std::memory_order_relaxed);
    return handle;
}

// ---- Calls by handle -------------------------------------------------------------------------------

UtilResult UtilpAddToPool(std::uint32_t pool, scPoolJob job) noexcept {
    const auto use = pools.Use(pool);
    if (!use)
        return UtilResult::badArgument;
    const UtilResult result = use->pool.Add(job);
    if (result == UtilResult::tooLarge && use->pool.TellsTooLarge())
        Tell(u"Error: UtilThreadPoolAdd", use->pool.Name(), u"", clsPool::mostWaiting, u" jobs are waiting");
    return result;
}

UtilResult UtilpAbortPool(std::uint32_t pool) noexcept {
    const auto use = pools.Use(pool);
    if (!use)
        return UtilResult::badArgument;
    use->pool.Abort();
    return UtilResult::ok;
}

UtilResult UtilpFinalizePool(std::uint32_t pool, std::uint32_t milliseconds, bool mayWait) noexcept {
    const auto use = pools.Use(pool);
    if (!use)
        return UtilResult::badArgument;
    const scPoolOutcome outcome = use->pool.Finalize(milliseconds, mayWait);
    TellRefusal(u"Error: UtilThreadPoolFinalize", use->pool, outcome);
    return outcome.result;
}

UtilResult UtilpClosePool(std::uint32_t pool, bool mayWait) noexcept {
    const auto use = pools.Use(pool);
    if (!use)
        return UtilResult::badArgument;
    const scPoolOutcome outcome = use->pool.Close(mayWait);
    TellRefusal(u"Error: UtilThreadPoolClose", use->pool, outcome);
    if (outcome.result == UtilResult::fromJob)
        return outcome.result;
    if (pools.Close(pool)) // whoever is first
        openPools.fetch_sub(1, std::memory_order_relaxed);
    if (outcome.discards != 0)
        Tell(u"Warning: UtilThreadPoolClose", use->pool.Name(), u"", outcome.discards, u" jobs discarded");
    return outcome.result;
}

} // namespace tvut
