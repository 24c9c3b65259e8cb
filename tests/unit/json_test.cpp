// JSON as the tools read and write it.
#include "json_reader.h"
#include "json_text.h"
#include "support/cases.h"

#include <gtest/gtest.h>

using namespace tool;

namespace {

// Each event as a few characters: a name and a colon, a text in quotes, anything else as it stands.
class clsEvents final : public IclsJsonEvents {
  public:
    void Begin(wchar_t bracket) override { text += bracket; }
    void End() override { text += L'.'; }
    void Name(std::wstring_view name) override { text.append(name).append(L":"); }
    void Text(std::wstring_view value) override { text.append(L"'").append(value).append(L"'"); }
    void Plain(std::wstring_view value) override { text.append(value).append(L" "); }

    std::wstring text;
};

std::wstring Read(std::wstring_view json) {
    clsEvents events;
    try {
        clsJsonReader(json).Read(events);
    } catch (const scJsonError& error) {
        const std::string_view reason = error.reason;
        return std::to_wstring(error.line) + L": " + std::wstring(reason.begin(), reason.end());
    }
    return events.text;
}

TEST(Json, IsReadOrRefusedWithTheLine) {
    for (const tvut::scCaseRow& row : tvut::CaseRows("json", 2))
        EXPECT_EQ(Read(tvut::WideCase(row[0])), tvut::WideCase(row[1])) << row.where;
}

TEST(Json, NestsAsDeepAsItSaysAndNoDeeper) {
    const std::wstring open(clsJsonReader::mostLevels, L'[');
    EXPECT_EQ(Read(open + std::wstring(open.size(), L']')), open + std::wstring(open.size(), L'.'));
    EXPECT_EQ(Read(open + L"["), L"1: nested too deeply");
}

TEST(Json, TextsComeBack) {
    std::wstring text, json;
    for (unsigned unit = 0; unit < 0xFFFF; unit += unit < 300 ? 1 : 97)
        text += static_cast<wchar_t>(unit);
    text += L"\xD83D\xDE00\xDE00\xD83D";
    AppendJsonText(json, text);
    EXPECT_EQ(Read(json), L"'" + text + L"'");
    json.clear();
    AppendJsonText(json, L"\xD83D-\xDE00", LoneSurrogates::replaced);
    EXPECT_EQ(json, L"\"\xFFFD-\xFFFD\"");
}

} // namespace
