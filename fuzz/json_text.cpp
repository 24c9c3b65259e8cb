// Reads any text as JSON: it is refused with one of its lines, or what was read and is written comes back as
// it was. Bytes beyond ASCII are halves of surrogate pairs, first ones and second ones.
#include "require.h"

#include "json_reader.h"
#include "json_text.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

using namespace tool;
using tvut::Require;

namespace {

class clsWriter final : public IclsJsonEvents {
  public:
    explicit clsWriter(LoneSurrogates surrogates) : surrogates_(surrogates) {}

    void Begin(wchar_t bracket) override {
        Plain({&bracket, 1});
        open_ += bracket;
    }
    void End() override {
        Require(!open_.empty());
        json_ += open_.back() == L'{' ? L'}' : L']';
        open_.pop_back();
    }
    void Name(std::wstring_view name) override {
        Require(open_.ends_with(L'{'));
        Text(name);
        json_ += L':';
    }
    void Text(std::wstring_view text) override {
        Separate();
        AppendJsonText(json_, text, surrogates_);
    }
    void Plain(std::wstring_view text) override {
        Separate();
        json_ += text;
    }

    std::wstring Take() && {
        Require(open_.empty());
        return std::move(json_);
    }

  private:
    void Separate() {
        constexpr std::wstring_view noValue = L"[{:";
        if (!json_.empty() && noValue.find(json_.back()) == noValue.npos)
            json_ += L',';
    }

    LoneSurrogates surrogates_;
    std::wstring json_;
    std::wstring open_;
};

// Nothing for what is no JSON.
std::optional<std::wstring> Rewritten(const std::wstring& json,
                                      LoneSurrogates surrogates = LoneSurrogates::escaped) {
    clsWriter writer{surrogates};
    try {
        clsJsonReader(json).Read(writer);
    } catch (const scJsonError& error) {
        const auto lineEnds = static_cast<std::size_t>(std::ranges::count(json, L'\n'));
        Require(error.line >= 1 && error.line <= lineEnds + 1);
        return std::nullopt;
    }
    return std::move(writer).Take();
}

bool IsHalf(wchar_t unit) {
    return unit >= 0xD800 && unit < 0xE000;
}

wchar_t UnitOf(std::uint8_t byte) {
    if (byte < 0x80)
        return byte;
    return static_cast<wchar_t>(byte < 0xC0 ? 0xD800 + byte - 0x80 : 0xDC00 + byte - 0xC0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::wstring json(size, L'\0');
    std::transform(data, data + size, json.begin(), UnitOf);
    const std::optional<std::wstring> written = Rewritten(json);
    if (!written)
        return 0;
    Require(Rewritten(*written) == written);
    const std::optional<std::wstring> replaced = Rewritten(json, LoneSurrogates::replaced);
    Require(replaced && Rewritten(*replaced) == replaced);
    for (std::size_t at = 0; at < replaced->size(); ++at) // halves come in pairs
        Require(!IsHalf((*replaced)[at]) || IsHalf(replaced->at(++at)));
    return 0;
}
