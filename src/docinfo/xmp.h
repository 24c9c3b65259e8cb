// XMP packets (ISO 16684-1): properties of a document as RDF.
#pragma once

#include <string>

namespace tvut {

class clsDocInfo;

// Adds what a packet says, of a lesser rank than what the document says itself. Throws clsDocDamage,
// std::bad_alloc.
void UtilpReadXmp(std::string packet, clsDocInfo& info);

} // namespace tvut
