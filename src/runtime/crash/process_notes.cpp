// Part of the image, made by no constructor: notes may be set before any has run, and are read when nothing
// can be made any more.
#include "runtime/crash/preparation.h"

namespace tvut {

namespace {

constinit clsNotes notes;

} // namespace

clsNotes& UtilpNotes() noexcept {
    return notes;
}

} // namespace tvut
