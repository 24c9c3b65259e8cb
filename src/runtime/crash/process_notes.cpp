#include "runtime/crash/preparation.h"

namespace tvut {

namespace {

constinit clsNotes notes;

} // namespace

clsNotes& UtilpNotes() noexcept {
    return notes;
}

} // namespace tvut
