// A function that its module's table of frames tells of is left by that, as such code need not keep a frame
// pointer; others by the chain.
//
// A frame of the chain is two words on the stack: the caller's frame pointer and the return address. The
// chain must run towards the stack's end and its return addresses into code, so damage ends it and it cannot
// turn round. It is whole when it ends with a zero near the end of the stack, where threads begin.
//
// Beyond a break the stack is searched word by word. What counts is an address of code that stands after a
// call instruction; a pushed frame pointer right below it that begins a sound chain is followed again. All of
// it stays marked as a guess, because what an earlier call has left on the stack looks the same.
#include "runtime/crash/frame_walk.h"

#include "runtime/crash/frame_tables.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tvut {

namespace {

constexpr std::uint32_t wordSize = 4;
constexpr std::uint32_t mostSearched = 256 * 1024; // bytes of stack
constexpr std::uint32_t nearEnd = 1024; // bytes: what stands on a stack before the first function does

// The stack, read a block at a time, because each read may be a call to the system.
class clsStackWords {
  public:
    clsStackWords(IclsProcessMemory& memory, std::uint32_t end) noexcept : memory_(memory), end_(end) {}

    std::uint32_t End() const noexcept { return end_; }

    bool At(std::uint32_t address, std::uint32_t& word) noexcept {
        if (address % wordSize != 0 || address >= end_ || end_ - address < wordSize)
            return false;
        if (address < begin_ || address - begin_ >= count_ * wordSize)
            Load(address);
        if (address - begin_ >= count_ * wordSize)
            return false;
        word = words_[(address - begin_) / wordSize];
        return true;
    }

  private:
    void Load(std::uint32_t address) noexcept {
        const std::size_t bytes = std::min<std::size_t>(end_ - address, sizeof words_);
        begin_ = address;
        count_ = static_cast<std::uint32_t>(memory_.Read(address, words_.data(), bytes) / wordSize);
    }

    IclsProcessMemory& memory_;
    std::uint32_t end_;
    std::uint32_t begin_ = 0, count_ = 0;
    std::array<std::uint32_t, 256> words_;
};

// Where code is. Addresses of a call stack lie in a few modules; the last region is asked first.
class clsCode {
  public:
    explicit clsCode(IclsProcessMemory& memory) noexcept : memory_(memory) {}

    bool IsCode(std::uint32_t address) noexcept {
        const scMemoryRange& range = region_.range;
        if (address - range.address >= range.bytes && !memory_.RegionAt(address, region_))
            region_ = {};
        return region_.isExecutable && region_.isReadable && address - range.address < range.bytes;
    }

    // Whether these bytes stand at an address.
    bool Has(std::uint32_t address, std::string_view bytes) noexcept {
        std::array<char, 4> there;
        const std::size_t count = std::min(bytes.size(), there.size());
        return memory_.Read(address, there.data(), count) == count &&
               std::string_view(there.data(), count) == bytes;
    }

    // Whether a function is left at an address, and how many bytes of arguments it takes off the stack.
    bool IsReturn(std::uint32_t address, std::uint32_t& taken) noexcept {
        std::array<std::uint8_t, 2> bytes{};
        taken = 0;
        if (Has(address, "\xC3"))
            return true;
        if (!Has(address, "\xC2") || !UtilpReadObject(memory_, address + 1, bytes))
            return false;
        taken = bytes[0] | std::uint32_t{bytes[1]} << 8;
        return true;
    }

    // Whether a call instruction ends at an address: call rel32 to code, or call r/m32 of any length.
    bool IsAfterCall(std::uint32_t address) noexcept {
        std::array<std::uint8_t, longestCall> before;
        if (!IsCode(address) || address < longestCall ||
            memory_.Read(address - longestCall, before.data(), longestCall) != longestCall)
            return false;
        if (before[longestCall - 5] == 0xE8)
            return IsCode(address + Relative(before));
        return EndsWithIndirectCall(before);
    }

  private:
    static constexpr std::size_t longestCall = 7;
    using Bytes = std::array<std::uint8_t, longestCall>;

    static std::uint32_t Relative(const Bytes& before) noexcept {
        std::uint32_t distance = 0;
        for (std::size_t i = longestCall; i-- > longestCall - 4;)
            distance = distance << 8 | before[i];
        return distance;
    }

    // FF /2 with each way to address its operand takes 2, 3, 4, 6 or 7 bytes.
    static bool EndsWithIndirectCall(const Bytes& before) noexcept {
        for (std::size_t length = 2; length <= longestCall; ++length) {
            const std::size_t at = longestCall - length;
            if (before[at] == 0xFF && (before[at + 1] & 0x38) == 0x10 && LengthOf(before, at + 1) == length)
                return true;
        }
        return false;
    }

    // Of an instruction with one byte before its ModR/M byte.
    static std::size_t LengthOf(const Bytes& bytes, std::size_t at) noexcept {
        const unsigned mode = bytes[at] >> 6, base = bytes[at] & 7;
        const bool hasScale = mode != 3 && base == 4;
        if (hasScale && at + 1 == longestCall)
            return 0;
        const bool isAbsolute = mode == 0 && (base == 5 || (hasScale && (bytes[at + 1] & 7) == 5));
        const std::size_t distance = mode == 1 ? 1 : mode == 2 || isAbsolute ? 4 : 0;
        return 2 + (hasScale ? 1 : 0) + distance;
    }

    IclsProcessMemory& memory_;
    scMemoryRegion region_;
};

class clsWalk {
  public:
    clsWalk(IclsProcessMemory& memory, const scWalkStart& start, std::span<scFrame> frames) noexcept
        : stack_(memory, start.stackEnd), code_(memory), tables_(memory), frames_(frames),
          next_((start.esp + wordSize - 1) & ~(wordSize - 1)), esp_(next_) {}

    std::size_t Run(const scWalkStart& start) noexcept {
        Put(start.eip, false);
        LeaveFrameless(start.eip);
        bool isWhole = Chain(start.ebp, false);
        while (!isWhole && Search(isWhole))
            ;
        return count_;
    }

  private:
    bool IsFull() const noexcept { return count_ == frames_.size(); }

    void Put(std::uint32_t address, bool isGuess) noexcept {
        if (!IsFull())
            frames_[count_++] = {address, isGuess};
    }

    // A call to where no code is has left nothing on the stack but where it came from.
    void LeaveFrameless(std::uint32_t address) noexcept {
        std::uint32_t caller = 0, taken = 0;
        if (!code_.IsCode(address)) {
            if (stack_.At(next_, caller) && code_.IsCode(caller))
                Take(caller, 0, 0);
        } else if (IsEntry(address) || IsEntry(address - 1)) {
            const std::uint32_t pushed = IsEntry(address) ? 0 : wordSize;
            if (stack_.At(next_ + pushed, caller) && code_.IsAfterCall(caller))
                Take(caller, pushed, 0);
        } else {
            while (code_.IsReturn(address, taken) && stack_.At(next_, caller) && code_.IsAfterCall(caller)) {
                Take(caller, 0, taken);
                address = caller;
            }
        }
    }

    // Bytes of the stack before the return address, and those that go with it.
    void Take(std::uint32_t caller, std::uint32_t before, std::uint32_t after) noexcept {
        Put(caller, false);
        esp_ = next_ + before + wordSize;
        next_ = esp_ + after;
    }

    // The two ways to write "push ebp; mov ebp, esp", and one after an instruction that does nothing.
    bool IsEntry(std::uint32_t address) noexcept {
        return code_.Has(address, "\x55\x89\xE5") || code_.Has(address, "\x55\x8B\xEC") ||
               code_.Has(address, "\x8B\xFF\x55");
    }

    // Follows tables, and frame pointers where there is none; what follows them stands at next_. Returns
    // whether the chain is whole, or there is no room for more.
    bool Chain(std::uint32_t pointer, bool isGuess) noexcept {
        std::uint32_t caller = 0, outer = 0;
        while (!IsFull()) {
            if (LeaveByTable(pointer, isGuess))
                continue;
            if (!IsFrame(pointer, outer, caller))
                break;
            Put(caller, isGuess);
            next_ = esp_ = pointer + 2 * wordSize;
            pointer = outer;
        }
        return IsFull() || (pointer == 0 && stack_.End() - next_ <= nearEnd) || EndsThere(pointer);
    }

    // Believed when the stack gets shorter, and the caller's code shows a call.
    bool LeaveByTable(std::uint32_t& pointer, bool isGuess) noexcept {
        const std::uint32_t address = frames_[count_ - 1].address;
        scFrameRegisters registers{count_ == 1 ? address : address - 1, esp_, pointer};
        if (!tables_.Leave(registers) || registers.esp <= esp_ || registers.esp > stack_.End() ||
            registers.esp % wordSize != 0 || !code_.IsAfterCall(registers.eip))
            return false;
        Put(registers.eip, isGuess);
        esp_ = registers.esp;
        next_ = std::max(next_, esp_);
        pointer = registers.ebp;
        return true;
    }

    bool IsFrame(std::uint32_t pointer, std::uint32_t& outer, std::uint32_t& caller) noexcept {
        return pointer >= next_ && stack_.At(pointer, outer) && stack_.At(pointer + wordSize, caller) &&
               code_.IsCode(caller);
    }

    // A last frame, which nobody called.
    bool EndsThere(std::uint32_t pointer) noexcept {
        std::uint32_t outer = 0, caller = 0;
        return pointer >= next_ && stack_.At(pointer, outer) && stack_.At(pointer + wordSize, caller) &&
               outer == 0 && caller == 0;
    }

    // Looks for the next return address, and follows the chain that it may belong to. False when there is
    // none.
    bool Search(bool& isWhole) noexcept {
        std::uint32_t caller = 0;
        for (; !IsFull() && searched_ < mostSearched; searched_ += wordSize) {
            const std::uint32_t at = next_;
            if (!stack_.At(at, caller))
                return false;
            next_ += wordSize;
            esp_ = next_;
            if (!code_.IsAfterCall(caller))
                continue;
            Put(caller, true);
            std::uint32_t pointer = 0;
            if (stack_.At(at - wordSize, pointer) && Continues(pointer))
                isWhole = Chain(pointer, true);
            return true;
        }
        return false;
    }

    bool Continues(std::uint32_t pointer) noexcept {
        std::uint32_t outer = 0, caller = 0;
        return IsFrame(pointer, outer, caller) && code_.IsAfterCall(caller);
    }

    clsStackWords stack_;
    clsCode code_;
    clsFrameTables tables_;
    std::span<scFrame> frames_;
    std::size_t count_ = 0;
    std::uint32_t next_;         // where the stack has not been looked at
    std::uint32_t esp_;          // of the last frame, while it calls the one before
    std::uint32_t searched_ = 0; // bytes
};

} // namespace

std::size_t UtilpWalkFrames(IclsProcessMemory& memory, const scWalkStart& start,
                            std::span<scFrame> frames) noexcept {
    scWalkStart bounded = start;
    scMemoryRegion region;
    if (bounded.stackEnd == 0 && memory.RegionAt(start.esp, region) && region.isReadable)
        bounded.stackEnd =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(region.range.End(), UINT32_MAX));
    return clsWalk(memory, bounded, frames).Run(bounded);
}

} // namespace tvut
