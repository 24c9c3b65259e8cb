// Takes any bytes apart as an archive: nothing leaves the folder, nothing is larger than it says, nothing stays
// half done.
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

const char* FaultOf(const clsMemoryTarget& target, const clsCaller& caller, UtilResult result) {
    std::uint64_t bytes = 0, wanted = 0;
    for (const auto& [path, file] : target.files) {
        bytes += file.bytes.size();
        if (!IsBelow(path))
            return "a file lies elsewhere";
    }
    for (const auto& seen : caller.seen)
        wanted += seen.entry.isQuestion && !seen.entry.isFolder ? 1 : 0;
    if (bytes > limit)
        return "more was unpacked than is allowed";
    if (target.unfinished != 0)
        return "a file is left half done";
    if (result == UtilResult::ok && target.files.size() != wanted)
        return "two files became one";
    return nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string archive(reinterpret_cast<const char*>(data), size);
    DiagnosticLines().clear();
    clsMemoryTarget target;
    clsCaller caller;
    const UtilResult result = Extract(archive, &target, &caller, u"secret", limit);
    Require(FaultOf(target, caller, result));
    const bool isFine = Extract(archive, nullptr, nullptr, u"secret", limit) == UtilResult::ok;
    Require(isFine == (result == UtilResult::ok) || result == UtilResult::noAccess ? nullptr
                                                                                    : "a test says something else");
    return 0;
}
