// The links of a page: where their addresses are shown.
#pragma once

#include "page_writer.h"
#include "preparation.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tool::html {

class clsLinkList {
  public:
    explicit clsLinkList(Links links) : links_(links) {}

    // Ends the link whose label has been written. Addresses that lead nowhere else, and those that the label
    // shows, are left out.
    void End(clsPageWriter& writer, std::u16string_view address);

    // The numbered addresses, each once.
    void WriteList(clsPageWriter& writer) const;

  private:
    std::size_t NumberOf(std::u16string_view address);

    Links links_;
    std::vector<const std::u16string*> addresses_; // the keys below, by number
    std::unordered_map<std::u16string, std::size_t> numbers_;
};

} // namespace tool::html
