#include "prof/debug_list.h"

#include "prof/tree_walk.h"
#include "runtime/diagnostics.h"

namespace tvut {

namespace {

struct scDebugLines {
    void Item(const clsItem& item, std::uint32_t level) noexcept {
        clsDiagnosticLine().PutBlanks(level).Put(item.Name()).Put(u"=").Put(item.Value()).Put(u"\n").Write();
    }
    void BeginList(const clsItem& entry, std::uint32_t level) noexcept {
        clsDiagnosticLine().PutBlanks(level).Put(u"[").Put(entry.Name()).Put(u"]\n").Write();
    }
    void EndList(std::uint32_t) noexcept {}
};

} // namespace

void ProfpDebugList(const clsItemList& list) noexcept {
    if (UtilpDiagnosticsOn()) // a large profile is not walked for nobody
        ProfpWalk(list, 0, scDebugLines{});
}

} // namespace tvut
