// A profile in the making, as the text of an XML profile.
//
// The library's calls take paths: through them no name can be made that holds "/", nor one without a
// character. The XML form holds any name and value, so that what is read from it is to the unit what was put
// in.
#pragma once

#include "profile.h"

#include <string>
#include <string_view>

namespace tool::prof {

class clsXmlText {
  public:
    clsXmlText();
    void Item(std::wstring_view name, std::wstring_view value);
    void BeginList(std::wstring_view name);
    void EndList();

    // The profile that the text is; nothing is added after that. Throws std::bad_alloc.
    JobPtr Open() &&;

  private:
    void Append(std::wstring_view text);

    std::wstring text_;
};

} // namespace tool::prof
