// The list of handles that modules announce: which are there, since when, and who made them.
//
// Call stacks are kept once each, however many handles were made there. Used under the lock of its owner.
#pragma once

#include "window/record_table.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tvut {

// What counts of a call stack: the frames of the caller and above.
class clsHandleStack {
  public:
    static constexpr std::size_t most = 16;

    clsHandleStack() noexcept = default;
    explicit clsHandleStack(std::span<const void* const> frames) noexcept; // more than most are left out

    std::span<const void* const> Frames() const noexcept { return {frames_.data(), count_}; }
    std::uint32_t Hash() const noexcept;
    bool operator==(const clsHandleStack& other) const noexcept = default;

  private:
    std::array<const void*, most> frames_{}; // those that are not used are null
    std::uint32_t count_ = 0;
};

// What is noted of a handle.
class clsHandleNote {
  public:
    static constexpr std::size_t longestLabel = 31; // characters

    clsHandleNote() noexcept = default;
    clsHandleNote(std::uint32_t handle, std::uint8_t kind, std::u16string_view label,
                  std::uint32_t now) noexcept;

    std::uint32_t Handle() const noexcept { return handle_; }
    std::uint8_t Kind() const noexcept { return kind_; }
    std::u16string_view Label() const noexcept { return {label_.data(), labelLength_}; }
    std::uint32_t AddedAt() const noexcept { return addedAt_; } // milliseconds, as the caller counts them

  private:
    std::uint32_t handle_ = 0;
    std::uint32_t addedAt_ = 0;
    std::uint8_t kind_ = 0, labelLength_ = 0;
    std::array<char16_t, longestLabel> label_;
};

// A copy for those who report.
struct scKeptHandle {
    clsHandleNote note;
    clsHandleStack stack;
};
struct scHandleGroup {
    scKeptHandle first; // the oldest
    std::uint32_t handles = 0;
};

struct scHandlesLeft {
    std::uint32_t handles = 0;
    std::uint32_t stacks = 0;
    std::vector<scHandleGroup> groups; // one a stack, most handles first; at most as many as were asked for
};

// An entry that may be gone the next moment.
struct scHandleEntry {
    std::uint32_t handle;
    std::uint8_t kind;
    std::uint32_t serial; // of its addition
};

class clsHandleList {
  public:
    static constexpr std::uint32_t most = 65536;
    static constexpr std::size_t kinds = 6; // the first stands for any
    static constexpr std::uint8_t anyKind = 0;

    enum class Added : std::uint8_t { asNew, inPlace, tooMany };

    // Adds a handle; one that is there gets a new entry in place of its old one, which is copied out. Throws
    // std::bad_alloc, and is as before then.
    Added Add(const clsHandleNote& note, const clsHandleStack& stack, scKeptHandle& old);

    enum class Removed : std::uint8_t { yes, notThere, otherKind };
    Removed Remove(std::uint32_t handle, std::uint8_t kind) noexcept;

    std::uint32_t Count(std::uint8_t kind) const noexcept;

    // Numbers the present moment: 1, 2, ...
    std::uint32_t Mark() noexcept;
    std::uint32_t Marks() const noexcept { return marks_; }

    std::uint32_t CountSince(std::uint8_t kind, std::uint32_t mark) noexcept;
    // The entries of a kind that were added after a mark, 0: all, by who made them. Throws std::bad_alloc.
    scHandlesLeft Left(std::uint8_t kind, std::uint32_t mark, std::size_t mostGroups);

    // Entries to ask somebody about without the lock, and copies of those that are still in then: the oldest
    // first, those of one stack together. Throw std::bad_alloc.
    std::vector<scHandleEntry> Entries(std::uint8_t kind);
    std::vector<scKeptHandle> StillIn(std::span<const scHandleEntry> entries);

  private:
    struct scEntry {
        std::uint32_t next;
        std::uint32_t stack; // place in stacks_
        std::uint32_t serial;
        std::uint32_t mark; // the last one before it was added
        clsHandleNote note;

        std::uint32_t Hash() const noexcept { return HashOf(note.Handle()); }
    };
    struct scStack {
        std::uint32_t next;
        std::uint32_t hash;
        std::uint32_t users;
        clsHandleStack frames;
        std::uint32_t handles, first; // of the report that is being made

        std::uint32_t Hash() const noexcept { return hash; }
    };
    static constexpr std::uint32_t none = clsRecordTable<scEntry>::none;

    static std::uint32_t HashOf(std::uint32_t handle) noexcept;
    std::uint32_t Find(std::uint32_t handle) const noexcept;
    std::uint32_t TakeStack(const clsHandleStack& stack);
    void LeaveStack(std::uint32_t place) noexcept;
    scKeptHandle CopyOf(const scEntry& entry) const noexcept;
    void Fill(scEntry& entry, const clsHandleNote& note, std::uint32_t stack) noexcept;
    bool IsOlder(std::uint32_t one, std::uint32_t other) const noexcept;

    template <class Visit>
    void ForEachSince(std::uint8_t kind, std::uint32_t mark, Visit visit);

    clsRecordTable<scEntry> entries_;
    clsRecordTable<scStack> stacks_;
    std::array<std::uint32_t, kinds> counts_{};
    std::uint32_t serial_ = 0, marks_ = 0;
};

} // namespace tvut
