// Which paths are taken, without regard to case, and by what: eight bytes a path.
//
// A path is known by a key of 62 bits, made of its components by a hash that is seeded once a process. Equal
// paths have equal keys. Among a million others, two share one with a chance of one in a million: the second
// is then taken for there already, which costs it a number and nothing else.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tvut {

using PathKey = std::uint64_t;
constexpr PathKey topFolder = 0;

class clsPathKeys {
  public:
    // The key of what has a name in a folder. Throws std::bad_alloc.
    PathKey Below(PathKey folder, std::u16string_view name);

    // Calls a function with the key of each folder on a path, from the top down, and returns the key of the
    // path itself; components have the separator between them.
    template <class Function>
    PathKey Along(std::u16string_view path, char16_t separator, Function eachFolder) {
        PathKey key = topFolder;
        for (;;) {
            const std::size_t end = path.find(separator);
            key = Below(key, path.substr(0, end));
            if (end == path.npos)
                return key;
            eachFolder(key);
            path.remove_prefix(end + 1);
        }
    }

  private:
    std::u16string upper_;
};

class clsTakenNames {
  public:
    enum class Kind : std::uint8_t { nothing, file, folder, impliedFolder };

    Kind What(PathKey key) const noexcept;
    // Takes a path, or changes what it is taken by. Throws std::bad_alloc.
    void Take(PathKey key, Kind kind);
    void Clear() noexcept { *this = clsTakenNames(); }

  private:
    std::size_t SlotOf(PathKey key) const noexcept;
    void Grow();

    // A key with what takes it in its two lowest bits; 0 where there is none.
    std::unique_ptr<std::uint64_t[]> slots_;
    std::size_t count_ = 0; // of slots, a power of 2
    std::size_t taken_ = 0;
};

} // namespace tvut
