// The platform of the native build: what the core needs of a system, without one.
//
// The process's code page is Latin-1, others are what they are; diagnostic lines are collected for the tests.
#include "unit/native_platform.h"

#include "platform/code_page.h"
#include "platform/host.h"
#include "platform/language_order.h"
#include "platform/letter_case.h"
#include "platform/process_heap.h"
#include "platform/time_zone.h"
#include "runtime/call_stack.h"
#include "runtime/diagnostics.h"

#include <cstdlib>
#include <mutex>
#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace tvut {

namespace {

constexpr unsigned processCodePage = 1252;

// The number of characters; 0 for the process's code page and those that nobody knows.
std::size_t DecodeForeign(unsigned codePage, std::string_view bytes, char16_t* characters) {
    if (codePage == processCodePage || codePage == 0 || bytes.empty())
        return 0;
#ifdef _WIN32
    return static_cast<std::size_t>(
        MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()),
                            reinterpret_cast<wchar_t*>(characters), static_cast<int>(bytes.size())));
#else
    const iconv_t converter = iconv_open("UTF-16LE", ("CP" + std::to_string(codePage)).c_str());
    if (converter == iconv_t(-1))
        return 0;
    char* from = const_cast<char*>(bytes.data());
    char* to = reinterpret_cast<char*>(characters);
    std::size_t left = bytes.size(), room = 2 * left;
    iconv(converter, &from, &left, &to, &room);
    iconv_close(converter);
    return bytes.size() - room / 2;
#endif
}

} // namespace

std::vector<std::u16string>& DiagnosticLines() {
    static std::vector<std::u16string> lines;
    return lines;
}

bool UtilpDiagnosticsOn() noexcept {
    return true;
}

void UtilpWriteDiagnosticLine(std::u16string_view text) noexcept {
    static std::mutex lines; // threads of a pool write some, too
    try {
        const std::lock_guard lock(lines);
        DiagnosticLines().emplace_back(text);
    } catch (...) {
    }
}

std::u16string_view PlatformHostTag() noexcept {
    return u"host";
}

// Through malloc, so that the address sanitizer watches the records and finds those that are left.
void* PlatformProcessHeapAlloc(std::size_t bytes) noexcept {
    return std::calloc(1, bytes);
}

void PlatformProcessHeapFree(void* block) noexcept {
    std::free(block);
}

scCallStack* UtilpCaptureCallStack(std::size_t) noexcept {
    return static_cast<scCallStack*>(PlatformProcessHeapAlloc(sizeof(scCallStack)));
}

void UtilpReleaseCallStack(scCallStack* stack) noexcept {
    PlatformProcessHeapFree(stack);
}

std::size_t PlatformDecode(unsigned codePage, std::string_view bytes, char16_t* characters) {
    if (const std::size_t length = DecodeForeign(codePage, bytes, characters))
        return length;
    for (const char byte : bytes)
        *characters++ = static_cast<unsigned char>(byte);
    return bytes.size();
}

unsigned PlatformProcessCodePage() noexcept {
    return processCodePage;
}

unsigned PlatformOemCodePage() noexcept {
    return 437;
}

std::size_t PlatformEncodedSize(unsigned, std::u16string_view text) {
    return text.size();
}

std::size_t PlatformEncode(unsigned, std::u16string_view text, char* bytes, std::size_t) {
    for (const char16_t c : text)
        *bytes++ = c < 256 ? static_cast<char>(c) : '?';
    return text.size();
}

int PlatformCompareIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept {
    const auto upper = [](char16_t c) { return c >= u'a' && c <= u'z' ? c - 0x20 : c; };
    const auto less = [&](char16_t x, char16_t y) { return upper(x) < upper(y); };
    return std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(), less) -
           std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), less);
}

void PlatformToUpperCase(std::u16string_view text, char16_t* upper) noexcept {
    for (const char16_t c : text)
        *upper++ = c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 0x20) : c;
}

int PlatformCompareInLanguage(const char16_t*, std::u16string_view a, std::u16string_view b) noexcept {
    return a.compare(b);
}

// One hour before UTC, in summer and winter.
std::optional<scDateTime> PlatformLocalToUtc(const scDateTime& local) noexcept {
    scDateTime utc = local;
    utc.hour = static_cast<std::uint16_t>(local.hour == 0 ? 0 : local.hour - 1);
    return utc;
}

std::optional<scDateTime> PlatformUtcToLocal(const scDateTime& utc) noexcept {
    scDateTime local = utc;
    local.hour = static_cast<std::uint16_t>(utc.hour == 23 ? 23 : utc.hour + 1);
    return local;
}

} // namespace tvut
