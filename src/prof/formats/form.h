// The persistent forms of a profile: what each can do, and which one is meant.
//
// Adding a form is adding a file that defines a reader, a writer or both, and naming it in forms.cpp.
#pragma once

#include "platform/bytes.h"
#include "prof/formats/line_reader.h"
#include "prof/formats/load_warnings.h"
#include "prof/tree.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class IclsFormReader {
  public:
    virtual ~IclsFormReader() = default;
    // Parses all lines into a list. Throws clsLoadException, std::bad_alloc.
    virtual void Parse(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings) const = 0;
};

class IclsFormWriter {
  public:
    virtual ~IclsFormWriter() = default;
    // The exact number of bytes that Write will write.
    virtual std::uint64_t Measure(const clsItemList& root) const = 0;
    // bytes is what Measure gave. The sink is told of them when all memory that writing takes is at hand:
    // from then on old contents may be gone.
    virtual void Write(const clsItemList& root, std::uint64_t bytes, clsByteSink& sink) const = 0;
};

extern const IclsFormReader& g_textReader;
extern const IclsFormWriter& g_textWriter;
extern const IclsFormReader& g_textBehindMarkupReader;
extern const IclsFormReader& g_plainIniReader;
extern const IclsFormReader& g_xmlReader;
extern const IclsFormWriter& g_xmlWriter;
extern const IclsFormReader& g_xfdfReader;
extern const IclsFormWriter& g_xfdfWriter;
extern const IclsFormReader& g_foreignXfdfReader;

// The form that an input's first line that is not blank tells of.
const IclsFormReader& ProfpDetectForm(std::u16string_view firstLine, bool foreignXfdf);

// The form that the low four bits of save flags ask for.
const IclsFormWriter& ProfpFormToWrite(std::uint32_t flags);

} // namespace tvut
