// A quotation mark opens a value only after =; anywhere else it belongs to a name.
#include "attributes.h"

#include "characters.h"

namespace tool::html {

bool clsAttributeWalk::Next() {
    while (at_ < text_.size() && (IsBlank(text_[at_]) || text_[at_] == u'/'))
        ++at_;
    if (at_ == text_.size() || text_[at_] == u'>')
        return false;
    const std::size_t start = at_++; // an = at the start belongs to the name
    ReadUntil(u" \t\n\f\r/>=");
    name_ = text_.substr(start, at_ - start);
    value_ = {};
    const std::size_t afterName = at_;
    SkipBlanks();
    if (at_ < text_.size() && text_[at_] == u'=')
        ReadValue();
    else
        at_ = afterName;
    return true;
}

void clsAttributeWalk::SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_]))
        ++at_;
}

void clsAttributeWalk::ReadValue() {
    ++at_;
    SkipBlanks();
    if (at_ == text_.size() || (text_[at_] != u'"' && text_[at_] != u'\'')) {
        value_ = ReadUntil(u" \t\n\f\r>");
        return;
    }
    const std::u16string_view quote = text_.substr(at_++, 1);
    value_ = ReadUntil(quote);
    if (at_ < text_.size())
        ++at_;
}

std::u16string_view clsAttributeWalk::ReadUntil(std::u16string_view ends) {
    const std::size_t start = at_;
    at_ = std::min(text_.find_first_of(ends, start), text_.size());
    return text_.substr(start, at_ - start);
}

std::optional<std::u16string_view> AttributeOf(std::u16string_view attributes, std::u16string_view name) {
    for (clsAttributeWalk walk{attributes}; walk.Next();) {
        if (IsSame(walk.Name(), name))
            return walk.Value();
    }
    return std::nullopt;
}

} // namespace tool::html
