// Callers from other compilers align the stack to 4 bytes only; exports must not fault for it.
//
// The call is made by hand with the stack 4, 8 and 12 bytes away from the 16 that this compiler keeps.
#include <tvut22/tvut22.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

// Pushes count words, the last first, so that the called __stdcall function finds the stack that many
// bytes off, and returns what it returns.
// StackAtCall returns the stack pointer as it was when StackAtCall was called.
extern "C" std::uint32_t StackAtCall();
extern "C" std::uint32_t CallWithStackOff(const void* function, const std::uint32_t* words,
                                          std::uint32_t count, std::uint32_t off);
asm(R"(
    .text
    .globl _CallWithStackOff
_CallWithStackOff:
    pushl %ebp
    movl %esp, %ebp
    pushl %esi
    movl 12(%ebp), %esi
    movl 16(%ebp), %ecx
    leal (,%ecx,4), %edx
    negl %edx
    addl 20(%ebp), %edx
    andl $15, %edx
    andl $-16, %esp
    subl %edx, %esp
1:  testl %ecx, %ecx
    jz 2f
    pushl -4(%esi,%ecx,4)
    decl %ecx
    jmp 1b
2:  call *8(%ebp)
    movl -4(%ebp), %esi
    leave
    ret
    .globl _StackAtCall
_StackAtCall:
    leal 4(%esp), %eax
    ret
)");

extern "C" int __stdcall MisalignmentOfAVector(int number);

namespace {

void AppendWords(std::basic_string<std::uint32_t>& words, double value) {
    std::array<std::uint32_t, 2> halves;
    std::memcpy(halves.data(), &value, sizeof value);
    words.append(halves.begin(), halves.end());
}

template <class T>
void AppendWords(std::basic_string<std::uint32_t>& words, T value) {
    static_assert(sizeof(T) == 4);
    std::uint32_t word;
    std::memcpy(&word, &value, sizeof word);
    words.push_back(word);
}

class StackOff : public testing::TestWithParam<std::uint32_t> {
  protected:
    template <class Function, class... Values>
    std::uint32_t Call(Function* function, Values... values) {
        std::basic_string<std::uint32_t> words;
        (AppendWords(words, values), ...);
        return CallWithStackOff(reinterpret_cast<const void*>(function), words.data(),
                                static_cast<std::uint32_t>(words.size()), GetParam());
    }

    template <class Handle>
    static Handle As(std::uint32_t word) {
        return reinterpret_cast<Handle>(static_cast<std::uintptr_t>(word));
    }
};

BOOL WINAPI CountEntries(ProfJob, const wchar_t*, const wchar_t*, ProfList, UINT_PTR user) {
    ++*reinterpret_cast<int*>(user);
    return TRUE;
}

std::wstring TemporaryFile() {
    std::array<wchar_t, MAX_PATH> folder;
    std::array<wchar_t, MAX_PATH> file;
    GetTempPathW(MAX_PATH, folder.data());
    GetTempFileNameW(folder.data(), L"prf", 0, file.data());
    return file.data();
}

TEST_P(StackOff, TheStackIsReallyOff) {
    EXPECT_EQ(Call(StackAtCall) % 16, (16 - GetParam()) % 16);
}

TEST_P(StackOff, TheLibrarysFlagsAlignIt) {
    EXPECT_EQ(Call(MisalignmentOfAVector, 41), 0u);
}

// A profile's whole life: every part of the library that spills to the stack has its turn.
TEST_P(StackOff, EveryStepOfAProfilesLife) {
    const std::wstring file = TemporaryFile();
    const RECT rect{1, 2, 30, 40};
    auto job = As<ProfJob>(Call(ProfJobOpenW, file.c_str()));
    ASSERT_TRUE(job);
    Call(ProfSetDoubleW, job, nullptr, L"Page/Scale", 1.25);
    Call(ProfSetRectA, job, nullptr, "Page/Frame", &rect);
    Call(ProfSetStringW, job, nullptr, L"Page/Title", L"Blatt");
    for (int i = 0; i < 300; ++i) // long enough for the list's index
        Call(ProfAppendIntW, job, nullptr, (L"Numbers/" + std::to_wstring(i)).c_str(), i);
    EXPECT_EQ(Call(ProfSaveW, job, nullptr, PROF_SAVE_COMPRESSED), 0u);
    Call(ProfJobClose, job);

    job = As<ProfJob>(Call(ProfJobOpenW, file.c_str()));
    EXPECT_EQ(Call(ProfGetError, job), 0u);
    double scale = 0;
    EXPECT_EQ(Call(ProfGetDoubleW, job, nullptr, L"Page/Scale", &scale, 0.5), 0u);
    EXPECT_EQ(scale, 1.25);
    RECT read{};
    EXPECT_EQ(Call(ProfGetRectA, job, nullptr, "Page/Frame", &read, nullptr), 0u);
    EXPECT_EQ(std::memcmp(&read, &rect, sizeof rect), 0);
    int number = 0;
    EXPECT_EQ(Call(ProfGetIntW, job, nullptr, L"Numbers/299", &number, 0), 0u);
    EXPECT_EQ(number, 299);
    int entries = 0;
    const auto numbers = As<ProfList>(Call(ProfGetListW, job, nullptr, L"Numbers"));
    Call(ProfEnumW, job, numbers, CountEntries, &entries);
    EXPECT_EQ(entries, 300);
    Call(ProfDebugList, job, numbers);
    Call(ProfJobClose, job);
    DeleteFileW(file.c_str());
}

TEST_P(StackOff, VectorCodeOfTexts) {
    const std::wstring words(100, L'x');
    wchar_t room[300];
    Call(UtilStrcpy, room, words.c_str());
    EXPECT_EQ(Call(UtilStricmp, room, words.c_str()), 0u);
    EXPECT_EQ(Call(UtilStrstr, room, words.c_str() + 50),
              static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(room)));
    for (const BOOL compress : {FALSE, TRUE}) {
        char bytes[200];
        EXPECT_EQ(Call(UtilConvertBLOBToString, words.data(), 200u, room, 300u, compress), 0u);
        EXPECT_EQ(Call(UtilConvertStringToBLOB, room, bytes, 200u), 200u);
        EXPECT_EQ(std::memcmp(bytes, words.data(), 200), 0);
    }
}

TEST_P(StackOff, VectorCodeOfHtml) {
    BSTR result = nullptr;
    Call(UtilMaskAllHTMLCharacters, L"a long text with <b>tags</b> in it, and some more of it", &result);
    Call(UtilConvertHtml2PlainText, std::wstring(result, SysStringLen(result)).c_str(), &result, FALSE);
    EXPECT_STREQ(result, L"a long text with <b>tags</b> in it, and some more of it");
    SysFreeString(result);
}

TEST_P(StackOff, PathsAndTemporaryFiles) {
    BSTR path = nullptr;
    EXPECT_EQ(Call(UtilPathExpand, L"<Temp>\\a\\..\\b.txt", &path), 0u);
    EXPECT_EQ(Call(UtilPathMerge, path, L"..\\c", 0u, &path), 0u);
    EXPECT_EQ(Call(UtilPathCollapse, path, &path), 0u);
    EXPECT_STREQ(path, L"<Temp>\\c");
    EXPECT_EQ(Call(UtilTempFileCreate, nullptr, L"a/b", 0u, &path), 0u);
    EXPECT_EQ(Call(UtilTempFileRelease, path, FALSE), 0u);
    SysFreeString(path);
}

INSTANTIATE_TEST_SUITE_P(Bytes, StackOff, testing::Values(0u, 4u, 8u, 12u));

} // namespace
