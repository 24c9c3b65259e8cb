#include "runtime/jobs.h"

#include "runtime/heap/heap_list.h"

namespace tvut {

namespace {

clsModuleList jobs(UtilpDestroyLeftHeaps);

} // namespace

clsModuleList& UtilpJobs() noexcept {
    return jobs;
}

} // namespace tvut
