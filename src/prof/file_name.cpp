#include "prof/file_name.h"

#include "platform/exception.h"
#include "text/regex.h"

#include <atomic>

namespace tvut {

namespace {

// A pattern that is compiled when it is first asked for. Not a local static: the compiler's guard around one
// takes a lock whose memory may not be had, and fails in ways that cannot be caught.
class clsPattern {
  public:
    explicit constexpr clsPattern(std::u16string_view pattern) noexcept : pattern_(pattern) {}
    ~clsPattern() { delete compiled_.load(std::memory_order_relaxed); }
    clsPattern(const clsPattern&) = delete;
    clsPattern& operator=(const clsPattern&) = delete;

    bool Matches(std::u16string_view text) const { return Compiled().Matches(text); }

  private:
    const clsRegEx& Compiled() const {
        const clsRegEx* compiled = compiled_.load(std::memory_order_acquire);
        if (compiled)
            return *compiled;
        auto ours = std::make_unique<const clsRegEx>(pattern_);
        const bool first = compiled_.compare_exchange_strong(compiled, ours.get(), std::memory_order_acq_rel);
        return first ? *ours.release() : *compiled;
    }

    std::u16string_view pattern_;
    mutable std::atomic<const clsRegEx*> compiled_{nullptr};
};

constinit const clsPattern fileName(uR"((?xi) ^
    (?!  (?: CON | PRN | AUX | NUL | COM[1-9] | LPT[1-9] )  (?: \. [^.]* )?  \z )
    [^<>:"/\\|?*\x00-\x1F]*  [^<>:"/\\|?*\x00-\x1F\ .]  \z)");

constinit const clsPattern bareName(uR"((?xi) ^
    (?!  (?: CON | PRN | AUX | NUL | CONIN\$ | CONOUT\$ | (?:COM|LPT)[1-9\xB9\xB2\xB3] ) \ * (?: \. | \z ) )
    [^<>:"/\\|?*\x00-\x1F]*  [^<>:"/\\|?*\x00-\x1F\ .]  \z)");

// What stands behind the last separator. A drive with a relative path behind it is no part of it.
std::u16string_view LastComponent(std::u16string_view path) {
    const std::u16string_view name = path.substr(path.find_last_of(u"\\/") + 1);
    const bool driveOnly = name.size() == path.size() && name.size() >= 2 && name[1] == u':';
    return driveOnly ? name.substr(2) : name;
}

} // namespace

bool ProfpIsFileName(std::u16string_view path) {
    return fileName.Matches(LastComponent(path));
}

void ProfpRequireFileName(std::u16string_view path) {
    if (!ProfpIsFileName(path))
        throw clsException("no file can have this name", reason::invalidName);
}

// Refuses what the system takes for a device though nobody reserves it: superscript figures, the console's
// two names, blanks or several extensions behind a name. The system drops blanks and dots at the end of a
// name, so such a one would name another file.
bool ProfpIsBareFileName(std::u16string_view name) {
    return bareName.Matches(name);
}

} // namespace tvut
