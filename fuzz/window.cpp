// Addresses of pages of help, which must lead back to the topic, names of messages, and the list of handles
// against a plain count.
#include "require.h"

#include "text/encoding/utf8.h"
#include "window/handle_list.h"
#include "window/help_target.h"
#include "window/message_names.h"

#include <algorithm>
#include <map>
#include <string>

using namespace tvut;

namespace {

// What a browser makes of the part after "#".
std::string Decoded(std::u16string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        Require(text[at] > u' ' && text[at] < 0x7F && text[at] != u'#' && text[at] != u'"');
        if (text[at] != u'%') {
            bytes += static_cast<char>(text[at]);
            continue;
        }
        Require(at + 2 < text.size());
        const std::string figures{static_cast<char>(text[at + 1]), static_cast<char>(text[at + 2])};
        bytes += static_cast<char>(std::stoul(figures, nullptr, 16));
        at += 2;
    }
    return bytes;
}

std::string Utf8(std::u16string_view text) {
    std::string bytes(text.size() * longestUtf8, '\0');
    bytes.resize(UtilpEncodeUtf8(text, bytes.data()));
    return bytes;
}

void CheckAddress(const std::u16string& name, const std::u16string& topic) {
    const std::u16string file = u"C:\\" + name + u".htm";
    const scHelpTarget target = UtilpHelpTarget(file, {HelpPage::topic, topic});
    Require(target.call == HelpCall::openAddress);
    const std::u16string_view address = target.text;
    const std::size_t hash = std::min(address.find(u'#'), address.size());
    std::u16string slashes = file;
    std::replace(slashes.begin(), slashes.end(), u'\\', u'/');
    Require(Decoded(address.substr(0, hash)) == "file:///" + Utf8(slashes));
    const std::u16string_view part = topic.starts_with(u'#') ? std::u16string_view(topic).substr(1) : topic;
    Require(Decoded(hash == address.size() ? u"" : address.substr(hash + 1)) == Utf8(part));
}

// Two bytes a step: a handle or a mark, what to do.
void CheckList(const std::uint8_t* data, std::size_t size) {
    clsHandleList list;
    std::map<std::uint32_t, std::uint8_t> kinds;
    for (std::size_t at = 0; at + 1 < size; at += 2) {
        const std::uint32_t handle = data[at];
        const auto kind = static_cast<std::uint8_t>(data[at + 1] % 5 + 1);
        const void* const frame = &data[at + 1] - data[at + 1] % 16 % (at + 1);
        scKeptHandle old;
        if (data[at + 1] < 128) {
            const auto added = list.Add({handle, kind, u"label", 0}, clsHandleStack({&frame, 1}), old);
            Require((added == clsHandleList::Added::asNew) == kinds.insert_or_assign(handle, kind).second);
        } else {
            const auto entry = kinds.find(handle);
            const bool fits = entry != kinds.end() && entry->second == kind;
            Require((list.Remove(handle, kind) == clsHandleList::Removed::yes) == fits);
            if (fits)
                kinds.erase(entry);
        }
    }
    Require(list.Count(clsHandleList::anyKind) == kinds.size());
    const scHandlesLeft left = list.Left(clsHandleList::anyKind, 0, ~std::size_t{0});
    std::uint32_t sum = 0;
    for (const scHandleGroup& group : left.groups)
        sum += group.handles;
    Require(left.handles == kinds.size() && sum == kinds.size() && left.stacks == left.groups.size());
}

} // namespace

// The name of a file, a line feed, and a topic; bytes of 0x80 and above are units far beyond.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text;
    for (std::size_t at = 0; at < size; ++at)
        text += static_cast<char16_t>(data[at] < 0x80 ? data[at] : data[at] * 0x137);
    const std::size_t end = std::min(text.find(u'\n'), text.size());
    CheckAddress(text.substr(0, end), text.substr(std::min(end + 1, text.size())));
    CheckList(data, size);
    UtilpIsFromOutside({reinterpret_cast<const char*>(data), size});
    const MessageOwner owner = UtilpMessageOwner(text);
    for (std::size_t at = 0; at + 1 < size; at += 2)
        Require(
            !clsMessageText(static_cast<std::uint32_t>(data[at]) << 8 | data[at + 1], owner).View().empty());
    return 0;
}
