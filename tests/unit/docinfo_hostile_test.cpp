// Documents made to cost much: of little size, but of great depth, with things that are named again and
// again, that unpack to far more, or that run in a circle. What they cost is counted: the most memory that is
// held at a time, and the bytes that are read.
#include "text/xml/xml_reader.h"
#include "unit/docinfo_support.h"
#include "unit/whole_file.h"
#include "unit/zip_support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::size_t heldBytes = 0, mostHeldBytes = 0;

void* Hold(std::size_t size) noexcept {
    void* const block = std::malloc(size);
    heldBytes += malloc_usable_size(block);
    mostHeldBytes = std::max(mostHeldBytes, heldBytes);
    return block;
}

void LetGo(void* block) noexcept {
    heldBytes -= malloc_usable_size(block);
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) {
    if (void* const block = Hold(size))
        return block;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { // the sanitizer's own counts nothing
    return Hold(size);
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* block) noexcept {
    LetGo(block);
}
void operator delete(void* block, std::size_t) noexcept {
    LetGo(block);
}
void operator delete[](void* block) noexcept {
    LetGo(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    LetGo(block);
}

namespace tvut {
namespace {

std::string Repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (; times > 0; --times)
        all += text;
    return all;
}

template <class Number>
std::string Bytes(std::initializer_list<Number> numbers) {
    std::string bytes;
    for (const Number number : numbers) {
        char room[sizeof number];
        bytes.append(room, UtilpWriteNumber(room, number));
    }
    return bytes;
}
std::string Shorts(std::initializer_list<std::uint16_t> numbers) {
    return Bytes(numbers);
}
std::string Longs(std::initializer_list<std::uint32_t> numbers) {
    return Bytes(numbers);
}

struct scHostile {
    const char* name;
    std::string document;
    const char* properties; // what they are called, custom ones as one
    const char* problem = "";
};

// No more than the readers' bounds, beside the values of up to 1 MiB.
void CheckCost(const std::vector<scHostile>& documents) {
    for (const auto& [name, bytes, properties, problem] : documents) {
        clsMemoryDocument document(bytes);
        clsDocInfo info;
        const std::size_t before = mostHeldBytes = heldBytes;
        EXPECT_TRUE(UtilpReadDocument(document, u"document", info)) << name;
        EXPECT_LE(mostHeldBytes - before, 9u * 1024 * 1024) << name;
        EXPECT_LE(document.read, 8u * 1024 * 1024) << name;
        std::string names = Utf8(info.Names());
        std::ranges::replace(names, '\n', ' ');
        EXPECT_EQ(names.substr(0, names.find('.')), properties) << name;
        EXPECT_EQ(Utf8(info.Text(DocProperty::problem)), problem) << name;
    }
}

TEST(HostileDocuments, TextAndMarkup) {
    CheckCost({
        {"a title's tags", "<title>" + Repeated("<", 900'000), "Format Title Problem",
         "damaged: the title does not end"},
        {"attributes", "<html " + Repeated("a ", 500'000), "Format Problem", "damaged: a tag does not end"},
        {"one name", "<html>" + Repeated("<meta name=a content=b>", 40'000), "Format Custom"},
        {"comments", "<html>" + Repeated("<!--", 200'000), "Format Problem", "damaged: a tag does not end"},
        {"references", "<title>" + Repeated("&", 500'000) + "</title>", "Format Title"},
        {"comments of an address", "To: a\nFrom: " + Repeated("(", 900'000), "Format Author To"},
        {"people", "To: a\nFrom: " + Repeated("a,", 450'000), "Format Author To"},
        {"words that do not end", "To: a\nSubject: " + Repeated("=?utf-8?Q?", 90'000),
         "Format Title Subject To"},
        {"words", "To: a\nSubject: " + Repeated("=?utf-8?B?QQ==?= ", 50'000), "Format Title Subject To"},
        {"fields", "To: a\n" + Repeated("Subject: b\n", 100'000), "Format Title Subject To Problem",
         "damaged: the header is too long"},
        {"groups", "{\\rtf1{\\info{\\title There" + Repeated("{", 500'000), "Format Problem",
         "damaged: it ends too early"},
        {"user properties",
         "{\\rtf1{\\*\\userprops" + Repeated("{\\propname a}\\proptype30{\\staticval b}", 20'000) + "}}",
         "Format Custom"},
    });
}

// ---- PDF -----------------------------------------------------------------------------------------

std::string Stream(std::string_view entries, const std::string& text) {
    uLongf size = compressBound(static_cast<uLong>(text.size()));
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(text.data()),
             static_cast<uLong>(text.size()));
    packed.resize(size);
    return "<<" + std::string(entries) + "/Filter/FlateDecode/Length " + std::to_string(size) + ">>stream\n" +
           packed + "\nendstream";
}

// Objects from number 1 on; object 1 is the catalogue, object 3 is Info.
std::string Pdf(const std::vector<std::string>& objects, const std::string& info = "3",
                bool isRepaired = false) {
    std::string text = "%PDF-1.5\n",
                table = "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (std::size_t number = 1; number <= objects.size(); ++number) {
        const std::string at = std::to_string(text.size());
        table += std::string(10 - at.size(), '0') + at + " 00000 n \n";
        text += std::to_string(number) + " 0 obj\n" + objects[number - 1] + "\nendobj\n";
    }
    return text + table + "trailer<</Root 1 0 R/Info " + info + " 0 R>>\nstartxref\n" +
           std::to_string(isRepaired ? 1 : text.size()) + "\n%%EOF\n";
}

TEST(HostileDocuments, Pdf) {
    const std::string catalogue = "<</Type/Catalog/Pages 2 0 R/Metadata 4 0 R>>", pages = "<</Count 1>>",
                      title = "<</Title(There)>>", nothing = "null";
    const std::string brackets = Repeated("[<<", 50'000), bomb(8'000'000, 'x');
    std::string references = "<</Title(There)";
    for (int number = 0; number < 8000; ++number)
        references += "/K" + std::to_string(number) + " 4 0 R";
    std::vector<std::string> packed(3, nothing);
    packed.insert(packed.end(), 1000, Stream("/Type/ObjStm/N 1/First 5", "9999 0 " + bomb));
    CheckCost({
        {"values", Pdf({catalogue, pages, "<</Title(There)/A " + brackets, nothing}), "Format Title Pages"},
        {"values first", Pdf({catalogue, pages, "<</A " + brackets + "/Title(Lost)", nothing}),
         "Format Pages"},
        {"strings", Pdf({catalogue, pages, "<</Title(" + Repeated("(", 200'000), nothing}),
         "Format Title Pages"},
        {"one object again and again",
         Pdf({catalogue, pages, references, "(" + std::string(200'000, ' ') + ")"}),
         "Format Title Pages Problem", "damaged: too much to read"},
        {"a packet that unpacks to much", Pdf({catalogue, pages, title, Stream("/Type/Metadata", bomb)}),
         "Format Title Pages Problem", "damaged: text outside of the root element"},
        {"a packet of great depth",
         Pdf({catalogue, pages, title, Stream("/Type/Metadata", Repeated("<a>", 100'000))}),
         "Format Title Pages Problem", "damaged: an element does not end"},
        {"streams that unpack to much", Pdf(packed, "9998", true), "Format Problem",
         "damaged: no cross references at their place"},
    });
}

// ---- Compound files and TIFF ---------------------------------------------------------------------

constexpr std::uint32_t endOfChain = 0xFFFFFFFE, noEntry = 0xFFFFFFFF;
constexpr std::size_t sectorBytes = 4096;

std::string Entry(std::string_view name, char kind, std::uint32_t left, std::uint32_t right,
                  std::uint32_t child, std::uint32_t first, std::size_t size) {
    std::string entry;
    for (const char c : name)
        entry += {c, '\0'};
    entry.resize(64);
    return entry + Shorts({static_cast<std::uint16_t>(2 * name.size() + 2)}) + kind + '\1' +
           Longs({left, right, child}) + std::string(36, '\0') +
           Longs({first, static_cast<std::uint32_t>(size), 0});
}

// A compound file: header, table, directory, a stream from sector 2 on. Its two entries besides the root lead
// to each other.
std::string Compound(std::string_view name, std::string contents) {
    const std::size_t size = contents.size(), sectors = (size + sectorBytes - 1) / sectorBytes;
    std::string table = Longs({0xFFFFFFFD, endOfChain});
    for (std::uint32_t sector = 3; sector < 2 + sectors; ++sector)
        table += Longs({sector});
    table += Longs({endOfChain});
    table.resize(sectorBytes, '\xFF');
    std::string header = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(16, '\0') +
                         Shorts({0x3E, 4, 0xFFFE, 12, 6}) + std::string(6, '\0') +
                         Longs({1, 1, 1, 0, 4096, endOfChain, 0, endOfChain, 0, 0}) +
                         std::string(4 * 108, '\xFF');
    header.resize(sectorBytes);
    std::string directory = Entry("Root Entry", 5, noEntry, noEntry, 1, endOfChain, 0) +
                            Entry(name, 2, 2, 1, noEntry, 2, size) +
                            Entry("Contents", 2, 1, 2, noEntry, endOfChain, 0);
    directory.resize(sectorBytes);
    contents.resize(sectors * sectorBytes);
    return header + table + directory + contents;
}

// A set of user-defined properties: one value, which goes by so many names.
std::string UserSet(std::uint32_t names, const std::string& beginning = {}) {
    const std::string identifier = Longs({0xD5CDD505, 0x101B2E9C, 0x00089793, 0xAEF92C2B});
    std::string set = Shorts({0xFFFE, 0}) + std::string(20, '\0') + Longs({1}) + identifier + Longs({48}) +
                      Longs({0, 2, 0, 32, 2, 24}) + Longs({3, 7}) + Longs({names});
    for (; names > 0; --names)
        set += Longs({2, static_cast<std::uint32_t>(beginning.size() + 8)}) + beginning +
               std::to_string(1'000'000 + names) + '\0';
    return set;
}

// A file with one directory of so many equal entries, and a chain of empty ones after it.
std::string Tiff(std::uint16_t entries, const std::string& entry, std::uint32_t directories) {
    std::string file =
        "II*" + std::string(1, '\0') + Longs({8}) + Shorts({entries}) + Repeated(entry, entries);
    for (; directories > 0; --directories)
        file += Longs({static_cast<std::uint32_t>(file.size() + 4)}) + Shorts({0});
    return file + Longs({0});
}

TEST(HostileDocuments, Binary) {
    const std::string set = "\5DocumentSummaryInformation";
    std::string circle = ReadFile(TVUT22_TEST_DATA "/docinfo/doc-cyrillic.in");
    const std::size_t smallTable = (static_cast<unsigned char>(circle[60]) + 1u) * 512;
    for (std::size_t sector = 0; sector < 128; ++sector) // each follows itself
        circle.replace(smallTable + 4 * sector, 4, {static_cast<char>(sector), 0, 0, 0});
    std::string large = Compound(set, UserSet(100'000)), largeCircle = large;
    largeCircle.replace(sectorBytes + 4 * 2, 4, Longs({2})); // the table is the first sector
    const std::string text = Shorts({270, 2}) + Longs({65'536, 8});
    CheckCost({
        {"small sectors in a circle", circle, "Format Problem",
         "damaged: a chain of sectors runs in a circle"},
        {"names of a property", large, "Format Problem Custom", "too many properties"},
        {"sectors in a circle", largeCircle, "Format Problem Custom",
         "damaged: a chain of sectors runs in a circle"},
        {"long names", Compound(set, UserSet(14'000, std::string(240, 'x'))), "Format Problem Custom",
         "too many properties"},
        {"one text, 65,535 times", Tiff(65'535, text, 0), "Format Comments Pages"},
        {"directories", Tiff(0, "", 70'000), "Format Problem", "damaged: too many directories"},
    });
}

// ---- Packages ------------------------------------------------------------------------------------

TEST(HostileDocuments, Packages) {
    const std::u16string_view relations = u"_rels/.rels", core = u"core.xml";
    const std::string types = "<Types/>",
                      named = "<Relationships><Relationship Type='/core-properties' Target='core.xml'/>",
                      given = "<a xmlns:dc='http://purl.org/dc/elements/1.1/'><dc:title>There</dc:title>";
    const auto package = [&](const std::string& relationships, const std::string& part) {
        return Archive({{u"[Content_Types].xml", types},
                        {std::u16string(relations), named + relationships + "</Relationships>"},
                        {std::u16string(core), given + part + "</a>"}});
    };
    std::vector<scContents> parts(20'001, {u"", ""});
    for (std::size_t number = 0; number < parts.size(); ++number)
        parts[number].name = u"[Content_Types].xml" + (number == 0 ? u"" : WideNumber(number));
    const std::string many = Repeated("<Relationship Type='/core-properties' Target='_rels/.rels'/>", 60'000);
    CheckCost({
        {"elements", package("", Repeated("<b>", 100'000) + Repeated("</b>", 100'000)), "Format Title"},
        {"elements that stay open", package("", Repeated("<b>", 500'000)), "Format Title Problem",
         "damaged: core.xml: elements are nested too deeply"},
        {"attributes", package("", Repeated("<b " + Repeated("c:d='' ", 1000) + "/>", 500)), "Format Title"},
        {"a part that unpacks to much", package("", std::string(100'000'000, ' ')), "Format Title Problem",
         "damaged: core.xml: too large"},
        {"relationships", package(many, ""), "Format Title"},
        {"relationships of each other", package(many, ""), "Format Title"},
        {"parts", Archive(parts), "Format Problem", "damaged: the archive has no directory"},
    });
}

TEST(HostileDocuments, Xml) {
    using Reader = clsXmlReader;
    const auto read = [](std::string document) -> std::string {
        try {
            Reader xml(std::move(document));
            while (xml.Next() != Reader::Event::finished)
                xml.Text();
            return "fine";
        } catch (const clsXmlError& error) {
            return error.what();
        }
    };
    EXPECT_EQ(read(Repeated("<a>", 100000) + Repeated("</a>", 100000)), "fine");
    EXPECT_EQ(read(Repeated("<a>", 1000000)), "elements are nested too deeply");
    EXPECT_EQ(read("<a " + Repeated("b='' ", 100000) + "/>"), "too many attributes");
    EXPECT_EQ(read(Repeated("<a xmlns='u'>", 100000)), "too many namespaces");
    EXPECT_EQ(read("<!DOCTYPE a [<!ENTITY b '" + Repeated("&b;", 100000) + "'>]><a>&b;</a>"), "fine");
    EXPECT_EQ(read("<a>" + Repeated("&#x41;", 100000) + "</a>"), "fine");
}

} // namespace
} // namespace tvut
