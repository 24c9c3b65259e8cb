// Exports of the thread pool.
//
// At the end of the process they do nothing: any lock may be one that a killed thread held.
#include "exports/result_call.h"
#include "platform/loader.h"
#include "runtime/pool/pools.h"

#include <tvut22/thread_pool.h>

#include <type_traits>

using namespace tvut;

static_assert(std::is_same_v<UtilThreadPoolJob, PoolFunction>);
static_assert(UTIL_POOL_RUN == clsPool::run && UTIL_POOL_DISCARDED == clsPool::discarded);
static_assert(UTIL_POOL_FOREVER == clsPoolSignal::forever);

namespace {

std::uint32_t HandleOf(UtilThreadPool pool) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(pool));
}

} // namespace

UtilThreadPool TVUT22_CALL UtilThreadPoolOpen(const wchar_t* name, UINT threads, UINT flags) {
    if (PlatformProcessEnds() || !UtilpOnly(flags, UTIL_POOL_BACKGROUND))
        return nullptr;
    const clsLastErrorKept lastError;
    const unsigned wanted = threads == 0 ? PlatformProcessorCount() : threads;
    const unsigned most = wanted < clsPool::mostThreads ? wanted : clsPool::mostThreads;
    const std::uint32_t pool = UtilpOpenPool(UtilpView(name), most, (flags & UTIL_POOL_BACKGROUND) != 0);
    return reinterpret_cast<UtilThreadPool>(static_cast<std::uintptr_t>(pool));
}

INT TVUT22_CALL UtilThreadPoolAdd(UtilThreadPool pool, UtilThreadPoolJob job, UINT_PTR user) {
    if (PlatformProcessEnds())
        return UTIL_CANCELLED;
    if (!job)
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] { return UtilpAddToPool(HandleOf(pool), {job, user}); });
}

INT TVUT22_CALL UtilThreadPoolAbort(UtilThreadPool pool) {
    if (PlatformProcessEnds())
        return UTIL_OK;
    return UtilpResultOf([&] { return UtilpAbortPool(HandleOf(pool)); });
}

INT TVUT22_CALL UtilThreadPoolFinalize(UtilThreadPool pool, UINT milliseconds) {
    if (PlatformProcessEnds())
        return UTIL_OK;
    return UtilpResultOf(
        [&] { return UtilpFinalizePool(HandleOf(pool), milliseconds, !PlatformHoldsLoaderLock()); });
}

INT TVUT22_CALL UtilThreadPoolClose(UtilThreadPool pool) {
    if (PlatformProcessEnds() || !pool)
        return UTIL_OK;
    return UtilpResultOf([&] { return UtilpClosePool(HandleOf(pool), !PlatformHoldsLoaderLock()); });
}
