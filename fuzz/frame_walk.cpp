// Walks over stacks and code of any bytes: each ends, stays on the stack, and names nothing that is no code;
// a guess stands after a call, and what follows a guess is one, too.
#include "runtime/crash/frame_walk.h"

#include "choices.h"
#include "require.h"
#include "support/frame_table_image.h"
#include "support/process_picture.h"

#include <vector>

using namespace tvut;

namespace {

constexpr std::uint32_t stackBegin = 0x00200000, imageBegin = 0x003FE000, pageSize = 4096;
constexpr std::uint32_t codeBegin = imageBegin + imageCodeAt, imageBytes = 3 * pageSize;

// Calls of all forms, and bytes that only look like one.
constexpr std::string_view calls[] = {{"\xE8\x00\x00\x00\x00", 5},
                                      {"\xE8\x00\x00\x00\x70", 5},
                                      {"\xFF\xD0", 2},
                                      {"\xFF\x15\x00\x00\x40\x00", 6},
                                      {"\xFF\x54\x24\x08", 4},
                                      {"\xFF\x94\x24\x00\x01\x00\x00", 7},
                                      {"\xFF\x53\x08", 3},
                                      {"\xFF\x14\x24", 3},
                                      {"\xFF\x14\x85\x00\x00\x40\x00", 7},
                                      {"\xFF\x25\x00\x00\x40\x00", 6},
                                      {"\x8B\xD0", 2},
                                      {"\xFF", 1}};

// Code with a call before each address of the list that should look so.
std::string Code(clsChoices& choices, std::vector<std::uint32_t>& returns) {
    std::string code(8, '\x90');
    while (code.size() < 512) {
        code += calls[choices.Below(std::size(calls))];
        returns.push_back(codeBegin + static_cast<std::uint32_t>(code.size()));
        code.append(1 + choices.Below(8), '\x90');
    }
    return code;
}

std::string Stack(clsChoices& choices, const std::vector<std::uint32_t>& returns) {
    std::string stack;
    while (!choices.AtEnd() && stack.size() < 2 * pageSize) {
        std::uint32_t word = 0;
        switch (choices.Below(5)) {
        case 0:
            word = returns[choices.Below(static_cast<unsigned>(returns.size()))];
            break;
        case 1:
            word = stackBegin + choices.Below(2 * pageSize);
            break;
        case 2:
            word = stackBegin + static_cast<std::uint32_t>(stack.size()) + 4 * choices.Below(32);
            break;
        case 3:
            word = codeBegin + choices.Below(512);
            break;
        default:
            word = choices.Below(65536) << 16 | choices.Below(65536);
            break;
        }
        stack.append(reinterpret_cast<const char*>(&word), sizeof word);
    }
    return stack;
}

// A table of a few functions, their programs made of what compilers write and of any bytes.
std::string Image(clsChoices& choices) {
    constexpr std::string_view steps[] = {"\x41",     "\x48",     "\x0E\x08",
                                          "\x0E\x20", "\x85\x02", "\x0D\x05",
                                          "\x0A",     "\x0B",     "\x0F\x03\x75\x70\x06"};
    std::vector<scTableFunction> functions;
    for (std::uint32_t begin = imageCodeAt; functions.size() < choices.Below(4); begin += 128) {
        std::string program;
        for (unsigned left = choices.Below(8); left > 0; --left) {
            const unsigned step = choices.Below(std::size(steps) + 1);
            program += step < std::size(steps) ? std::string(steps[step])
                                               : std::string(1, static_cast<char>(choices.Below(256)));
        }
        functions.push_back({begin, 128, program});
    }
    return FrameTableImage(functions);
}

// Whether a call ends there, told the other way round: from where each form of it begins.
bool IsAfterCall(const std::string& image, std::uint32_t address) {
    if (address - imageBegin > image.size())
        return false;
    const std::string before = image.substr(0, address - imageBegin);
    const auto ends = [&](std::size_t length, auto isCall) {
        return before.size() >= 7 &&
               isCall(reinterpret_cast<const std::uint8_t*>(before.data()) + before.size() - length);
    };
    const auto isIndirect = [](std::uint8_t modes, std::uint8_t mask) {
        return [=](const std::uint8_t* at) { return at[0] == 0xFF && (at[1] & mask) == modes; };
    };
    bool found = ends(5, [&](const std::uint8_t* at) {
        std::uint32_t distance = 0;
        std::memcpy(&distance, at + 1, sizeof distance);
        return at[0] == 0xE8 && address + distance - imageBegin < imageBytes;
    });
    const auto hasScale = [](const std::uint8_t* at) { return (at[1] & 7) == 4; };
    found |= ends(2, [&](const std::uint8_t* at) {
        return isIndirect(0xD0, 0xF8)(at) ||
               (isIndirect(0x10, 0xF8)(at) && !hasScale(at) && (at[1] & 7) != 5);
    });
    found |= ends(3, [&](const std::uint8_t* at) {
        return (isIndirect(0x50, 0xF8)(at) && !hasScale(at)) ||
               (isIndirect(0x10, 0xF8)(at) && hasScale(at) && (at[2] & 7) != 5);
    });
    found |= ends(4, [&](const std::uint8_t* at) { return isIndirect(0x50, 0xF8)(at) && hasScale(at); });
    found |= ends(6, [&](const std::uint8_t* at) {
        return (isIndirect(0x90, 0xF8)(at) && !hasScale(at)) || (at[0] == 0xFF && at[1] == 0x15);
    });
    found |= ends(7, [&](const std::uint8_t* at) {
        return (isIndirect(0x90, 0xF8)(at) && hasScale(at)) ||
               (isIndirect(0x10, 0xF8)(at) && hasScale(at) && (at[2] & 7) == 5);
    });
    return found;
}

const char* FaultOf(clsChoices choices) {
    clsProcessPicture memory;
    std::vector<std::uint32_t> returns;
    const scWalkStart start{choices.Below(4) == 0 ? 0 : codeBegin + choices.Below(512),
                            stackBegin + choices.Below(2 * pageSize),
                            stackBegin + choices.Below(2 * pageSize),
                            choices.Below(2) == 0 ? 0 : stackBegin + choices.Below(16384)};
    std::string image = Image(choices) + Code(choices, returns);
    image.resize(imageBytes, '\x90');
    memory.Add(imageBegin, imageBytes, MemoryKind::code, image);
    memory.Add(stackBegin, 2 * pageSize, MemoryKind::data, Stack(choices, returns));
    std::array<scFrame, 64> frames;
    const std::size_t count = UtilpWalkFrames(memory, start, frames);
    if (count == 0 || frames[0].address != start.eip || frames[0].isGuess)
        return "a walk begins elsewhere";
    for (std::size_t i = 1; i < count; ++i) {
        if (frames[i].address - imageBegin >= imageBytes)
            return "a frame is in no code";
        if (frames[i - 1].isGuess && !frames[i].isGuess)
            return "what follows a guess is sure";
        if (frames[i].isGuess && (i == 1 || !frames[i - 1].isGuess) && !IsAfterCall(image, frames[i].address))
            return "a guess without a call";
    }
    std::array<scFrame, 64> fewer;
    const std::size_t room = choices.Below(64);
    const std::size_t got = UtilpWalkFrames(memory, start, std::span(fewer).first(room));
    const auto isSame = [](const scFrame& a, const scFrame& b) { return a.address == b.address; };
    return got == std::min(room, count) &&
                   std::equal(fewer.begin(), fewer.begin() + static_cast<long>(got), frames.begin(), isSame)
               ? nullptr
               : "a smaller room holds other frames";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Require(FaultOf(clsChoices(data, size)));
    return 0;
}
