// CreateProcess with pipes. Each pipe has a thread of its own, so that no full pipe can stop the rest.
#include "process.h"

#include "text_io.h"

#include <gtest/gtest.h>

namespace prof_test {

namespace {

struct scPipe {
    testing_prof::Handle read;
    testing_prof::Handle write;
};

// Only the child's end may be inherited: a child holding the other one would never see the end.
scPipe MakePipe(bool childReads) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    EXPECT_TRUE(CreatePipe(&read, &write, &inherited, 0));
    SetHandleInformation(childReads ? write : read, HANDLE_FLAG_INHERIT, 0);
    return {testing_prof::Handle{read}, testing_prof::Handle{write}};
}

void Feed(testing_prof::Handle pipe, const std::string& text) {
    DWORD count = 0;
    WriteFile(pipe.get(), text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
}

} // namespace

clsProcess::clsProcess(const std::filesystem::path& program, std::string_view commandLine,
                       const std::filesystem::path& folder, std::string_view input, bool wantsOutput) {
    scPipe in = MakePipe(true);
    scPipe out = MakePipe(false);
    scPipe err = MakePipe(false);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = in.read.get();
    start.hStdOutput = out.write.get();
    start.hStdError = err.write.get();
    PROCESS_INFORMATION process{};
    std::wstring words = tool::ToWide(commandLine);
    if (!CreateProcessW(program.c_str(), words.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(),
                        &start, &process)) {
        ADD_FAILURE() << program << " did not start: error " << GetLastError();
        errorEnded_ = true;
        return;
    }
    const testing_prof::Handle thread{process.hThread};
    process_.reset(process.hProcess);
    if (wantsOutput)
        out_ = std::move(out.read);
    err_ = std::move(err.read);
    feeder_ = std::jthread{
        [pipe = std::move(in.write), text = std::string{input}]() mutable { Feed(std::move(pipe), text); }};
    if (wantsOutput)
        outReader_ = std::jthread{[this] { Drain(out_.get(), outcome_.out); }};
    errReader_ = std::jthread{[this] { Drain(err_.get(), outcome_.err); }};
}

clsProcess::~clsProcess() {
    if (process_)
        Kill();
}

void clsProcess::Drain(HANDLE pipe, std::string& text) {
    static constexpr DWORD pieceSize = 64 * 1024;
    std::string piece(pieceSize, '\0');
    for (DWORD count = 0; ReadFile(pipe, piece.data(), pieceSize, &count, nullptr) && count > 0;) {
        const std::lock_guard lock{mutex_};
        text.append(piece, 0, count);
        changed_.notify_all();
    }
    const std::lock_guard lock{mutex_};
    errorEnded_ = errorEnded_ || &text == &outcome_.err;
    changed_.notify_all();
}

std::string clsProcess::WaitFor(const std::string& stream, std::string_view text) {
    std::unique_lock lock{mutex_};
    const auto isThere = [&] { return stream.find(text) != std::string::npos; };
    changed_.wait(lock, [&] { return isThere() || errorEnded_; });
    return isThere() ? stream : std::string{};
}

scOutcome clsProcess::Finish() {
    for (std::jthread* thread : {&feeder_, &outReader_, &errReader_})
        if (thread->joinable())
            thread->join();
    if (!process_)
        return {};
    WaitForSingleObject(process_.get(), INFINITE);
    GetExitCodeProcess(process_.get(), &outcome_.code);
    return outcome_;
}

scOutcome RunProgram(const std::filesystem::path& program, std::string_view commandLine,
                     const std::filesystem::path& folder, std::string_view input) {
    return clsProcess{program, commandLine, folder, input}.Finish();
}

} // namespace prof_test
