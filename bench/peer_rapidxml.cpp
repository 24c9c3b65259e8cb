// rapidxml as a peer of loading, and of freeing what was loaded.
#include "peers.h"

#include <rapidxml/rapidxml.hpp>

namespace bench {

struct clsRapidXml::scState {
    std::wstring text;
    rapidxml::xml_document<wchar_t> document;
};

clsRapidXml::clsRapidXml(const std::wstring& xml) : state_(std::make_unique<scState>()) {
    state_->text = xml;
}

clsRapidXml::~clsRapidXml() = default;

void clsRapidXml::ParseWithoutDataNodes() {
    state_->document.parse<rapidxml::parse_no_data_nodes>(state_->text.data());
}

void clsRapidXml::ParseDefault() {
    state_->document.parse<rapidxml::parse_default>(state_->text.data());
}

void clsRapidXml::Clear() {
    state_->document.clear();
}

std::size_t clsRapidXml::CountItems() const {
    std::size_t items = 0;
    for (auto* list = state_->document.first_node()->first_node(); list; list = list->next_sibling())
        for (auto* item = list->first_node(); item; item = item->next_sibling())
            items += item->value_size() != 0;
    return items;
}

} // namespace bench
