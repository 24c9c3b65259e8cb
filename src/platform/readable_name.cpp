// The demangler of the compiler's runtime hands the text on in pieces and works on its stack alone, so names
// are readable where no memory is left, too. It takes stack by the name's length, which is therefore
// limited. What it cannot read, such as names of other compilers, stays as it is.
#include "platform/readable_name.h"

#ifdef __GNUC__
// Of the compiler's runtime, as __cxa_demangle, but it allocates nothing: the text comes in pieces. 0 when
// the name was a mangled one.
//
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): the name is the runtime's
extern "C" int __gcclibcxx_demangle_callback(const char* name, void (*take)(const char*, std::size_t, void*),
                                             void* taker);
#endif

namespace tvut {

namespace {

constexpr std::size_t longest = 1000; // characters; what is deeply nested takes much stack

// A text that ends where its buffer does.
class clsCutText {
  public:
    explicit clsCutText(std::span<char> buffer) noexcept : buffer_(buffer) {}
    std::string_view View() const noexcept { return {buffer_.data(), length_}; }

    static void Take(const char* text, std::size_t length, void* self) noexcept {
        auto& cut = *static_cast<clsCutText*>(self);
        cut.length_ += std::string_view(text, length)
                           .copy(cut.buffer_.data() + cut.length_, cut.buffer_.size() - cut.length_);
    }

  private:
    std::span<char> buffer_;
    std::size_t length_ = 0;
};

bool Demangle([[maybe_unused]] const char* name, [[maybe_unused]] clsCutText& readable) noexcept {
#ifdef __GNUC__
    return __gcclibcxx_demangle_callback(name, clsCutText::Take, &readable) == 0;
#else
    return false;
#endif
}

} // namespace

std::string_view PlatformReadableName(std::string_view linked, std::span<char> buffer) noexcept {
    char name[longest + 1];
    if (!linked.starts_with("_Z") || linked.size() > longest)
        return linked;
    // "@8" after it says how many bytes of arguments the function takes off the stack.
    const std::size_t length = linked.substr(0, linked.find('@')).copy(name, longest);
    name[length] = 0;
    clsCutText readable(buffer);
    return Demangle(name, readable) ? readable.View() : linked;
}

} // namespace tvut
