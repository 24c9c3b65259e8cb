// The process's one list of jobs, used under the global lock.
#pragma once

#include "runtime/module_list.h"

namespace tvut {

clsModuleList& UtilpJobs() noexcept;

} // namespace tvut
