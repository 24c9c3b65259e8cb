#include "text/regex/regex.h"

#include "runtime/diagnostics.h"
#include "text/regex/matcher.h"

namespace tvut {

namespace {

std::unique_ptr<const scRegExProgram> Compile(std::u16string_view pattern) {
    try {
        return std::make_unique<const scRegExProgram>(UtilpCompileRegEx(UtilpParseRegEx(pattern)));
    } catch (const clsRegExError& error) {
        clsDiagnosticLine line;
        line.Put(u"Error in RegEx offset ").Put(static_cast<std::int32_t>(error.Offset()));
        line.Put(u": '").Put(pattern).Put(u"'").Write();
        throw;
    }
}

void Keep(clsRegExMatcher& matcher, std::vector<scRegExMatch>& matches) {
    for (std::size_t group = 0; group < matches.size(); ++group) {
        const std::uint32_t start = matcher.Start(group), end = matcher.End(group);
        matches[group] = start == clsRegExMatcher::none || end == clsRegExMatcher::none
                             ? scRegExMatch()
                             : scRegExMatch{start, end - start};
    }
}

} // namespace

clsRegEx::clsRegEx(std::u16string_view pattern) : program_(Compile(pattern)) {}

clsRegEx::~clsRegEx() = default;

std::size_t clsRegEx::Groups() const noexcept {
    return program_->groups;
}

bool clsRegEx::Matches(std::u16string_view text) const {
    return clsRegExMatcher(*program_, text).Find(0);
}

bool clsRegEx::Match(std::u16string_view text, clsRegExMatchList& match, std::size_t from) const {
    match.text_ = text;
    match.matches_.assign(Groups() + 1, {});
    clsRegExMatcher matcher(*program_, text);
    if (from > text.size() || !matcher.Find(from))
        return false;
    Keep(matcher, match.matches_);
    return true;
}

// After a match, an empty one at its end counts unless that match was empty itself.
std::size_t clsRegEx::GSub(std::u16string_view text, IclsRegExGSubCB& replacement,
                           std::u16string& result) const {
    clsRegExMatchList match;
    match.text_ = text;
    match.matches_.assign(Groups() + 1, {});
    clsRegExMatcher matcher(*program_, text);
    std::size_t count = 0, copied = 0;
    bool mayBeEmpty = true;
    while (matcher.Find(copied, mayBeEmpty)) {
        Keep(matcher, match.matches_);
        const scRegExMatch& whole = match.matches_[0];
        result += text.substr(copied, whole.start - copied);
        replacement.Replace(match, result);
        copied = whole.start + whole.length;
        mayBeEmpty = whole.length != 0;
        ++count;
    }
    result += text.substr(copied);
    return count;
}

} // namespace tvut
