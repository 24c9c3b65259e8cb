// A document that is a ZIP archive of parts.
#pragma once

#include "docinfo/doc_info.h"
#include "docinfo/paged_source.h"
#include "text/xml/xml_reader.h"
#include "zip/zip_reader.h"

#include <string>
#include <string_view>

namespace tvut {

class clsZipPackage {
  public:
    static constexpr std::size_t largestPart = 4 * 1024 * 1024; // bytes of it that are looked at

    // Both must stay while the object does. Problems are reported to info.
    clsZipPackage(clsPagedSource& source, clsDocInfo& info);

    // False when it is no archive that can be read. Throws what the source throws, std::bad_alloc.
    bool Open();

    // By a part's name, "/" between components, without regard to ASCII case. Null when there is none.
    const scZipEntry* Find(std::string_view name);

    // What a part holds: as much of it as can be unpacked.
    std::string Part(const scZipEntry& entry);
    std::string Part(std::string_view name); // empty where there is none

  private:
    clsDocInfo& info_;
    clsZIPReader reader_;
};

// Says what is wrong with a part.
void UtilpNoteDamage(clsDocInfo& info, std::string_view part, std::string_view words);

// Has a part read; one that is not there is passed over. Damage does not keep other parts from being read.
template <class Read>
void UtilpReadXmlPart(clsZipPackage& package, std::string_view name, clsDocInfo& info, Read read) {
    const scZipEntry* const entry = package.Find(name);
    if (!entry)
        return;
    try {
        clsXmlReader xml(package.Part(*entry));
        read(xml);
    } catch (const clsXmlError& error) {
        UtilpNoteDamage(info, name, error.what());
    }
}

} // namespace tvut
