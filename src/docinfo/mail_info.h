// Properties of mail messages: their headers (RFC 5322).
#pragma once

#include "docinfo/doc_reader.h"

namespace tvut {

bool UtilpIsMail(std::string_view head) noexcept;
DocReader UtilpReadMail;

} // namespace tvut
