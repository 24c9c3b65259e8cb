// Generates the work. Everything is a function of the item's position: runs on different machines and
// days load the same bytes.
#include "workload.h"

#include <algorithm>
#include <iterator>
#include <random>

namespace bench {

namespace {

constexpr const wchar_t* subjects[] = {L"Page",   L"Margin", L"Print",  L"Column", L"Header",
                                       L"Footer", L"Window", L"Border", L"Chart",  L"Export"};
constexpr const wchar_t* aspects[] = {L"Width",   L"Height",  L"Offset",   L"Colour",  L"Format",
                                      L"Visible", L"Caption", L"Position", L"Spacing", L"Option"};
constexpr const wchar_t* words[] = {L"automatic", L"left", L"centred", L"none", L"landscape", L"bold"};

constexpr std::size_t plainNames = std::size(subjects) * std::size(aspects);
static_assert(plainNames == itemsOfList);

std::wstring Number(std::size_t value) {
    std::wstring digits;
    do {
        digits.insert(digits.begin(), static_cast<wchar_t>(L'0' + value % 10));
        value /= 10;
    } while (value != 0);
    return digits;
}

std::wstring Padded(std::size_t value, std::size_t width) {
    std::wstring digits = Number(value);
    return digits.size() < width ? std::wstring(width - digits.size(), L'0') + digits : digits;
}

std::wstring Rectangle(std::mt19937& random) {
    std::wstring text = L"(";
    for (int side = 0; side < 4; ++side)
        text += Number(random() % 2000) + (side < 3 ? L"," : L")");
    return text;
}

std::wstring TwentyCharacters(std::mt19937& random) {
    std::wstring text;
    while (text.size() < 20)
        text += static_cast<wchar_t>(L'a' + random() % 26);
    return text;
}

std::wstring ValueAt(std::size_t item, std::mt19937& random) {
    switch (item % 4) {
    case 0:
        return Number(random() % 10000);
    case 1:
        return Rectangle(random);
    case 2:
        return words[random() % std::size(words)];
    default:
        return TwentyCharacters(random);
    }
}

} // namespace

std::wstring NameAt(std::size_t index) {
    const std::size_t plain = index % plainNames;
    std::wstring name = subjects[plain / std::size(aspects)];
    name += aspects[plain % std::size(aspects)];
    return index < plainNames ? name : name + Number(index / plainNames);
}

Work MakeWork() {
    std::mt19937 random(20180715);
    Work work;
    for (std::size_t list = 0; list < listsOfWork; ++list) {
        work.push_back({L"Report " + Padded(list, 4), {}});
        for (std::size_t item = 0; item < itemsOfList; ++item)
            work.back().items.emplace_back(NameAt(item), ValueAt(item, random));
    }
    return work;
}

std::wstring ProfileText(const Work& work) {
    std::wstring text = L"\xFEFF[/]\r\n{\r\n";
    for (const auto& list : work) {
        text += L" [" + list.name + L"]\r\n {\r\n";
        for (const auto& [name, value] : list.items)
            text += L"  " + name + L"=" + value + L"\r\n";
        text += L" }\r\n";
    }
    return text + L"}\r\n";
}

std::wstring XmlText(const Work& work) {
    std::wstring text = L"<profile>";
    for (const auto& list : work) {
        text += L"<list name=\"" + list.name + L"\">";
        for (const auto& [name, value] : list.items)
            text += L"<item name=\"" + name + L"\">" + value + L"</item>";
        text += L"</list>";
    }
    return text + L"</profile>";
}

std::string IniText(const Work& work) {
    std::string text;
    const auto append = [&text](const std::wstring& ascii) {
        std::ranges::transform(ascii, std::back_inserter(text),
                               [](wchar_t c) { return static_cast<char>(c); });
    };
    for (const auto& list : work) {
        append(L"[" + list.name + L"]\r\n");
        for (const auto& [name, value] : list.items)
            append(name + L"=" + value + L"\r\n");
    }
    return text;
}

clsNames::clsNames(std::size_t first, std::size_t count, const std::wstring& prefix) {
    for (std::size_t index = first; index < first + count; ++index) {
        offsets_.push_back(text_.size());
        text_ += prefix + NameAt(index);
        text_ += L'\0';
    }
}

void clsNames::Shuffle() {
    std::ranges::shuffle(offsets_, std::mt19937(4711));
}

} // namespace bench
