// Any tree, saved in each form and loaded again, is the tree it was, but for what the form's page says
// that it cannot hold.
//
// The bytes build a tree. For each form its texts are first rid of what that form cannot hold at all; what it
// holds as something else is said by an account of its own, not by the library's. What is loaded must be what
// that account expects, entry by entry.
#include "choices.h"
#include "require.h"

#include "prof/tree_walk.h"
#include "unit/native_platform.h"

using namespace tvut;

namespace {

// ---- A tree as a sequence of entries ----------------------------------------------------------------

enum class What { item, list, end };

struct scEntry {
    What what;
    std::u16string name;
    std::u16string value;
    bool operator==(const scEntry&) const = default;
};
using Entries = std::vector<scEntry>;

// Characters that some form has to stand in for, and ordinary ones.
constexpr std::u16string_view alphabet =
    u"ab =[]{}#;/<>&'\"\r\n\t\x01\x1F\u2400\u2401\u240D\u241F\u2338\u301A\u301B"
    u"é\u4E00\uFEFF\xD83D\xDE00\uFFFE\uFFFF.:-!";

std::u16string Text(clsChoices& choices) {
    std::u16string text;
    for (unsigned length = choices.Below(12); length != 0 && !choices.AtEnd(); --length) {
        const unsigned choice = choices.Below(64);
        if (choice < alphabet.size())
            text += alphabet[choice];
        else if (choice < 60)
            text += static_cast<char16_t>(1 + choices.Below(0xFFFF));
        else // longer than a line's buffer, or than the window that files are read through
            text.append(choices.Below(choice == 63 ? 0xFFFF : 0x400), alphabet[choices.Below(10)]);
    }
    return text;
}

Entries Build(clsChoices& choices) {
    Entries entries;
    unsigned depth = 0;
    std::size_t characters = 0;
    while (!choices.AtEnd() && characters < 400000) {
        const unsigned choice = choices.Below(8);
        if (choice == 0 && depth != 0) {
            entries.push_back({What::end, {}, {}});
            --depth;
        } else if (choice <= 2) {
            entries.push_back({What::list, Text(choices), {}});
            ++depth;
        } else {
            entries.push_back({What::item, Text(choices), Text(choices)});
            characters += entries.back().value.size();
        }
        characters += entries.back().name.size();
    }
    entries.insert(entries.end(), depth, {What::end, {}, {}});
    return entries;
}

void Fill(clsTree& tree, const Entries& entries) {
    clsItemList* list = &tree.Root();
    for (const scEntry& entry : entries) {
        if (entry.what == What::item)
            tree.AppendItem(*list, scName(entry.name), entry.value);
        else
            list = entry.what == What::list ? tree.AppendList(*list, scName(entry.name)) : list->Parent();
    }
}

struct scReader {
    Entries entries;
    void Item(const clsItem& item, std::uint32_t) {
        entries.push_back({What::item, std::u16string(item.Name()), std::u16string(item.Value())});
    }
    void BeginList(const clsItem& entry, std::uint32_t) {
        entries.push_back({What::list, std::u16string(entry.Name()), {}});
    }
    void EndList(std::uint32_t) { entries.push_back({What::end, {}, {}}); }
};

Entries Read(clsTree& tree) {
    scReader reader;
    ProfpWalk(tree.Root(), 0, reader);
    return std::move(reader.entries);
}

// ---- What the forms do to texts ---------------------------------------------------------------------

void Replace(std::u16string& text, std::u16string_view what, char16_t by) {
    std::ranges::replace_if(
        text, [&](char16_t c) { return what.find(c) != what.npos; }, by);
}

constexpr std::u16string_view lineEnds = u"\r\n";

// Takes from a tree's texts what a form's page says that it cannot hold; and, apart from that, makes of them
// what that page says that is read again.
struct scForm {
    std::uint32_t flags;
    ReadMode mode;
    void (*restrict)(scEntry&);
    void (*expect)(scEntry&);
};

// A line that begins with one of these is none of an item; a line end ends a header.
void RestrictToText(scEntry& entry) {
    if (entry.what == What::list)
        Replace(entry.name, lineEnds, u'l');
    else if (entry.name.find_first_of(u"#;{} ") == 0)
        entry.name.front() = u'n';
}

char16_t WithoutPicture(char16_t c) {
    return c > 0x2400 && c < 0x2420 ? static_cast<char16_t>(c - 0x2400) : c;
}

void ExpectFromText(scEntry& entry) {
    if (entry.what != What::item)
        return;
    std::ranges::transform(entry.value, entry.value.begin(), WithoutPicture);
    std::ranges::transform(entry.name, entry.name.begin(), WithoutPicture);
    Replace(entry.name, u"\u2338", u'=');
    Replace(entry.name, u"\u301A", u'[');
    Replace(entry.name, u"\u301B", u']');
}

void WriteLineEndsAlike(std::u16string& text) {
    for (std::size_t at = 0; (at = text.find_first_of(lineEnds, at)) != text.npos; at += 2)
        text.replace(at, text.compare(at, 2, lineEnds) == 0 ? 2 : 1, lineEnds);
}

void ExpectFromXml(scEntry& entry) {
    WriteLineEndsAlike(entry.name);
    WriteLineEndsAlike(entry.value);
}

// Nothing is escaped, so no reference, end of a value or of a name may stand in a text.
void RestrictToXfdf(scEntry& entry) {
    Replace(entry.name, u"\"&\r\n", u'n');
    Replace(entry.value, u"&", u'v');
    for (std::size_t at = 0; (at = entry.value.find(u'<', at)) != entry.value.npos; ++at) {
        if (entry.value.find_first_of(u"/!", at) == at + 1)
            entry.value[at] = u'v';
    }
}

void ReplaceHalves(std::u16string& text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isHigh = (text[at] & 0xFC00) == 0xD800;
        if (isHigh && at + 1 < text.size() && (text[at + 1] & 0xFC00) == 0xDC00)
            ++at;
        else if ((text[at] & 0xF800) == 0xD800)
            text[at] = 0xFFFD;
    }
}

void ExpectFromXfdf(scEntry& entry) {
    ReplaceHalves(entry.name);
    ReplaceHalves(entry.value);
}

constexpr scForm forms[] = {{0, ReadMode::detect, RestrictToText, ExpectFromText},
                            {1, ReadMode::detect, [](scEntry&) {}, ExpectFromXml},
                            {1, ReadMode::foreignXml, [](scEntry&) {}, ExpectFromXml},
                            {2, ReadMode::foreignXfdf, RestrictToXfdf, ExpectFromXfdf}};

void Check(const scForm& form, Entries entries, bool pooling, bool compress) {
    std::ranges::for_each(entries, form.restrict);
    clsTree tree(pooling), again(!pooling);
    Fill(tree, entries);
    clsMemorySink sink;
    if (!ProfpSave(tree.Root(), form.flags | (compress ? saveFlags::compressed : 0), false, sink))
        return; // too deep for its indentation
    Require(sink.extended == sink.bytes.size());
    Require(Load(again, sink.bytes, form.mode).parsed);
    std::ranges::for_each(entries, form.expect);
    Require(Read(again) == entries);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DiagnosticLines().clear();
    clsChoices choices(data, size);
    const unsigned switches = choices.Below(4);
    const Entries entries = Build(choices);
    for (const scForm& form : forms)
        Check(form, entries, (switches & 1) != 0, (switches & 2) != 0);
    return 0;
}
