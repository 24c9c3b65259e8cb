// Compound files that the system writes, read by ours.
#include "support/files.h"
#include "support/ole_text.h"

#include <tvut22/docinfo.h>
#include <tvut22/results.h>

#include <gtest/gtest.h>

#include <objbase.h>
#include <propidl.h>

#include <vector>

namespace testing_prof {
namespace {

template <class Interface>
class clsHeld {
  public:
    ~clsHeld() {
        if (object_)
            object_->Release();
    }
    Interface** Out() { return &object_; }
    Interface* operator->() const { return object_; }

  private:
    Interface* object_ = nullptr;
};

constexpr DWORD mine = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr FMTID summary = {0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 8, 0, 0x2B, 0x27, 0xB3, 0xD9}};

void addStream(IStorage& storage, const std::wstring& name, std::size_t bytes) {
    clsHeld<IStream> stream;
    ASSERT_EQ(storage.CreateStream(name.c_str(), mine, 0, 0, stream.Out()), S_OK);
    ASSERT_EQ(stream->Write(std::string(bytes, 'x').data(), static_cast<ULONG>(bytes), nullptr), S_OK);
}

void write(const std::wstring& file, DWORD flags, const std::vector<std::pair<PROPID, PROPVARIANT>>& values,
           unsigned otherStreams) {
    clsHeld<IStorage> storage;
    ASSERT_EQ(StgCreateDocfile(file.c_str(), mine, 0, storage.Out()), S_OK);
    for (unsigned number = 0; number < otherStreams; ++number)
        addStream(*storage.operator->(), L"s" + std::to_wstring(number * 7919 % 1000), number * 97);
    addStream(*storage.operator->(), L"WordDocument", 100'000);
    clsHeld<IPropertySetStorage> sets;
    ASSERT_EQ(storage->QueryInterface(IID_IPropertySetStorage, reinterpret_cast<void**>(sets.Out())), S_OK);
    clsHeld<IPropertyStorage> set;
    ASSERT_EQ(sets->Create(summary, nullptr, flags, mine, set.Out()), S_OK);
    for (const auto& [number, value] : values) {
        const PROPSPEC property{PRSPEC_PROPID, {number}};
        ASSERT_EQ(set->WriteMultiple(1, &property, &value, 2), S_OK);
    }
    ASSERT_EQ(set->Commit(STGC_DEFAULT), S_OK);
    ASSERT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
}

std::wstring property(const std::wstring& file, const wchar_t* name) {
    const UtilDocInfo info = UtilDocInfoOpen(file.c_str());
    clsOleText text;
    const INT result = UtilDocInfoGet(info, name, text.Out());
    EXPECT_EQ(UtilDocInfoClose(info), UTIL_OK);
    return result == UTIL_OK ? text.Text() : L"(" + std::to_wstring(result) + L")";
}

TEST(SystemCompoundFiles, AreRead) {
    const clsTempFolder folder;
    for (const unsigned others : {0u, 1u, 40u, 300u}) {
        for (const DWORD flags : {PROPSETFLAG_DEFAULT, PROPSETFLAG_ANSI}) {
            const std::wstring file = folder / (std::to_wstring(others) + std::to_wstring(flags));
            PROPVARIANT title{}, pages{}, created{};
            title.vt = VT_LPSTR;
            title.pszVal = const_cast<char*>("A title");
            pages.vt = VT_I4;
            pages.lVal = 12;
            created.vt = VT_FILETIME;
            created.filetime = {0xDF35A480, 0x01C52895}; // 2005-03-14, 13:01:01
            write(file, flags, {{2, title}, {12, created}, {14, pages}}, others);
            EXPECT_EQ(property(file, L"Format"), L"doc") << others;
            EXPECT_EQ(property(file, L"Title"), L"A title") << others;
            EXPECT_EQ(property(file, L"Pages"), L"12") << others;
            EXPECT_EQ(property(file, L"Created"), L"2005-03-14T13:01:01Z") << others;
            EXPECT_EQ(property(file, L"Problem"), L"(-6)") << others;
        }
    }
}

} // namespace
} // namespace testing_prof
