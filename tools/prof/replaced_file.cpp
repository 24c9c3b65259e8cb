// The library replaces a file when it writes the bytes of an item to it; so they take the way through one.
#include "replaced_file.h"

#include "profile.h"
#include "stream.h"
#include "text_io.h"

#include <new>

namespace tool::prof {

void WriteWholeFile(const std::string& file, std::string_view bytes) {
    constexpr const wchar_t* item = L"bytes";
    const clsProfile profile = clsProfile::MakeEmpty();
    ProfAppendStreamW(profile.Job(), nullptr, item, nullptr, MemoryStream(bytes).get());
    if (ProfGetStringLengthW(profile.Job(), nullptr, item) < 0)
        throw std::bad_alloc{};
    if (ProfGetFileW(profile.Job(), nullptr, item, nullptr, ToWide(file).c_str()) != PROF_OK)
        throw WhyNotSaved(file);
}

} // namespace tool::prof
