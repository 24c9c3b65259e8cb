// simpleini as a peer of loading.
#include "peers.h"

#define SI_IMPLEMENTATION // the header is declarations alone without it
#include <SimpleIni.h>

namespace bench {

struct clsSimpleIni::scState {
    CSimpleIniCaseW ini{true};
};

clsSimpleIni::clsSimpleIni() : state_(std::make_unique<scState>()) {}

clsSimpleIni::~clsSimpleIni() = default;

bool clsSimpleIni::LoadFile(const std::wstring& path) {
    return state_->ini.LoadFile(path.c_str()) == SI_OK;
}

std::size_t clsSimpleIni::CountItems() const {
    CSimpleIniCaseW::TNamesDepend sections;
    state_->ini.GetAllSections(sections);
    std::size_t items = 0;
    for (const auto& section : sections)
        items += state_->ini.GetSection(section.pItem)->size();
    return items;
}

} // namespace bench
