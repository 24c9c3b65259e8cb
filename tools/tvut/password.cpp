#include "password.h"

#include "declaration.h"
#include "exit_code.h"
#include "owned.h"
#include "system_reason.h"
#include "text_io.h"

#include <windows.h>

#include <array>

namespace tool::tvut {

namespace {

std::string ReadStart(const std::string& file) {
    std::array<char, 4096> bytes;
    DWORD count = 0;
    const clsHandle handle =
        FileHandle(CreateFileW(ToWide(file).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                               nullptr, OPEN_EXISTING, 0, nullptr));
    if (!handle || !ReadFile(handle.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr))
        throw scFailure{ExitCode::cannotOpen, file, SystemReason(GetLastError())};
    return {bytes.data(), count};
}

} // namespace

void DeclarePasswordFile(clsDeclaration& arguments, std::string& file) {
    arguments.Text("--password-file", file, "A file whose first line is the password, in UTF-8; - for stdin");
}

std::wstring PasswordFrom(const std::string& file) {
    if (file.empty())
        return {};
    std::string text = file == "-" ? ReadStandardInput() : ReadStart(file);
    if (text.starts_with("\xEF\xBB\xBF"))
        text.erase(0, 3);
    text.resize(std::min(text.find_first_of("\r\n"), text.size()));
    if (text.empty())
        throw scFailure{ExitCode::usage, file, "holds no password"};
    return ToWide(text);
}

} // namespace tool::tvut
