// The types of --type: a table that get and set read.
#pragma once

#include "profile.h"

#include <tvut22/prof.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool::prof {

struct scValueType {
    std::string name;

    // Stores a value that is given as text; false, and nothing is stored, when it is not of the type.
    // Without a job it only checks the text.
    std::function<bool(ProfJob job, const wchar_t* path, std::string_view text)> store;

    // Reads a value as text: PROF_OK, PROF_NOT_FOUND (also: empty) or PROF_NOT_PARSED. Empty when the
    // library reads the type as another one.
    std::function<INT(ProfJob job, const wchar_t* path, std::string& text)> fetch;
};

// Throws std::out_of_range for an unknown name: the command line has been checked before.
const scValueType& ValueType(std::string_view name);

// The text that is stored for a value that the type takes.
std::wstring StoredText(const scValueType& type, const std::string& value);

// Reads stored texts as one of the fetchable types.
class clsTypedReader {
  public:
    explicit clsTypedReader(const scValueType& type) : type_(type), scratch_(clsProfile::MakeEmpty()) {}

    // As the type prints it; nothing when it is not of the type.
    std::optional<std::string> Read(const std::wstring& stored) const;

  private:
    const scValueType& type_;
    clsProfile scratch_; // one for all: making one costs more than any value
};

std::vector<std::string> StorableTypes();
std::vector<std::string> FetchableTypes();

} // namespace tool::prof
