// What to call to show a page of a help file: looked at as text alone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tvut {

enum class HelpViewer : std::uint8_t {
    none,
    compiled, // .chm: the system's HTML help
    browser,  // a page or an address
    shell,    // .pdf, .txt: whatever opens them
};

// By its beginning, where it is an address, else by its ending; in any case of letters.
HelpViewer UtilpHelpViewer(std::u16string_view file) noexcept;
bool UtilpIsWebAddress(std::u16string_view file) noexcept;

enum class HelpPage : std::uint8_t { topic, context, keyword };

struct scHelpRequest {
    HelpPage page;
    std::u16string_view text; // topic or keyword; empty: the first page, the index
    std::uint32_t id = 0;     // context
};

enum class HelpCall : std::uint8_t {
    none, // it has no such pages
    displayTopic,
    displayIndex,
    helpContext,
    keywordLookup,
    openAddress,
    openFile,
};

struct scHelpTarget {
    HelpCall call;
    std::u16string text; // the file, with the topic where there is one; or the address
};

// For a full path or an address. Throws std::bad_alloc.
scHelpTarget UtilpHelpTarget(std::u16string_view file, const scHelpRequest& request);

// The name of the folder for a copy of a file: 16 hexadecimal figures, the same in each process. Throws
// std::bad_alloc.
std::u16string UtilpHelpCopyFolder(std::u16string_view fullPath);

// Whether the stream Zone.Identifier of a file says that it comes from the internet, or from a site that is
// not trusted.
bool UtilpIsFromOutside(std::string_view zoneIdentifier) noexcept;

} // namespace tvut
