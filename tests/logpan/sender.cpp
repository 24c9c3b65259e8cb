#include "sender.h"

#include "support/files.h"

#include <cstring>
#include <cwchar>
#include <string>

namespace logpan_test {

LogpanSharedInfo PublishedInfo() {
    LogpanSharedInfo info{};
    const testing_prof::Handle mapping(OpenFileMappingW(FILE_MAP_READ, FALSE, LOGPAN_SHARED_INFO_LOCAL));
    if (const void* view =
            mapping ? MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, sizeof info) : nullptr) {
        std::memcpy(&info, view, sizeof info);
        UnmapViewOfFile(view);
    }
    return info;
}

LogpanPacketHeader HeaderOf(const wchar_t* tag, char sequence) {
    LogpanPacketHeader header{};
    header.headerSize = sizeof header;
    header.time = {2024, 1, 3, 31, 12, 34, 56, 789};
    std::wcsncpy(header.tag, tag, LOGPAN_TAG_LENGTH - 1);
    header.thread = 0x1234;
    header.processor = 1;
    header.sequence = static_cast<unsigned char>(sequence);
    header.kind = 1;
    return header;
}

void clsSender::SendBytes(const void* bytes, std::size_t size) const {
    sendto(socket_, static_cast<const char*>(bytes), static_cast<int>(size), 0,
           reinterpret_cast<const sockaddr*>(&viewer_), sizeof viewer_);
}

void clsSender::Send(LogpanPacketHeader header, std::wstring_view text) const {
    header.textBytes = static_cast<UINT32>(text.size() * sizeof(wchar_t));
    SendAsIs(header, text);
}

void clsSender::SendAsIs(const LogpanPacketHeader& header, std::wstring_view text) const {
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
    SendBytes(bytes.data(), bytes.size());
}

bool SendToMailslot(std::string_view message) {
    const testing_prof::Handle mailslot =
        testing_prof::OpenExisting(LOGPAN_MAILSLOT, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    DWORD written = 0;
    return mailslot &&
           WriteFile(mailslot.get(), message.data(), static_cast<DWORD>(message.size()), &written, nullptr);
}

} // namespace logpan_test
