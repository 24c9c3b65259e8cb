// Names and lines of small modules whose source lies beside them, sound and damaged. A whole DLL: see
// tests/package/code_places.py.
#include "support/cases.h"
#include "unit/symbol_properties.h"
#include "unit/whole_file.h"

#include <gtest/gtest.h>

#include <random>

using namespace tvut;

namespace {

std::string Sample(const std::string& name) {
    return name == "-" ? "" : ReadFile(TVUT22_TEST_DATA "/symbols/" + name);
}

std::string Shown(const scCodePlace& place) {
    std::ostringstream text;
    text << place.function << "+0x" << std::hex << place.functionOffset << std::dec << ' '
         << place.source.file << ':' << place.source.line;
    return text.str();
}

TEST(Symbols, NamePlacesInCode) {
    for (const scCaseRow& row : CaseRows("symbols", 4)) {
        const std::string image = Sample(NarrowCase(row[0])), debugFile = Sample(NarrowCase(row[1]));
        const auto offset = static_cast<std::uint32_t>(std::stoul(NarrowCase(row[2]), nullptr, 16));
        const clsImageSymbols symbols(AllBytes(image), AllBytes(debugFile));
        EXPECT_EQ(Shown(symbols.Find(offset)), NarrowCase(row[3])) << row.where;
    }
}

// An index knows what a search finds, at every place.
TEST(Symbols, AreIndexedAsTheyAre) {
    for (const auto& [imageName, debugName] :
         std::initializer_list<std::pair<const char*, const char*>>{{"sample.dll", "-"},
                                                                    {"sample.dll", "sample-2.debug"},
                                                                    {"sample.dll", "sample-3.debug"},
                                                                    {"sample.dll", "sample-4.debug"},
                                                                    {"sample.dll", "sample-5.debug"},
                                                                    {"unlisted.dll", "-"},
                                                                    {"-", "-"}}) {
        const std::string image = Sample(imageName), debugFile = Sample(debugName);
        const clsImageSymbols files(AllBytes(image), AllBytes(debugFile));
        const clsIndexOfFiles index(files);
        for (std::uint32_t offset = 0; offset < 0x9000; ++offset) {
            const scCodePlace found = files.Find(offset), indexed = index.Find(offset);
            ASSERT_EQ(Shown(indexed), Shown(found)) << debugName << " 0x" << std::hex << offset;
            ASSERT_EQ(indexed.kind, found.kind);
        }
    }
}

// Files may be written between being measured and being indexed: what there is no room for is left out.
TEST(Symbols, KeepToTheRoomThatWasMeasured) {
    const std::string image = Sample("sample.dll"), debugFile = Sample("sample-5.debug");
    const clsImageSymbols files(AllBytes(image), AllBytes(debugFile));
    const auto [lines, sequences, names, textBytes] = clsSymbolIndex::Measure(files);
    for (std::size_t part = 0; part < 4; ++part) {
        const clsIndexOfFiles index(
            files, {lines * part / 4, sequences * part / 4, names * part / 4, textBytes * part / 4});
        for (std::uint32_t offset = 0; offset < 0x9000; offset += 7) {
            const scCodePlace place = index.Find(offset);
            ASSERT_TRUE(place.function.empty() || index.Holds(place.function));
            ASSERT_TRUE(place.source.file.empty() || index.Holds(place.source.file));
        }
    }
}

TEST(Symbols, TellTheirDebugFile) {
    EXPECT_EQ(UtilpDebugLinkOf(AllBytes(Sample("sample.dll"))), "sample-5.debug");
    EXPECT_EQ(UtilpDebugLinkOf(AllBytes(Sample("unlisted.dll"))), "");
    std::string elsewhere = Sample("sample.dll");
    elsewhere[elsewhere.find("sample-5.debug")] = '\\';
    EXPECT_EQ(UtilpDebugLinkOf(AllBytes(elsewhere)), "");
}

// The most that changes and cuts can do is that nothing is found.
TEST(Symbols, DamagedFilesDoNoHarm) {
    constexpr std::uint32_t offsets[] = {0x1015, 0x106E, 0x1076, 0x3000};
    constexpr const char* files[][2] = {
        {"sample.dll", "sample-3.debug"}, {"sample.dll", "sample-5.debug"}, {"unlisted.dll", "-"}};
    std::mt19937 random(1);
    for (const auto& [imageName, debugName] : files) {
        const std::string image = Sample(imageName), debugFile = Sample(debugName);
        const auto expectNoFault = [&](const std::string& first, const std::string& second) {
            for (const std::uint32_t offset : offsets)
                ASSERT_EQ(FaultOfPlace(first, second, offset), nullptr);
            if (random() % 64 == 0) { // to make one takes long
                ASSERT_EQ(FaultOfIndex(first, second, offsets[0]), nullptr);
            }
        };
        // Each cut is memory of its own, so that reading past its end shows.
        for (std::size_t length = 0; length < image.size(); ++length)
            expectNoFault(image.substr(0, length), debugFile);
        for (std::size_t length = 0; length < debugFile.size(); ++length)
            expectNoFault(image, debugFile.substr(0, length));
        const auto changed = [&](std::string bytes) {
            if (!bytes.empty())
                bytes[random() % bytes.size()] = static_cast<char>(random());
            return bytes;
        };
        for (int i = 0; i < 5000; ++i) {
            expectNoFault(changed(image), debugFile);
            expectNoFault(image, changed(debugFile));
        }
    }
}

} // namespace
