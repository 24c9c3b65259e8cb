// CreateProcess with pipes. Each pipe has a thread of its own, so that no full pipe can stop the rest.
#include "process.h"

#include "text_io.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace prof_test {

namespace {

struct Close {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, Close>;

struct Pipe {
    Handle read;
    Handle write;
};

// Only the child's end may be inherited: a child holding the other one would never see the end.
Pipe makePipe(bool childReads) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    EXPECT_TRUE(CreatePipe(&read, &write, &inherited, 0));
    SetHandleInformation(childReads ? write : read, HANDLE_FLAG_INHERIT, 0);
    return {Handle{read}, Handle{write}};
}

void drain(const Handle& pipe, std::string& text) {
    static constexpr DWORD pieceSize = 64 * 1024;
    std::string piece(pieceSize, '\0');
    for (DWORD count = 0; ReadFile(pipe.get(), piece.data(), pieceSize, &count, nullptr) && count > 0;)
        text.append(piece, 0, count);
}

void feed(Handle& pipe, std::string_view text) {
    DWORD count = 0;
    WriteFile(pipe.get(), text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
    pipe.reset();
}

} // namespace

Outcome run(const std::filesystem::path& program, std::string_view commandLine,
            const std::filesystem::path& folder, std::string_view input) {
    Pipe in = makePipe(true);
    Pipe out = makePipe(false);
    Pipe err = makePipe(false);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = in.read.get();
    start.hStdOutput = out.write.get();
    start.hStdError = err.write.get();
    PROCESS_INFORMATION process{};
    std::wstring words = tool::toWide(commandLine);
    if (!CreateProcessW(program.c_str(), words.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(),
                        &start, &process)) {
        ADD_FAILURE() << program << " did not start: error " << GetLastError();
        return {};
    }
    const Handle thread{process.hThread};
    const Handle running{process.hProcess};
    in.read.reset();
    out.write.reset();
    err.write.reset();

    Outcome outcome;
    {
        const std::jthread feeder{[&] { feed(in.write, input); }};
        const std::jthread outReader{[&] { drain(out.read, outcome.out); }};
        const std::jthread errReader{[&] { drain(err.read, outcome.err); }};
    }
    WaitForSingleObject(running.get(), INFINITE);
    GetExitCodeProcess(running.get(), &outcome.code);
    return outcome;
}

} // namespace prof_test
