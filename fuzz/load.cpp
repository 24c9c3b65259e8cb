// Loads any bytes in every reading mode; what loads must save and load again to the same text.
#include "require.h"

#include "unit/native_platform.h"

using namespace tvut;

namespace {

// Control characters in list names and items that look like comments do not survive the text form;
// after one more round nothing changes any more.
std::string SavedAgain(const std::string& bytes) {
    clsTree tree(true);
    Require(Load(tree, bytes).parsed);
    return Saved(tree);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const ReadMode mode : {ReadMode::detect, ReadMode::foreignXfdf, ReadMode::plainIni}) {
        DiagnosticLines().clear();
        clsTree tree(size % 2 == 0);
        if (!Load(tree, bytes, mode).parsed)
            continue;
        std::string saved = Saved(tree);
        if (saved == "cannot be saved")
            continue;
        int rounds = 0;
        for (std::string again; (again = SavedAgain(saved)) != saved; saved = std::move(again))
            Require(++rounds <= 64);
    }
    return 0;
}
