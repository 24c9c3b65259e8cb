#include "link_list.h"

#include "characters.h"

namespace tool::html {

namespace {

constexpr std::u16string_view mail = u"mailto:";

bool LeadsElsewhere(std::u16string_view address) {
    constexpr std::u16string_view script = u"javascript:";
    return !address.empty() && !address.starts_with(u'#') &&
           !IsSame(address.substr(0, script.size()), script);
}

std::u16string Digits(std::size_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

} // namespace

void clsLinkList::End(clsPageWriter& writer, std::u16string_view address) {
    const std::u16string_view label = writer.Label();
    if (links_ == Links::none || label.empty() || !LeadsElsewhere(address))
        return;
    std::u16string masked;
    AppendMasked(masked, address);
    const std::u16string_view shown = masked;
    if (label == shown || (IsSame(shown.substr(0, mail.size()), mail) && label == shown.substr(mail.size())))
        return;
    if (links_ == Links::inLine)
        writer.EndLink(shown);
    else
        writer.AppendToLabel(u" [" + Digits(NumberOf(address)) + u"]");
}

std::size_t clsLinkList::NumberOf(std::u16string_view address) {
    const auto [entry, isNew] = numbers_.try_emplace(std::u16string(address), addresses_.size() + 1);
    if (isNew)
        addresses_.push_back(&entry->first);
    return entry->second;
}

void clsLinkList::WriteList(clsPageWriter& writer) const {
    writer.EndParagraph();
    for (std::size_t number = 0; number < addresses_.size(); ++number) {
        writer.EndLine();
        writer.Text(u"[" + Digits(number + 1) + u"] ");
        writer.Text(*addresses_[number]);
    }
}

} // namespace tool::html
