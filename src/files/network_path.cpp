// A path is first brought to a plain form with a drive or a share at its beginning: what leads to a folder is
// put in place of text, so ".." must be gone before. After "\\?\" names may be such that no plain path has
// them; these have no other form.
#include "files/network_path.h"

#include "files/path_merge.h"
#include "files/path_root.h"
#include "platform/letter_case.h"
#include "runtime/diagnostics.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::u16string_view verbatim = u"\\\\?\\", verbatimShare = u"UNC\\", substituted = u"\\??\\";
constexpr int mostSubstitutions = 8;

bool IsSame(std::u16string_view a, std::u16string_view b) {
    return a.size() == b.size() && PlatformCompareIgnoringCase(a, b) == 0;
}

bool BeginsWith(std::u16string_view text, std::u16string_view start) {
    return IsSame(text.substr(0, start.size()), start);
}

bool IsOnShare(std::u16string_view path) {
    if (path.size() < 2 || !UtilpIsSeparator(path[0]) || !UtilpIsSeparator(path[1]))
        return false;
    const std::u16string_view rest = path.substr(2);
    const auto end = std::ranges::find_if(rest, UtilpIsSeparator);
    if (end == rest.begin() || end == rest.end())
        return false;
    return end + 1 != rest.end() && !UtilpIsSeparator(end[1]);
}

// From a drive's root on, or the drive alone.
bool IsOnDrive(std::u16string_view path) {
    return UtilpBeginsWithDrive(path) && (path.size() == 2 || path[2] == u'\\');
}

char16_t LetterOf(std::u16string_view drive) {
    return static_cast<char16_t>(drive[0] & ~0x20);
}

// Takes the first component off a path that begins with none of its separators, and that separator.
std::u16string_view TakeComponent(std::u16string_view& path) {
    const std::size_t end = std::min(path.find(u'\\'), path.size());
    const std::u16string_view component = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    return component;
}

void TrimSeparators(std::u16string& path) {
    while (path.ends_with(u'\\'))
        path.pop_back();
}

// ---- Forms of paths ------------------------------------------------------------------------------------

enum class PathForm { malformed, here, drive, share, unsayable };

struct scPlainPath {
    PathForm form;
    std::u16string text; // of drive and share: with single backslashes, without "." and ".."
};

// Whether plain paths have a name, too. At the end of one blanks and dots are lost, and "." and ".." are no
// names.
bool IsSayable(std::u16string_view name) {
    return !name.empty() && name.find(u'/') == name.npos && name.back() != u'.' && name.back() != u' ';
}

scPlainPath Plain(PathForm form, std::u16string_view path, std::size_t rootLength) {
    std::u16string_view rest = path.substr(std::min(rootLength, path.size()));
    while (!rest.empty())
        if (!IsSayable(TakeComponent(rest)))
            return {PathForm::unsayable, {}};
    return {form, std::u16string(path)};
}

scPlainPath PlainOfVerbatim(std::u16string_view path) {
    const std::u16string_view rest = path.substr(verbatim.size());
    if (BeginsWith(rest, verbatimShare)) {
        const std::u16string share = u"\\\\" + std::u16string(rest.substr(verbatimShare.size()));
        return IsOnShare(share) ? Plain(PathForm::share, share, 2) : scPlainPath{PathForm::malformed, {}};
    }
    if (UtilpBeginsWithDrive(rest) && rest.size() > 2 && rest[2] == u'\\')
        return Plain(PathForm::drive, rest, 3);
    return {PathForm::here, {}};
}

scPlainPath Normal(PathForm form, std::u16string_view path) {
    clsBoundedText merged;
    return UtilpMergePaths({}, path, merged) == UtilResult::ok
               ? scPlainPath{form, std::u16string(merged.View())}
               : scPlainPath{PathForm::malformed, {}};
}

scPlainPath PlainOf(std::u16string_view path) {
    if (path.empty() || path.size() > longestPath)
        return {PathForm::malformed, {}};
    if (path.starts_with(verbatim))
        return PlainOfVerbatim(path);
    const PathKind kind = UtilpRootOf(path).kind;
    if (UtilpBeginsWithDrive(path)) {
        if (kind == PathKind::absolute)
            return Normal(PathForm::drive, path);
        return {path.size() == 2 ? PathForm::drive : PathForm::here, std::u16string(path)};
    }
    const bool isDevice =
        path.size() > 3 && (path[2] == u'?' || path[2] == u'.') && UtilpIsSeparator(path[3]);
    if (kind != PathKind::absolute || isDevice)
        return {PathForm::here, {}};
    return IsOnShare(path) ? Normal(PathForm::share, path) : scPlainPath{PathForm::malformed, {}};
}

// What a folder leads to, with what is below it: "\a", "\", or nothing.
UtilResult Join(std::u16string folder, std::u16string_view rest, std::u16string& path) {
    TrimSeparators(folder);
    if (folder.size() + rest.size() > longestPath)
        return UtilResult::badArgument;
    path = std::move(folder);
    path += rest;
    return UtilResult::ok;
}

// ---- To the network ------------------------------------------------------------------------------------

// The path that a drive made by subst stands for; empty for other drives.
std::u16string SubstitutionOf(std::u16string_view device) {
    if (!device.starts_with(substituted))
        return {};
    device.remove_prefix(substituted.size());
    std::u16string path(device);
    if (BeginsWith(device, verbatimShare))
        path.replace(0, verbatimShare.size(), u"\\\\");
    return IsOnShare(path) || IsOnDrive(path) ? path : std::u16string();
}

UtilResult GoesRound(std::u16string_view path) {
    clsDiagnosticLine line;
    line.Put(u"WRN: UtilPathToNetwork('").Put(path).Put(u"'): subst goes round").Write();
    return UtilResult::notFound;
}

UtilResult DriveToNetwork(std::u16string_view asked, std::u16string path, IclsConnections& connections,
                          std::u16string& network) {
    for (int done = 0;; ++done) {
        const std::u16string rest = path.substr(2);
        std::u16string leadsTo = SubstitutionOf(connections.Device(LetterOf(path)));
        const bool isSubstituted = !leadsTo.empty();
        if (!isSubstituted)
            leadsTo = connections.RemoteName(LetterOf(path));
        if (!isSubstituted && !IsOnShare(leadsTo))
            return UtilResult::notFound;
        if (isSubstituted && done == mostSubstitutions)
            return GoesRound(asked);
        const UtilResult joined = Join(std::move(leadsTo), rest, path);
        if (joined != UtilResult::ok)
            return joined;
        if (!isSubstituted || IsOnShare(path)) {
            network = std::move(path);
            return UtilResult::ok;
        }
    }
}

// ---- To this computer ----------------------------------------------------------------------------------

bool IsOrIsBelow(std::u16string_view path, std::u16string_view folder) {
    return BeginsWith(path, folder) && (path.size() == folder.size() || path[folder.size()] == u'\\');
}

// Of a drive the rest after its colon; its root where there is none.
UtilResult OnDrive(std::u16string folder, std::u16string_view rest, std::u16string& path) {
    const UtilResult joined = Join(std::move(folder), rest, path);
    if (joined == UtilResult::ok && path.size() == 2)
        path += u'\\';
    return joined;
}

// The drive that leads to a path or nearest above it, and how much of the path it stands for.
struct scNearestDrive {
    char16_t letter = 0;
    std::size_t length = 0;
};

scNearestDrive NearestDrive(std::u16string_view share, IclsConnections& connections) {
    scNearestDrive nearest;
    for (char16_t letter = u'A'; letter <= u'Z'; ++letter) {
        std::u16string remote = connections.RemoteName(letter);
        TrimSeparators(remote);
        if (remote.size() > nearest.length && IsOrIsBelow(share, remote))
            nearest = {letter, remote.size()};
    }
    return nearest;
}

// Names that every computer has for itself; colons cannot stand in a path of a share.
bool IsThisComputer(std::u16string_view server, IclsConnections& connections) {
    constexpr std::u16string_view always[] = {u"localhost", u"127.0.0.1", u"--1.ipv6-literal.net",
                                              u"0--1.ipv6-literal.net", u"0-0-0-0-0-0-0-1.ipv6-literal.net"};
    const auto isIt = [&](std::u16string_view name) { return IsSame(server, name); };
    return std::ranges::any_of(always, isIt) || std::ranges::any_of(connections.ComputerNames(), isIt);
}

// The drive that a share such as "C$" is the root of; empty for other shares and where it is not there.
std::u16string AdministrativeDrive(std::u16string_view share, IclsConnections& connections) {
    if (share.size() != 2 || share[1] != u'$' || !UtilpBeginsWithDrive(std::u16string{share[0], u':'}))
        return {};
    const char16_t letter = LetterOf(share);
    const bool isDisk = !connections.Device(letter).empty() && connections.RemoteName(letter).empty();
    return isDisk ? std::u16string{letter, u':'} : std::u16string();
}

UtilResult SharedByThisComputer(std::u16string_view network, IclsConnections& connections,
                                std::u16string& path) {
    std::u16string_view rest = network.substr(2);
    const std::u16string_view server = TakeComponent(rest);
    const std::u16string_view share = TakeComponent(rest);
    if (!IsThisComputer(server, connections))
        return UtilResult::notFound;
    std::u16string folder = AdministrativeDrive(share, connections);
    if (folder.empty())
        folder = connections.SharedFolder(share);
    if (!IsOnDrive(folder))
        return UtilResult::notFound;
    const std::size_t afterShare = 2 + server.size() + 1 + share.size();
    return OnDrive(std::move(folder), network.substr(std::min(afterShare, network.size())), path);
}

} // namespace

UtilResult UtilpPathToNetwork(std::u16string_view path, IclsConnections& connections,
                              std::u16string& network) {
    scPlainPath plain = PlainOf(path);
    switch (plain.form) {
    case PathForm::malformed:
        return UtilResult::badArgument;
    case PathForm::share:
        network = path.starts_with(verbatim) ? std::move(plain.text) : std::u16string(path);
        return UtilResult::ok;
    case PathForm::drive:
        return DriveToNetwork(path, std::move(plain.text), connections, network);
    default:
        return UtilResult::notFound;
    }
}

UtilResult UtilpPathToLocal(std::u16string_view network, IclsConnections& connections, std::u16string& path) {
    const scPlainPath plain = PlainOf(network);
    if (plain.form == PathForm::malformed)
        return UtilResult::badArgument;
    if (plain.form == PathForm::share) {
        const scNearestDrive drive = NearestDrive(plain.text, connections);
        return drive.length > 0 ? OnDrive({drive.letter, u':'}, plain.text.substr(drive.length), path)
                                : SharedByThisComputer(plain.text, connections, path);
    }
    if (plain.form == PathForm::unsayable && BeginsWith(network.substr(verbatim.size()), verbatimShare))
        return UtilResult::notFound;
    path = network;
    return UtilResult::ok;
}

} // namespace tvut
