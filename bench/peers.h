// The peers that live in other libraries, called through plain functions: their headers bring their own
// warnings and definitions, which stay in the one source file each.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace bench {

// A document of rapidxml, parsed in place: the tree points into the text, so both live here.
class clsRapidXml {
  public:
    explicit clsRapidXml(const std::wstring& xml);
    ~clsRapidXml();
    clsRapidXml(const clsRapidXml&) = delete;
    clsRapidXml& operator=(const clsRapidXml&) = delete;

    // The text of an element is its value and nothing else.
    void ParseWithoutDataNodes();
    // As parse<0> does: with a data node for each text as well.
    void ParseDefault();
    // Frees the tree (the text stays).
    void Clear();
    // How many elements have a text: to see that the work was done.
    std::size_t CountItems() const;

  private:
    struct scState;
    std::unique_ptr<scState> state_;
};

// simpleini's case-sensitive wide class; of its wide classes the fastest to load.
class clsSimpleIni {
  public:
    clsSimpleIni();
    ~clsSimpleIni();
    clsSimpleIni(const clsSimpleIni&) = delete;
    clsSimpleIni& operator=(const clsSimpleIni&) = delete;

    // Loads a UTF-8 file; false when that failed.
    bool LoadFile(const std::wstring& path);
    std::size_t CountItems() const;

  private:
    struct scState;
    std::unique_ptr<scState> state_;
};

} // namespace bench
