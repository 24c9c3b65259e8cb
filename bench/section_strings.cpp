// The string functions against those of the C runtime, on names and on pages of text.
#include "sections.h"

#include <tvut22/text.h>

#include <windows.h>

#include <vector>

namespace bench {

namespace {

std::size_t Number(std::size_t value) {
    return value;
}
std::size_t Number(int value) {
    return static_cast<std::size_t>(value);
}
std::size_t Number(const void* value) {
    return reinterpret_cast<std::size_t>(value);
}

template <typename Call, typename Function>
double PerCall(std::size_t calls, Call& call, Function* function) {
    Function* volatile opaque = function; // or the compiler would put its own code in the runtime's place
    function = opaque;
    std::size_t sum = 0;
    const double ns = Timed([&] {
        for (std::size_t done = 0; done < calls; ++done)
            sum += Number(call(function));
    });
    Consume(sum);
    return ns / static_cast<double>(calls);
}

class clsComparison {
  public:
    clsComparison(const scSettings& settings, clsReport& report, std::size_t length)
        : settings_(settings), report_(report), length_(length),
          calls_((settings.quick ? 100000 : 4000000) / (length + 20) + 1) {}

    // One call, made through our function and through the runtime's of a name and type.
    template <typename Theirs, typename Ours, typename Call>
    void Against(const char* ourName, Ours* ours, const char* theirName, Call call) {
        const auto address = GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), theirName);
        Require(address != nullptr, theirName);
        auto* const theirs = reinterpret_cast<Theirs*>(reinterpret_cast<void*>(address));
        const Round rounds[] = {[&] { return PerCall(calls_, call, ours); },
                                [&] { return PerCall(calls_, call, theirs); }};
        const auto ns = Race(rounds, settings_.rounds);
        const std::string length = ", " + std::to_string(length_);
        report_.Against(ourName + length, ns[0], theirName, ns[1], AtMost(1.05));
    }

  private:
    const scSettings& settings_;
    clsReport& report_;
    std::size_t length_;
    std::size_t calls_;
};

using Text = const wchar_t*;

// Two texts that differ in the case of their last letter only.
void MeasureReading(clsComparison& comparison, std::size_t length) {
    const std::wstring first = std::wstring(length - 1, L'n') + L'z';
    const std::wstring second = std::wstring(length - 1, L'n') + L'Z';
    const std::wstring lastFive = first.substr(length - 5);
    const Text a = first.c_str(), b = second.c_str(), part = lastFive.c_str();
    const auto count = static_cast<unsigned>(length);
    using Compare = int(Text, Text);
    using CompareSome = int(Text, Text, std::size_t);
    using Find = wchar_t*(Text, wchar_t);
    const auto both = [&](auto* f) { return f(a, b); };
    const auto bounded = [&](auto* f) { return f(a, b, count); };
    const auto last = [&](auto* f) { return f(a, L'z'); };
    comparison.Against<std::size_t(Text)>("UtilStrlen", UtilStrlen, "wcslen",
                                          [&](auto* f) { return std::size_t{f(a)}; });
    comparison.Against<Compare>("UtilStrcmp", UtilStrcmp, "wcscmp", both);
    comparison.Against<Compare>("UtilStricmp", UtilStricmp, "_wcsicmp", both);
    comparison.Against<CompareSome>("UtilStrncmp", UtilStrncmp, "wcsncmp", bounded);
    comparison.Against<CompareSome>("UtilStrnicmp", UtilStrnicmp, "_wcsnicmp", bounded);
    comparison.Against<Find>("UtilStrchr", UtilStrchr, "wcschr", last);
    comparison.Against<Find>("UtilStrrchr", UtilStrrchr, "wcsrchr", last);
    comparison.Against<wchar_t*(Text, Text)>("UtilStrstr", UtilStrstr, "wcsstr",
                                             [&](auto* f) { return f(a, part); });
}

void MeasureWriting(clsComparison& comparison, std::size_t length) {
    const std::wstring text(length, L'n');
    std::vector<wchar_t> room(2 * length + 2);
    const Text from = text.c_str();
    wchar_t* const to = room.data();
    const auto bytes = static_cast<unsigned>(length * sizeof(wchar_t));
    using Copy = wchar_t*(wchar_t*, Text);
    comparison.Against<Copy>("UtilStrcpy", UtilStrcpy, "wcscpy", [&](auto* f) { return f(to, from); });
    comparison.Against<Copy>("UtilStrcat", UtilStrcat, "wcscat", [&](auto* f) {
        to[0] = L'\0';
        return f(to, from);
    });
    comparison.Against<wchar_t*(wchar_t*, Text, std::size_t)>(
        "UtilStrncpy", UtilStrncpy, "wcsncpy",
        [&](auto* f) { return f(to, from, static_cast<unsigned>(length + 1)); });
    comparison.Against<void*(void*, const void*, std::size_t)>("UtilMemcpy", UtilMemcpy, "memcpy",
                                                               [&](auto* f) { return f(to, from, bytes); });
    comparison.Against<void*(void*, int, std::size_t)>("UtilMemset", UtilMemset, "memset",
                                                       [&](auto* f) { return f(to, 1, bytes); });
    comparison.Against<int(wchar_t*, std::size_t, Text, ...)>(
        "UtilSafeSprintf", UtilSafeSprintf, "_snwprintf",
        [&](auto* f) { return f(to, static_cast<unsigned>(length + 20), L"%s: %d", from, 42); });
}

} // namespace

void MeasureStrings(const scSettings& settings, clsReport& report) {
    report.Section("String functions: a call, by the length of its texts in characters");
    for (const std::size_t length : {std::size_t{12}, std::size_t{100}, std::size_t{10000}}) {
        clsComparison comparison(settings, report, length);
        MeasureReading(comparison, length);
        MeasureWriting(comparison, length);
    }
    report.Remark(
        "msvcrt is the runtime of the system at hand, called through a pointer as the library is. What is "
        "looked for is the text's end; what is compared differs in its last character. The goal is the "
        "runtime's cost; 5 % is what one "
        "function differs by from itself.");
}

} // namespace bench
