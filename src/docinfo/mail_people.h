// The people of a mail header: address lists (RFC 5322, 3.4).
#pragma once

#include <string>
#include <string_view>

namespace tvut {

// Takes the next person off the front of a list, as "Name <address>" or what there is of the two; empty at
// its end. Groups are their members. Throws std::bad_alloc.
std::u16string UtilpTakePerson(std::string_view& list);

} // namespace tvut
