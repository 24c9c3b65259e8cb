// Takes any bytes apart as an archive: nothing leaves the folder, nothing is larger than it says, nothing
// stays half done.
#include "files/file_name.h"
#include "require.h"
#include "unit/zip_support.h"

using namespace tvut;

namespace {

constexpr std::uint64_t limit = 1024 * 1024;

bool IsBelow(std::u16string_view path) {
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find(u'\\', start), path.size());
        if (!UtilpIsBareFileName(path.substr(start, end - start)))
            return false;
        start = end + 1;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string archive(reinterpret_cast<const char*>(data), size);
    DiagnosticLines().clear();
    clsMemoryTarget target;
    clsCaller caller;
    const UtilResult result = Extract(archive, &target, &caller, u"secret", limit);
    std::uint64_t bytes = 0;
    for (const auto& [path, file] : target.files) {
        bytes += file.bytes.size();
        Require(IsBelow(path));
    }
    Require(bytes <= limit && target.unfinished == 0);
    const auto wanted = std::ranges::count_if(
        caller.seen, [](const auto& seen) { return seen.entry.isQuestion && !seen.entry.isFolder; });
    Require(result != UtilResult::ok || std::cmp_equal(target.files.size(), wanted)); // two are never one
    const bool isFine = Extract(archive, nullptr, nullptr, u"secret", limit) == UtilResult::ok;
    Require(isFine == (result == UtilResult::ok) || result == UtilResult::noAccess); // a test says the same
    return 0;
}
