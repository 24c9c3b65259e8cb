// Subclasses of windows: who is asked in which order, and that they come off in any order at any time.
#include "support/copy.h"

#include <gtest/gtest.h>
#include <tvut22/tvut22.hpp>

#include <algorithm>
#include <commctrl.h>
#include <functional>
#include <map>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

namespace testing_prof {
namespace {

constexpr UINT kAsk = WM_APP + 1, kNested = WM_APP + 2;
constexpr int kCount = 5;

std::vector<int> seen; // who was asked, 0 for the window itself

LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message != kAsk && message != kNested)
        return DefWindowProcW(window, message, first, second);
    if (message == kAsk)
        seen.push_back(0);
    return static_cast<LRESULT>(first);
}

// A window of this thread that is destroyed with the object.
class Window {
  public:
    Window() {
        WNDCLASSW type{};
        type.lpfnWndProc = windowProc;
        type.lpszClassName = L"tvut22-subclass-test";
        RegisterClassW(&type);
        handle =
            CreateWindowW(type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        EXPECT_TRUE(handle);
    }
    ~Window() { DestroyWindow(handle); }
    Window(const Window&) = delete;

    LRESULT ask(UINT message = kAsk) const {
        seen.clear();
        return SendMessageW(handle, message, 7, 0);
    }
    WNDPROC procedure() const { return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(handle, GWLP_WNDPROC)); }

    HWND handle;
};

std::function<void(int who, UINT message)> meanwhile; // done in each procedure before it passes on

LRESULT TVUT22_CALL layerProc(UtilSubclass subclass, HWND window, UINT message, WPARAM first, LPARAM second,
                              UINT_PTR user) {
    if (message == kAsk)
        seen.push_back(static_cast<int>(user));
    if (meanwhile)
        meanwhile(static_cast<int>(user), message);
    return UtilWindowCallNext(subclass, window, message, first, second);
}

// Five subclasses, 1 the oldest; those that are on it.
class Layers {
  public:
    explicit Layers(const Window& on) {
        for (int number = 1; number <= kCount; ++number) {
            handles[number] = UtilWindowSubclass(on.handle, layerProc, static_cast<UINT_PTR>(number));
            EXPECT_TRUE(handles[number]);
            alive.insert(alive.begin(), number);
        }
    }
    ~Layers() { meanwhile = nullptr; }

    void remove(int number) {
        EXPECT_EQ(UtilWindowUnsubclass(handles[number]), UTIL_OK);
        EXPECT_EQ(UtilWindowUnsubclass(handles[number]), UTIL_BAD_ARGUMENT) << "twice";
        std::erase(alive, number);
    }
    std::vector<int> asked() const { // and the window in the end
        std::vector<int> all = alive;
        all.push_back(0);
        return all;
    }

    std::map<int, UtilSubclass> handles;
    std::vector<int> alive; // newest first
};

void expectAsked(const Window& window, const Layers& layers) {
    EXPECT_EQ(window.ask(), 7);
    EXPECT_EQ(seen, layers.asked());
}

// Has an action done once, where a subclass sees a message.
void once(int at, UINT in, std::function<void()> action) {
    meanwhile = [=](int who, UINT message) {
        if (who == at && message == in)
            std::exchange(meanwhile, nullptr), action();
    };
}

using Order = std::vector<int>;

void eachOrder(const std::function<void(const Order&)>& check) {
    Order order(kCount);
    std::iota(order.begin(), order.end(), 1);
    do
        check(order);
    while (std::next_permutation(order.begin(), order.end()) && !testing::Test::HasFailure());
}

// ---- In any order ----------------------------------------------------------------------------------

// How one is removed; the message that this happens in was seen by all, or by all but that one.
using Remove = std::function<void(const Window&, Layers&, int which)>;

const std::map<std::string, Remove> kWays = {
    {"from outside", [](const Window&, Layers& layers, int which) { layers.remove(which); }},
    {"by itself",
     [](const Window& window, Layers& layers, int which) {
         const auto expected = layers.asked();
         once(which, kAsk, [&] { layers.remove(which); });
         EXPECT_EQ(window.ask(), 7);
         EXPECT_EQ(seen, expected) << "its running call passes on";
     }},
    {"by the newest",
     [](const Window& window, Layers& layers, int which) {
         auto expected = layers.asked();
         if (which != layers.alive.front())
             std::erase(expected, which);
         once(layers.alive.front(), kAsk, [&] { layers.remove(which); });
         EXPECT_EQ(window.ask(), 7);
         EXPECT_EQ(seen, expected);
     }},
    {"by the oldest",
     [](const Window& window, Layers& layers, int which) {
         const auto expected = layers.asked();
         once(layers.alive.back(), kAsk, [&] { layers.remove(which); });
         EXPECT_EQ(window.ask(), 7);
         EXPECT_EQ(seen, expected);
     }},
    {"by itself in a message that the newest sends",
     [](const Window& window, Layers& layers, int which) {
         auto expected = layers.asked();
         if (which != layers.alive.front())
             std::erase(expected, which);
         once(layers.alive.front(), kAsk, [&] {
             once(which, kNested, [&] { layers.remove(which); });
             EXPECT_EQ(SendMessageW(window.handle, kNested, 9, 0), 9);
         });
         EXPECT_EQ(window.ask(), 7);
         EXPECT_EQ(seen, expected);
     }},
};

TEST(Subclass, ComesOffInAnyOrder) {
    for (const auto& [name, remove] : kWays) {
        eachOrder([&](const Order& order) {
            const Window window;
            Layers layers(window);
            for (const int which : order) {
                remove(window, layers, which);
                expectAsked(window, layers);
            }
            EXPECT_EQ(window.procedure(), windowProc) << name;
        });
        ASSERT_FALSE(HasFailure()) << name;
    }
}

TEST(Subclass, ComesOffWhileTheWindowGoes) {
    for (const UINT message : {WM_DESTROY, WM_NCDESTROY})
        for (const int at : {1, 3, kCount})
            eachOrder([&](const Order& order) {
                Window window;
                Layers layers(window);
                once(at, message, [&] { std::ranges::for_each(order, [&](int i) { layers.remove(i); }); });
                ASSERT_TRUE(DestroyWindow(window.handle));
                EXPECT_FALSE(meanwhile) << "it was not seen";
            });
}

TEST(Subclass, ComesOffByItselfAfterTheLastMessage) {
    eachOrder([&](const Order& order) {
        const Window window;
        Layers layers(window);
        std::vector<int> last;
        meanwhile = [&](int who, UINT message) {
            if (message == WM_NCDESTROY)
                last.push_back(who);
        };
        ASSERT_TRUE(DestroyWindow(window.handle));
        EXPECT_EQ(last, layers.alive);
        EXPECT_EQ(UtilWindowCallNext(layers.handles[1], window.handle, kAsk, 7, 0), 0);
        for (const int which : order)
            layers.remove(which);
    });
}

// Whoever never says so costs nothing: there are 8,192 at a time, and no end of them one after the other.
TEST(Subclass, IsForgottenWithItsWindow) {
    const auto fill = [](const Window& window, int count) {
        int made = 0;
        while (made < count && UtilWindowSubclass(window.handle, layerProc, 1))
            ++made;
        return made;
    };
    for (int round = 0; round < 70; ++round)
        ASSERT_EQ(fill(Window(), 128), 128);
    {
        std::vector<std::unique_ptr<Window>> windows;
        for (int i = 0; i < 64; ++i)
            ASSERT_EQ(fill(*windows.emplace_back(std::make_unique<Window>()), 128), 128);
        EXPECT_EQ(fill(*windows[0], 1), 0);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_USER_HANDLES});
    }
    EXPECT_EQ(fill(Window(), 1), 1);
}

TEST(Subclass, MayDestroyItsWindow) {
    for (const int at : {1, 3, kCount}) {
        const Window window;
        Layers layers(window);
        once(at, kAsk, [&] { EXPECT_TRUE(DestroyWindow(window.handle)); });
        EXPECT_EQ(window.ask(), 0) << "there is no window to answer";
        for (const auto& [number, handle] : layers.handles)
            EXPECT_EQ(UtilWindowUnsubclass(handle), UTIL_OK);
    }
}

// ---- Beside others ---------------------------------------------------------------------------------

LRESULT CALLBACK systemProc(HWND window, UINT message, WPARAM first, LPARAM second, UINT_PTR id, DWORD_PTR) {
    if (message == kAsk)
        seen.push_back(static_cast<int>(id));
    return DefSubclassProc(window, message, first, second);
}

TEST(Subclass, KeepsTheOrderWithThoseOfTheSystem) {
    const Window window;
    const tvut22::subclass older(UtilWindowSubclass(window.handle, layerProc, 1));
    ASSERT_TRUE(SetWindowSubclass(window.handle, systemProc, 2, 0));
    const tvut22::subclass newer(UtilWindowSubclass(window.handle, layerProc, 3));
    window.ask();
    EXPECT_EQ(seen, (std::vector<int>{3, 2, 1, 0}));
    EXPECT_TRUE(RemoveWindowSubclass(window.handle, systemProc, 2));
}

WNDPROC beforeForeign; // what the foreign procedure calls

LRESULT CALLBACK foreignProc(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == kAsk)
        seen.push_back(100);
    return CallWindowProcW(beforeForeign, window, message, first, second);
}

WNDPROC setProcedure(const Window& window, WNDPROC procedure) {
    return reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window.handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

// It comes between the second and the third of ours, and is asked first from then on.
TEST(Subclass, LeavesAForeignProcedureInItsPlace) {
    eachOrder([](const Order& order) {
        const Window window;
        tvut22::subclass ours[kCount];
        for (int i = 0; i < kCount; ++i) {
            ours[i].reset(UtilWindowSubclass(window.handle, layerProc, static_cast<UINT_PTR>(i + 1)));
            if (i == 1)
                beforeForeign = setProcedure(window, foreignProc);
        }
        window.ask();
        EXPECT_EQ(seen, (std::vector<int>{100, 5, 4, 3, 2, 1, 0}));
        for (const int which : order)
            EXPECT_EQ(ours[which - 1].reset(), UTIL_OK);
        EXPECT_EQ(window.ask(), 7);
        EXPECT_EQ(seen, (std::vector<int>{100, 0})) << "it was cut off";
        setProcedure(window, beforeForeign);
        EXPECT_EQ(window.ask(), 7);
        EXPECT_EQ(seen, (std::vector<int>{0}));
        EXPECT_EQ(window.procedure(), windowProc) << "nothing of ours is left";
    });
}

TEST(Subclass, BringsBackNoForeignProcedure) {
    const Window window;
    beforeForeign = setProcedure(window, foreignProc);
    tvut22::subclass ours(UtilWindowSubclass(window.handle, layerProc, 1));
    setProcedure(window, beforeForeign); // it leaves, out of turn
    EXPECT_EQ(ours.reset(), UTIL_OK);
    EXPECT_EQ(window.ask(), 7);
    EXPECT_EQ(seen, (std::vector<int>{0}));
}

// ---- Whatever comes --------------------------------------------------------------------------------

// A procedure adds one and removes one now and then. Each message is seen by all that were there before and
// after it, in order, and by no other that was not there before.
TEST(Subclass, KeepsItsPlaceInAHundredThousandMessages) {
    const Window window;
    std::map<int, UtilSubclass> on; // by age
    std::mt19937 random(11);
    int newest = 0;
    const auto change = [&] {
        if (on.size() < 8 && random() % 2 == 0) {
            ++newest;
            on[newest] = UtilWindowSubclass(window.handle, layerProc, static_cast<UINT_PTR>(newest));
        } else if (!on.empty()) {
            const auto one = std::next(on.begin(), random() % on.size());
            EXPECT_EQ(UtilWindowUnsubclass(one->second), UTIL_OK);
            on.erase(one);
        }
    };
    for (int i = 0; i < 100000 && !HasFailure(); ++i) {
        if (i % 4 == 0)
            change();
        const auto before = on;
        meanwhile = [&](int, UINT) {
            if (random() % 16 == 0)
                change();
        };
        ASSERT_EQ(window.ask(), 7);
        meanwhile = nullptr;
        seen.pop_back(); // the window
        ASSERT_TRUE(std::ranges::is_sorted(seen, std::greater()));
        ASSERT_TRUE(std::ranges::all_of(seen, [&](int who) { return before.contains(who); }));
        for (const auto& [number, handle] : before)
            ASSERT_TRUE(!on.contains(number) || std::ranges::count(seen, number) == 1) << number;
    }
}

// ---- Threads ---------------------------------------------------------------------------------------

TEST(Subclass, RefusesWhatIsNotItsOwn) {
    const Window window;
    const auto refused = [&](HWND of, UtilWindowProc proc) {
        SetLastError(0);
        return UtilWindowSubclass(of, proc, 0) ? 0 : GetLastError();
    };
    EXPECT_EQ(refused(window.handle, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(refused(nullptr, layerProc), DWORD{ERROR_INVALID_WINDOW_HANDLE});
    EXPECT_EQ(refused(reinterpret_cast<HWND>(0xDEAD), layerProc), DWORD{ERROR_INVALID_WINDOW_HANDLE});
    EXPECT_EQ(refused(GetDesktopWindow(), layerProc), DWORD{ERROR_INVALID_THREAD_ID});
    tvut22::subclass ours(UtilWindowSubclass(window.handle, layerProc, 1));
    const tvut22::hook hook(UtilHookCtrlBreak(nullptr, 0));
    std::thread([&] {
        EXPECT_EQ(refused(window.handle, layerProc), DWORD{ERROR_INVALID_THREAD_ID});
        EXPECT_EQ(UtilWindowUnsubclass(ours.get()), UTIL_WRONG_THREAD);
        EXPECT_EQ(UtilWindowCallNext(ours.get(), window.handle, kAsk, 7, 0), 0);
    }).join();
    EXPECT_EQ(UtilWindowCallNext(ours.get(), window.handle, kAsk, 7, 0), 0) << "outside its procedure";
    for (const auto value : {UINT_PTR{1}, UINT_PTR{0x12345678}, reinterpret_cast<UINT_PTR>(hook.get()),
                             reinterpret_cast<UINT_PTR>(&window)})
        EXPECT_EQ(UtilWindowUnsubclass(reinterpret_cast<UtilSubclass>(value)), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilWindowUnsubclass(nullptr), UTIL_OK);
    window.ask();
    EXPECT_EQ(seen, (std::vector<int>{1, 0}));
}

TEST(Subclass, ComesOffWithItsThread) {
    UtilSubclass ours = nullptr;
    std::thread([&] {
        auto* const window = new Window; // which the system destroys
        ours = UtilWindowSubclass(window->handle, layerProc, 1);
    }).join();
    EXPECT_EQ(UtilWindowUnsubclass(ours), UTIL_OK);
    EXPECT_EQ(UtilWindowUnsubclass(ours), UTIL_BAD_ARGUMENT);
}

// ---- The library -----------------------------------------------------------------------------------

decltype(&UtilWindowCallNext) nextOfTheCopy;

LRESULT TVUT22_CALL throughTheCopy(UtilSubclass subclass, HWND window, UINT message, WPARAM first,
                                   LPARAM second, UINT_PTR) {
    return nextOfTheCopy(subclass, window, message, first, second) + 1;
}

// Who has let the library go still has its subclass, which takes the library along when it comes off.
TEST(Subclass, HoldsTheLibraryAsLongAsItIsThere) {
    const clsTempFolder folder;
    const std::wstring path = folder / L"copy.dll";
    clsCopy::MakeFile(path);
    clsCopy copy(path);
    ASSERT_TRUE(copy);
    nextOfTheCopy = copy.Find(UtilWindowCallNext, "UtilWindowCallNext");
    {
        const Window window;
        ASSERT_TRUE(copy.Find(UtilWindowSubclass, "UtilWindowSubclass")(window.handle, throughTheCopy, 0));
        copy.Unload();
        EXPECT_EQ(window.ask(), 8);
    }
    while (GetModuleHandleW(path.c_str())) // the test's time limit ends a wait that is in vain
        SwitchToThread();
}

} // namespace
} // namespace testing_prof
