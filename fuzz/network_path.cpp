// Turns any paths over any drives: the input's first line is the path, those after it are what a letter is
// inside the system, what the next one leads to, and so on in turn.
#include "files/network_path.h"
#include "files/path_root.h"
#include "require.h"
#include "unit/native_platform.h"

#include <array>

using namespace tvut;

namespace {

constexpr std::u16string_view parts[] = {u"\\",          u"\\",        u"/",  u"\\\\?\\", u"\\\\?\\UNC\\",
                                         u"\\??\\",      u"UNC\\",     u"A:", u"b:",      u"c:",
                                         u"srv",         u"share",     u".",  u"..",      u" ",
                                         u"$",           u"localhost", u"C$", u"x.txt",   u"\\\\srv\\share",
                                         u"\\\\?\\A:\\", u"\\??\\B:\\"};
constexpr std::size_t lineCount = 9;

class clsDrives final : public IclsConnections {
  public:
    explicit clsDrives(const std::array<std::u16string, lineCount>& lines) : lines_(lines) {}
    std::u16string Device(char16_t letter) override { return Line(letter, 1); }
    std::u16string RemoteName(char16_t letter) override { return Line(letter, 2); }
    std::vector<std::u16string> ComputerNames() override { return {u"srv"}; }
    std::u16string SharedFolder(std::u16string_view share) override {
        return share == u"share" ? lines_[lineCount - 2] : std::u16string();
    }

  private:
    // Of A, B and C; other letters are free.
    std::u16string Line(char16_t letter, std::size_t which) const {
        Require(letter >= u'A' && letter <= u'Z');
        return letter > u'C' ? std::u16string() : lines_[static_cast<std::size_t>(letter - u'A') * 2 + which];
    }
    const std::array<std::u16string, lineCount>& lines_;
};

bool IsAbsolute(std::u16string_view path) {
    return UtilpRootOf(path).kind == PathKind::absolute;
}

} // namespace

// Bytes, with those from 0x80 on as parts.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::array<std::u16string, lineCount> lines;
    for (std::size_t at = 0, line = 0; at < size && line < lineCount; ++at) {
        if (data[at] == '\n')
            ++line;
        else if (data[at] >= 0x80)
            lines[line] += parts[data[at] % std::size(parts)];
        else
            lines[line] += static_cast<char16_t>(data[at]);
    }
    DiagnosticLines().clear(); // or they would fill the memory
    clsDrives drives(lines);
    std::u16string network = u"none", local = u"none", again;
    if (UtilpPathToNetwork(lines[0], drives, network) == UtilResult::ok) {
        Require(network.size() <= longestPath && network.size() > 2 && UtilpIsSeparator(network[1]));
    } else {
        Require(network == u"none");
    }
    if (UtilpPathToLocal(lines[0], drives, local) != UtilResult::ok) {
        Require(local == u"none");
        return 0;
    }
    Require(local == lines[0] ||
            (local.size() <= longestPath && IsAbsolute(local) && UtilpBeginsWithDrive(local)));
    Require(UtilpPathToLocal(local, drives, again) == UtilResult::ok && again == local); // it stays
    return 0;
}
