// Cases as data: rows of tests/data/cases, which a test reads from a file.
//
// A row is a line, its columns stand between " => ". In a column, %n is a line feed, %r a carriage return, %t
// a tab, %s a blank, %0 a zero, %_ nothing at all, %u20AC a unit by its number, and % before anything else is
// that itself. A line that begins with "# " is a comment.
#pragma once

#include "support/test_data.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

struct scCaseRow {
    std::vector<std::u16string> columns;
    std::string where; // file and line, for messages

    const std::u16string& operator[](std::size_t column) const { return columns[column]; }
};

namespace detail {

inline std::u16string CaseColumn(const std::u16string& text) {
    constexpr std::u16string_view marks = u"nrts0_", units(u"\n\r\t \0", 5);
    std::u16string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != u'%') {
            result += text[at];
            continue;
        }
        const char16_t mark = text.at(++at);
        if (mark == u'u') {
            const std::u16string digits = text.substr(at + 1, 4);
            result +=
                static_cast<char16_t>(std::stoul(std::string(digits.begin(), digits.end()), nullptr, 16));
            at += 4;
        } else if (const auto known = marks.find(mark); known == marks.npos) {
            result += mark;
        } else if (mark != u'_') {
            result += units[known];
        }
    }
    return result;
}

inline scCaseRow CaseRow(const std::string& line, std::string where) {
    // A path's text is converted from UTF-8 on any system.
    const std::u16string text = std::filesystem::path(std::u8string(line.begin(), line.end())).u16string();
    constexpr std::u16string_view separator = u" => ";
    scCaseRow row{{}, std::move(where)};
    for (std::size_t at = 0, end = 0; end != text.npos; at = end + separator.size()) {
        end = text.find(separator, at);
        row.columns.push_back(CaseColumn(text.substr(at, end == text.npos ? end : end - at)));
    }
    return row;
}

} // namespace detail

// The rows of a file, such as "paths/merged"; all have as many columns as asked for.
inline std::vector<scCaseRow> CaseRows(const std::string& name, std::size_t columns) {
    std::ifstream file(TestData() + "/cases/" + name + ".txt", std::ios::binary);
    std::vector<scCaseRow> rows;
    std::string line;
    for (unsigned number = 1; std::getline(file, line); ++number) {
        if (line.empty() || line.starts_with("# "))
            continue;
        rows.push_back(detail::CaseRow(line, name + ".txt:" + std::to_string(number)));
        if (rows.back().columns.size() != columns)
            throw std::runtime_error("columns are missing in " + rows.back().where);
    }
    if (rows.empty())
        throw std::runtime_error("there are no cases called " + name);
    return rows;
}

// A column of ASCII alone.
inline std::string NarrowCase(std::u16string_view text) {
    return {text.begin(), text.end()};
}

// A column in the units of Windows.
inline std::wstring WideCase(std::u16string_view text) {
    return {text.begin(), text.end()};
}

} // namespace tvut
