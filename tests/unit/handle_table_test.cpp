// Handles: only open ones are followed, whatever others look like, and objects in use stay.
#include "runtime/handle_table.h"

#include <gtest/gtest.h>

#include <list>
#include <random>
#include <set>
#include <thread>
#include <vector>

using namespace tvut;

namespace {

std::atomic<int> alive{0};

struct scThing {
    explicit scThing(int name) : number(name) { ++alive; }
    ~scThing() {
        number = -1;
        --alive;
    }
    std::atomic<int> number;
};

template <std::size_t most, HandleKind kind = HandleKind::archive>
using Table = clsHandleTable<scThing, kind, most>;

template <class Things>
std::uint32_t Added(Things& table, int number) {
    auto thing = std::make_unique<scThing>(number);
    return table.Add(thing);
}

TEST(Handles, OfOthersAreRefused) {
    constinit static Table<40> table;
    constinit static Table<40, HandleKind::document> other;
    std::set<std::uint32_t> open;
    for (int number = 0; number < 40; ++number)
        open.insert(Added(table, number));
    ASSERT_EQ(open.size(), 40u);
    EXPECT_EQ(Added(table, 40), 0u) << "there is no room for more";
    std::mt19937 random(3);
    for (const std::uint32_t handle : open) {
        EXPECT_EQ(handle % 2, 1u) << "it could be an address";
        EXPECT_FALSE(other.Use(handle));
        for (unsigned bit = 0; bit < 32; ++bit)
            EXPECT_EQ(static_cast<bool>(table.Use(handle ^ 1u << bit)), open.contains(handle ^ 1u << bit));
    }
    for (int i = 0; i < 1000000; ++i) {
        const auto value = static_cast<std::uint32_t>(random());
        ASSERT_EQ(static_cast<bool>(table.Use(value)), open.contains(value)) << value;
    }
    for (const std::uint32_t handle : open)
        EXPECT_TRUE(table.Close(handle));
    EXPECT_EQ(alive, 0);
}

TEST(Handles, StayClosedForLong) {
    static Table<3> table;
    const std::uint32_t first = Added(table, 1);
    EXPECT_TRUE(table.Close(first));
    for (int i = 0; i < 3 * 16383; ++i) {
        const std::uint32_t handle = Added(table, i);
        ASSERT_NE(handle, first);
        ASSERT_TRUE(table.Close(handle));
        ASSERT_FALSE(table.Close(handle) || table.Use(first));
    }
}

TEST(Handles, DoWhatAModelDoes) {
    using Things = Table<7>;
    static Things table;
    struct scModel {
        std::uint32_t handle;
        int number;
        bool open;
        std::vector<Things::clsUse> uses;
    };
    std::list<scModel> things; // open or in use
    std::vector<std::uint32_t> closed;
    std::mt19937 random(11);
    int full = 0;
    for (int step = 0; step < 200000; ++step) {
        const auto any = [&] {
            return std::next(things.begin(), static_cast<std::ptrdiff_t>(random() % things.size()));
        };
        const unsigned what = random() % 8;
        if (what < 2) {
            const std::uint32_t handle = Added(table, step);
            ASSERT_EQ(handle == 0, things.size() == 7);
            full += handle == 0;
            if (handle != 0)
                things.push_back({handle, step, true, {}});
        } else if (!closed.empty() && what == 2) {
            ASSERT_FALSE(table.Use(closed[random() % closed.size()]));
        } else if (!things.empty()) {
            const auto thing = any();
            if (what < 5) {
                auto use = table.Use(thing->handle);
                ASSERT_EQ(static_cast<bool>(use), thing->open);
                if (use)
                    thing->uses.push_back(std::move(use));
            } else if (what < 7 && !thing->uses.empty()) {
                ASSERT_EQ(thing->uses.back()->number, thing->number);
                thing->uses.pop_back();
            } else if (what == 7) {
                ASSERT_EQ(static_cast<bool>(table.Close(thing->handle)), thing->open);
                if (thing->open)
                    closed.push_back(thing->handle);
                thing->open = false;
            }
            if (!thing->open && thing->uses.empty())
                things.erase(thing);
        }
        ASSERT_EQ(alive, static_cast<int>(things.size()));
    }
    EXPECT_GT(full, 100);
    for (auto& thing : things) {
        thing.uses.clear();
        table.Close(thing.handle);
    }
    EXPECT_EQ(alive, 0);
}

// An object that is closed by one thread while others use it; the sanitizer sees a use after its end.
TEST(Handles, KeepWhatOtherThreadsUse) {
    static Table<16> table;
    static std::array<std::atomic<std::uint32_t>, 8> shared{};
    static std::atomic<int> faults{0}, used{0};
    const auto work = [](unsigned seed) {
        std::mt19937 random(seed);
        for (int i = 0; i < 100000; ++i) {
            auto& place = shared[random() % shared.size()];
            const std::uint32_t handle = place.load();
            if (const auto use = table.Use(handle)) {
                faults += use->number != static_cast<int>(&place - shared.data());
                ++used;
                if (random() % 4 == 0)
                    table.Close(handle);
                faults += use->number != static_cast<int>(&place - shared.data());
            } else {
                std::uint32_t expected = handle,
                              fresh = Added(table, static_cast<int>(&place - shared.data()));
                if (fresh != 0 && !place.compare_exchange_strong(expected, fresh))
                    table.Close(fresh);
            }
        }
    };
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= 4; ++seed)
        threads.emplace_back(work, seed);
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& place : shared)
        table.Close(place);
    EXPECT_EQ(faults, 0);
    EXPECT_GT(used, 1000);
    EXPECT_EQ(alive, 0);
}

} // namespace
