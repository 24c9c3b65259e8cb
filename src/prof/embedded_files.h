// Files that a profile carries: bytes as an item, and "File.Entry" lists with a name beside the bytes.
#pragma once

#include "platform/bytes.h"
#include "prof/item_list.h"

#include <string>
#include <string_view>

namespace tvut {

class clsPackedBytes;
class clsPatience;

// A source's bytes, compressed and enciphered, on their way to an item. Throws what the source throws,
// clsException for more bytes than can be read again, std::bad_alloc.
clsPackedBytes ProfpPackBytes(clsByteSource& source, std::u16string_view key);
clsPackedBytes ProfpPackFile(const std::u16string& file, std::u16string_view key);
clsPackedBytes ProfpPackFile(const std::u16string& file, std::u16string_view key, clsPatience& patience);
void ProfpAppendBytes(clsItemList& start, std::u16string_view path, const clsPackedBytes& bytes);

// Writes the bytes that a text stands for to a sink, and finishes it. Throws clsException for a text that
// does not decode, what the sink throws, std::bad_alloc.
void ProfpWriteBytes(std::u16string_view text, std::u16string_view key, clsByteSink& sink);

// Makes or replaces a file with the bytes that a text stands for. Unless all of them are there, nothing
// is made and the file that was there stays. Throws, after a diagnostic line, when that fails.
void ProfpWriteFile(const std::u16string& file, std::u16string_view text, std::u16string_view key);

// Appends an entry for each file that a list of patterns stands for. Throws when one could not be read; those
// before it are there.
void ProfpAppendFiles(clsItemList& list, std::u16string_view patterns, std::u16string_view key);

// Writes every entry of a list into a folder, whatever happens to the others. Throws in the end, with the
// last failure's reason, when one of them could not be written.
void ProfpExtractFiles(clsItemList& list, std::u16string_view folder, std::u16string_view key);

} // namespace tvut
