// Reads the XFDF form, on its own and where an XML profile holds it.
#pragma once

#include "prof/formats/line_reader.h"
#include "prof/formats/xml_tags.h"
#include "prof/item_list.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

class clsXfdfParser {
  public:
    clsXfdfParser(clsLineReader& lines, clsItemList& target) : lines_(lines), target_(target) {}

    // Reads a document: its contents begin with a line <xfdf ...> and end with </xfdf>.
    void ParseDocument();

    // Reads from after a line <xfdf ...> to </xfdf> or the end of the text.
    void ParseContents();

    // At the end: reports an input of which nothing was read, and values that have no name.
    void Finish(bool nothingRead, const clsLoadWarnings& warnings) const;

  private:
    struct scTag;
    static const scTag tags[];

    void ParseLine();
    void Skip();
    void BeginDocument();
    void EndDocument();
    void AppendValue();
    void BeginField();
    void EndField();
    void RequireContents(std::u16string_view message) const;
    [[noreturn]] void Fail(std::u16string_view message) const;

    clsLineReader& lines_;
    clsItemList& target_;
    bool inContents_ = false;
    std::vector<std::u16string> fields_; // the names of the fields that are open
    std::uint32_t namelessValues_ = 0;
    clsUnreadLine unread_;
    std::u16string buffer_;
};

} // namespace tvut
