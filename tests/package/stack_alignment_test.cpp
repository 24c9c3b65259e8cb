// Callers from other compilers align the stack to 4 bytes only; exports must not fault for it.
//
// The call is made by hand with the stack 4, 8 and 12 bytes away from the 16 that this compiler keeps.
#include <tvut22/tvut22.h>

#include <gtest/gtest.h>

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

template <class T>
void AppendWords(std::basic_string<std::uint32_t>& words, T value) {
    std::uint32_t parts[sizeof(T) / 4];
    std::memcpy(parts, &value, sizeof value);
    words.append(parts, std::size(parts));
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
};

BOOL WINAPI CountEntries(ProfJob, const wchar_t*, const wchar_t*, ProfList, UINT_PTR user) {
    ++*reinterpret_cast<int*>(user);
    return TRUE;
}

TEST_P(StackOff, TheStackIsReallyOff) {
    EXPECT_EQ(Call(StackAtCall) % 16, (16 - GetParam()) % 16);
}

TEST_P(StackOff, TheLibrarysFlagsAlignIt) {
    EXPECT_EQ(Call(MisalignmentOfAVector, 41), 0u);
}

// A profile's whole life: every part of the library that spills to the stack has its turn.
TEST_P(StackOff, EveryStepOfAProfilesLife) {
    BSTR file = nullptr;
    EXPECT_EQ(Call(UtilTempFileCreate, nullptr, L"a", 0u, &file), 0u);
    ProfJob job = ProfJobOpenW(nullptr);
    Call(ProfSetDoubleW, job, nullptr, L"Page/Scale", 1.25);
    for (int i = 0; i < 300; ++i) // long enough for the list's index
        Call(ProfAppendIntW, job, nullptr, (L"Numbers/" + std::to_wstring(i)).c_str(), i);
    EXPECT_EQ(Call(ProfSaveW, job, file, PROF_SAVE_COMPRESSED), 0u);
    Call(ProfJobClose, job);

    const std::uint32_t opened = Call(ProfJobOpenW, file);
    std::memcpy(&job, &opened, sizeof job);
    double scale = 0;
    int number = 0, entries = 0;
    EXPECT_EQ(Call(ProfGetDoubleW, job, nullptr, L"Page/Scale", &scale, 0.5), 0u);
    EXPECT_EQ(scale, 1.25);
    EXPECT_EQ(Call(ProfGetIntA, job, nullptr, "Numbers/299", &number, 0), 0u);
    EXPECT_EQ(number, 299);
    const ProfList numbers = ProfGetListW(job, nullptr, L"Numbers");
    Call(ProfEnumW, job, numbers, CountEntries, &entries);
    EXPECT_EQ(entries, 300);
    Call(ProfDebugList, job, numbers);
    Call(ProfJobClose, job);
    EXPECT_EQ(Call(UtilTempFileRelease, file, FALSE), 0u);
    SysFreeString(file);
}

TEST_P(StackOff, VectorCodeOfTexts) {
    const std::wstring words(100, L'x');
    wchar_t room[300];
    char bytes[200];
    Call(UtilStrcpy, room, words.c_str());
    EXPECT_EQ(Call(UtilStricmp, room, words.c_str()), 0u);
    EXPECT_EQ(Call(UtilConvertBLOBToString, words.data(), 200u, room, 300u, TRUE), 0u);
    EXPECT_EQ(Call(UtilConvertStringToBLOB, room, bytes, 200u), 200u);
    EXPECT_EQ(std::memcmp(bytes, words.data(), 200), 0);
    BSTR text = nullptr;
    Call(UtilConvertHtml2PlainText, L"a long text with &lt;b&gt;tags&lt;/b&gt; in it, and more", &text,
         FALSE);
    EXPECT_STREQ(text, L"a long text with <b>tags</b> in it, and more");
    SysFreeString(text);
}

INSTANTIATE_TEST_SUITE_P(Bytes, StackOff, testing::Values(0u, 4u, 8u, 12u));

} // namespace
