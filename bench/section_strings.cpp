// The string functions against those of the C runtime, on names and on pages of text.
#include "sections.h"

#include <tvut22/text.h>

#include <windows.h>

#include <algorithm>
#include <array>
#include <deque>
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

using Text = const wchar_t*;

// What is looked for stands at the texts' end, and what is compared differs in the case of its last letter.
struct scTexts {
    Text first, second;
    Text part;       // the first one's last characters, five at most
    wchar_t* to;     // room for twice the length
    unsigned length; // in characters
    unsigned bytes;
};

// Texts of one length that begin at every even address of a 16-byte block: code that moves blocks takes
// another way for many of them.
class clsAlignedTexts {
  public:
    static constexpr std::size_t alignments = 8;

    explicit clsAlignedTexts(std::size_t length) : length_(length), stride_((2 * length + 40) / 8 * 8 + 1) {
        const std::wstring first = std::wstring(length - 1, L'n') + L'z';
        const std::wstring second = std::wstring(length - 1, L'n') + L'Z';
        room_.resize(3 * alignments * stride_);
        for (std::size_t at = 0; at < alignments; ++at) {
            wchar_t* const a = room_.data() + 3 * at * stride_;
            wchar_t* const b = a + stride_;
            std::copy_n(first.c_str(), length + 1, a);
            std::copy_n(second.c_str(), length + 1, b);
            texts_[at] = {a,
                          b,
                          a + (length > 5 ? length - 5 : 0),
                          b + stride_,
                          static_cast<unsigned>(length),
                          static_cast<unsigned>(length * sizeof(wchar_t))};
        }
    }
    clsAlignedTexts(const clsAlignedTexts&) = delete;
    clsAlignedTexts& operator=(const clsAlignedTexts&) = delete;

    std::size_t Length() const { return length_; }

    // Nanoseconds of a call of the function, made as `call` says, over all alignments in turn.
    template <typename Call, typename Function>
    double PerCall(std::size_t calls, Call call, Function* function) const {
        Function* volatile opaque = function; // or the compiler would put its own code in the runtime's place
        function = opaque;
        std::size_t sum = 0;
        const double ns = Timed([&] {
            for (std::size_t done = 0; done < calls; ++done) {
                for (const scTexts& texts : texts_)
                    sum += Number(call(function, texts));
            }
        });
        Consume(sum);
        return ns / static_cast<double>(calls * alignments);
    }

  private:
    std::size_t length_;
    std::size_t stride_; // odd: the three texts of a set have alignments of their own, and so has each set
    std::vector<wchar_t> room_;
    std::array<scTexts, alignments> texts_;
};

struct scRatio {
    std::size_t length;
    double ours, theirs;
    double Value() const { return ours / theirs; }
};

class clsComparison {
  public:
    clsComparison(const scSettings& settings, clsReport& report) : settings_(settings), report_(report) {
        for (std::size_t length = 1; length <= longestShort; ++length)
            short_.emplace_back(length);
        for (const std::size_t length : {std::size_t{100}, std::size_t{10000}})
            long_.emplace_back(length);
    }

    // A call of ours and one of the runtime's, of a name and type.
    template <typename Theirs, typename Ours, typename Call>
    void Against(const char* ourName, Ours* ours, const char* theirName, Call call) {
        const auto address = GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), theirName);
        Require(address != nullptr, theirName);
        auto* const theirs = reinterpret_cast<Theirs*>(reinterpret_cast<void*>(address));
        const auto compare = [&](const clsAlignedTexts& texts, std::size_t length) {
            const std::size_t calls = (settings_.quick ? 10000 : 200000) / (length + 20) / 8 + 1;
            const Round rounds[] = {[&] { return texts.PerCall(calls, call, ours); },
                                    [&] { return texts.PerCall(calls, call, theirs); }};
            const auto ns = Race(rounds, settings_.rounds);
            return scRatio{length, ns[0], ns[1]};
        };
        std::vector<scRatio> ratios;
        for (std::size_t length = 1; length <= longestShort; ++length)
            ratios.push_back(compare(short_[length - 1], length));
        std::ranges::sort(ratios, {}, &scRatio::Value);
        const scRatio& median = ratios[ratios.size() / 2];
        const scRatio& worst = ratios.back();
        const std::string name = ourName;
        report_.Against(name + ", median of 1 to 64", median.ours, theirName, median.theirs, AtMost(1.05));
        report_.Against(name + ", worst: " + std::to_string(worst.length), worst.ours, theirName,
                        worst.theirs);
        for (const clsAlignedTexts& texts : long_) {
            const scRatio ratio = compare(texts, texts.Length());
            report_.Against(name + ", " + std::to_string(ratio.length), ratio.ours, theirName, ratio.theirs,
                            AtMost(1.05));
        }
    }

  private:
    static constexpr std::size_t longestShort = 64;

    const scSettings& settings_;
    clsReport& report_;
    std::deque<clsAlignedTexts> short_, long_;
};

void MeasureReading(clsComparison& comparison) {
    using Compare = int(Text, Text);
    using CompareSome = int(Text, Text, std::size_t);
    using Find = wchar_t*(Text, wchar_t);
    const auto both = [](auto* f, const scTexts& t) { return f(t.first, t.second); };
    const auto bounded = [](auto* f, const scTexts& t) { return f(t.first, t.second, t.length); };
    const auto last = [](auto* f, const scTexts& t) { return f(t.first, L'z'); };
    comparison.Against<std::size_t(Text)>("UtilStrlen", UtilStrlen, "wcslen",
                                          [](auto* f, const scTexts& t) { return std::size_t{f(t.first)}; });
    comparison.Against<Compare>("UtilStrcmp", UtilStrcmp, "wcscmp", both);
    comparison.Against<Compare>("UtilStricmp", UtilStricmp, "_wcsicmp", both);
    comparison.Against<CompareSome>("UtilStrncmp", UtilStrncmp, "wcsncmp", bounded);
    comparison.Against<CompareSome>("UtilStrnicmp", UtilStrnicmp, "_wcsnicmp", bounded);
    comparison.Against<Find>("UtilStrchr", UtilStrchr, "wcschr", last);
    comparison.Against<Find>("UtilStrrchr", UtilStrrchr, "wcsrchr", last);
    comparison.Against<wchar_t*(Text, Text)>("UtilStrstr", UtilStrstr, "wcsstr",
                                             [](auto* f, const scTexts& t) { return f(t.first, t.part); });
}

void MeasureWriting(clsComparison& comparison) {
    using Copy = wchar_t*(wchar_t*, Text);
    comparison.Against<Copy>("UtilStrcpy", UtilStrcpy, "wcscpy",
                             [](auto* f, const scTexts& t) { return f(t.to, t.first); });
    comparison.Against<Copy>("UtilStrcat", UtilStrcat, "wcscat", [](auto* f, const scTexts& t) {
        t.to[0] = L'\0';
        return f(t.to, t.first);
    });
    comparison.Against<wchar_t*(wchar_t*, Text, std::size_t)>(
        "UtilStrncpy", UtilStrncpy, "wcsncpy",
        [](auto* f, const scTexts& t) { return f(t.to, t.first, t.length + 1); });
    comparison.Against<void*(void*, const void*, std::size_t)>(
        "UtilMemcpy", UtilMemcpy, "memcpy",
        [](auto* f, const scTexts& t) { return f(t.to, t.first, t.bytes); });
    comparison.Against<void*(void*, int, std::size_t)>(
        "UtilMemset", UtilMemset, "memset", [](auto* f, const scTexts& t) { return f(t.to, 1, t.bytes); });
    comparison.Against<int(wchar_t*, std::size_t, Text, ...)>(
        "UtilSafeSprintf", UtilSafeSprintf, "_snwprintf",
        [](auto* f, const scTexts& t) { return f(t.to, t.length + 20, L"%s: %d", t.first, 42); });
}

} // namespace

void MeasureStrings(const scSettings& settings, clsReport& report) {
    report.Section("String functions: a call, by the length of its texts in characters");
    clsComparison comparison(settings, report);
    MeasureReading(comparison);
    MeasureWriting(comparison);
    report.Remark(
        "msvcrt is the runtime of the system at hand, called through a pointer as the library is. A figure "
        "is the mean over eight alignments. Of the lengths 1 to 64 the one with the median ratio is shown, "
        "and the worst one, without a goal: a function that is short on average may take its time there. "
        "The goal is the runtime's cost; 5 % is what one function differs by from itself.");
}

} // namespace bench
