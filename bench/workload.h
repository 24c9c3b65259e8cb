// The profile that the sections work on: 1,000 lists, each with the same 100 names and values of four
// kinds, and its text in the forms that the library and its peers read.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace bench {

inline constexpr std::size_t listsOfWork = 1000;
inline constexpr std::size_t itemsOfList = 100;
inline constexpr std::size_t itemsOfWork = listsOfWork * itemsOfList;

struct scWorkList {
    std::wstring name;
    std::vector<std::pair<std::wstring, std::wstring>> items;
};
using Work = std::vector<scWorkList>;

// The same at every call.
Work MakeWork();

// The text form of a profile, with its byte-order mark, to the byte what saving it writes.
std::wstring ProfileText(const Work& work);

// <list name="..."><item name="...">value</item>...: no declaration, no white space between elements.
std::wstring XmlText(const Work& work);

// One section a list, UTF-8.
std::string IniText(const Work& work);

// A name of about 12 characters; the first 100 are those of the work's lists, all differ.
std::wstring NameAt(std::size_t index);

// Names [first, first + count) as callers hold them: NUL-terminated texts, one after the other.
class clsNames {
  public:
    clsNames(std::size_t first, std::size_t count, const std::wstring& prefix = {});
    const wchar_t* operator[](std::size_t index) const { return text_.c_str() + offsets_[index]; }
    std::size_t size() const { return offsets_.size(); }

    // The same names in an order that defeats the prefetcher, the same at every call.
    void Shuffle();

  private:
    std::wstring text_;
    std::vector<std::size_t> offsets_;
};

} // namespace bench
