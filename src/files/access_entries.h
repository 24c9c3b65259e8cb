// A list of access rights as bytes, as the system keeps it (MS-DTYP, 2.4.5), and a new one made from it.
#pragma once

#include "platform/account_text.h"
#include "runtime/result.h"

#include <cstddef>
#include <span>
#include <vector>

namespace tvut {

struct scGrant {
    scSid account;
    std::uint32_t mask; // 0: the account's entries are only removed
    bool inherits;      // files and folders below have it, too
};

// The list with exactly these rights for the account: its own entries that allow or deny go, one that allows
// comes. Those of others, inherited ones and those that are about a kind of object stay as they are. The
// result has the canonical order: entries that deny, others, inherited ones. damaged for what is no list,
// tooLarge beyond 65,535 bytes. Throws std::bad_alloc.
UtilResult UtilpGrantInList(std::span<const std::byte> list, const scGrant& grant,
                            std::vector<std::byte>& result);

} // namespace tvut
