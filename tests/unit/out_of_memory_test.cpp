// Every allocation fails once: loading, changing, copying and saving must report it and stay whole.
//
// The program's operator new counts down to a failure. Whatever the failing call was, the tree must
// still be sound: it can be walked, saved and emptied, and the sanitizers find nothing.
#include "prof/path.h"
#include "runtime/pool/pools.h"
#include "unit/native_platform.h"
#include "unit/native_pool.h"
#include "window/handle_list.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

namespace {

long allocationsLeft = -1; // negative: never fail

bool MayAllocate() {
    if (allocationsLeft < 0)
        return true;
    return allocationsLeft-- > 0;
}

} // namespace

void* operator new(std::size_t size) {
    void* const block = MayAllocate() ? std::malloc(size) : nullptr;
    if (!block) {
        allocationsLeft = 0;
        throw std::bad_alloc();
    }
    return block;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { // the sanitizer's own counts nothing
    return MayAllocate() ? std::malloc(size) : nullptr;
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

using namespace tvut;

namespace {

// Runs work with the n-th allocation failing, for every n, until it gets through.
template <class Work, class Check>
void FailEveryAllocation(Work work, Check check) {
    for (long n = 0;; ++n) {
        ASSERT_LT(n, 5000);
        clsTree tree(true);
        ProfpAppendItem(tree.Root(), u"kept/item", u"1");
        bool failed = false;
        allocationsLeft = n;
        try {
            work(tree);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        allocationsLeft = -1;
        check(tree);
        if (!failed)
            return;
    }
}

void ExpectSound(clsTree& tree) {
    ASSERT_NE(ProfpFindItem(tree.Root(), u"kept/item"), nullptr);
    clsTree again(true);
    ASSERT_TRUE(Load(again, Saved(tree)).parsed);
    ASSERT_EQ(Saved(again), Saved(tree));
    tree.Empty(tree.Root());
}

std::string LargeProfile(std::uint32_t form) {
    clsTree tree(true);
    for (char16_t c = u'a'; c <= u'z'; ++c) {
        const std::u16string list(1, c);
        for (char16_t d = u'a'; d <= u'z'; ++d)
            ProfpAppendItem(tree.Root(), list + u"/&\n" + d, std::u16string(100 * (d - u'a'), d) + u"\t");
    }
    return Saved(tree, form);
}

TEST(OutOfMemory, Loading) {
    for (const std::uint32_t form : {0u, 1u, 2u}) {
        for (const ReadMode mode : {ReadMode::detect, ReadMode::foreignXfdf}) {
            const std::string bytes = LargeProfile(form);
            FailEveryAllocation([&](clsTree& tree) { Load(tree, bytes, mode); }, ExpectSound);
        }
    }
    const std::string touched = LargeProfile(1) + Utf16Bytes(u"<!-- x -->");
    FailEveryAllocation([&](clsTree& tree) { Load(tree, touched, ReadMode::foreignXml); }, ExpectSound);
}

// A sink may give up old contents once it knows the length of new ones: no allocation may fail after that.
TEST(OutOfMemory, SavingFailsBeforeTheSinkIsTold) {
    for (const std::uint32_t flags : {0x00u, 0x40u, 0x01u, 0x02u}) {
        clsMemorySink sink;
        sink.bytes.reserve(1 << 20);
        std::uint64_t toldAtFailure = 0;
        const auto save = [&](clsTree& tree) {
            sink.bytes.clear();
            sink.extended = 0;
            try {
                ProfpSave(tree.Root(), flags, false, sink);
            } catch (const std::bad_alloc&) {
                toldAtFailure += sink.extended; // looked at when memory is there again
                throw;
            }
        };
        FailEveryAllocation(save, ExpectSound);
        EXPECT_EQ(toldAtFailure, 0u);
        EXPECT_GT(sink.extended, 0u);
    }
}

TEST(OutOfMemory, ChangingAndCopying) {
    const auto change = [](clsTree& tree) {
        for (char16_t c = u'A'; c < u'z'; ++c) {
            const std::u16string name(20, c);
            ProfpAppendItem(tree.Root(), u"long/list/" + name, name);
            ProfpSetItem(tree.Root(), u"long/list/" + name, name + name);
        }
        ProfpRemove(tree.Root(), EntryKind::item, u"long/list/none");
        tree.Copy(tree.Root(), tree.Root());
        ProfpCreateList(tree.Root(), u"long/list/new");
    };
    FailEveryAllocation(change, ExpectSound);
}

// A pool says so, and calls no job that it did not take.
TEST(OutOfMemory, ThreadPool) {
    static std::atomic<int> called{0};
    const scPoolJob job{[](unsigned, std::uintptr_t, const volatile long*) { ++called; }, 0};
    const auto opened = [](long allocations) {
        allocationsLeft = allocations;
        const std::uint32_t pool = UtilpOpenPool(u"", 1, false);
        allocationsLeft = -1;
        return pool;
    };
    for (long allocations = 0; allocations < 3; ++allocations)
        EXPECT_EQ(opened(allocations), 0u) << "without pool, threads or handle";
    const std::uint32_t pool = opened(3);
    allocationsLeft = 0;
    const UtilResult result = UtilpAddToPool(pool, job);
    allocationsLeft = -1;
    EXPECT_EQ(result, UtilResult::failed);
    EXPECT_EQ(UtilpAddToPool(pool, job), UtilResult::ok);
    EXPECT_EQ(UtilpFinalizePool(pool, clsPoolSignal::forever, true), UtilResult::ok);
    EXPECT_EQ(UtilpClosePool(pool, true), UtilResult::ok);
    WaitForPoolThreads();
    EXPECT_EQ(called, 1);
}

// A list of handles keeps all that it took, and not half of the one for which there was no memory.
TEST(OutOfMemory, HandleList) {
    constexpr std::uint32_t handles = 300;
    for (long allocations = 0; allocations < 30; ++allocations) {
        clsHandleList list;
        scKeptHandle old;
        std::uint32_t refused = 0;
        allocationsLeft = allocations;
        for (std::uintptr_t handle = 1; handle <= handles; ++handle) {
            const void* const frame = reinterpret_cast<const void*>(handle);
            try {
                list.Add({static_cast<std::uint32_t>(handle), 1, u"", 0}, clsHandleStack({&frame, 1}), old);
            } catch (const std::bad_alloc&) {
                allocationsLeft = -1;
                ++refused;
            }
        }
        EXPECT_EQ(refused, std::exchange(allocationsLeft, -1) == -1 ? 1u : 0u);
        const scHandlesLeft left = list.Left(clsHandleList::anyKind, 0, handles);
        EXPECT_EQ(list.Count(1), handles - refused);
        EXPECT_EQ(left.handles, handles - refused);
        EXPECT_EQ(left.stacks, handles - refused);
    }
}

} // namespace
