#include "platform/readable_name.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#ifdef __GNUC__
#include <cxxabi.h>
#endif

namespace tvut {

namespace {

struct scFreed {
    void operator()(char* block) const noexcept { std::free(block); }
};
using clsAllocatedText = std::unique_ptr<char, scFreed>;

constexpr std::size_t longest = 1000; // characters; what is deeply nested takes much stack

// Null for what is no mangled name.
clsAllocatedText Demangle(const char* name) noexcept {
#ifdef __GNUC__
    int status = 0;
    return clsAllocatedText(abi::__cxa_demangle(name, nullptr, nullptr, &status));
#else
    return (void)name, clsAllocatedText();
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
    const clsAllocatedText readable = Demangle(name);
    if (!readable)
        return linked;
    return {buffer.data(), std::string_view(readable.get()).copy(buffer.data(), buffer.size())};
}

} // namespace tvut
