// Reading allocates nothing.
#include "support/counted_allocations.h"
#include "support/job.h"

namespace testing_prof {
namespace {

template <class F>
class Allocation : public ::testing::Test {};
TYPED_TEST_SUITE(Allocation, BothForms, FormNames);

TYPED_TEST(Allocation, NoGetAllocates) {
    using Char = typename TypeParam::Char;
    const Job job(L"L{b=TRUE;i=12;h=x0C;d=1.5;p=(1,2);r=(1,2,3,4);s=text;}");
    for (int i = 0; i < 2000; ++i) // long enough for whatever makes long lists fast
        ProfAppendIntW(job, 0, (L"long/i" + std::to_wstring(i)).c_str(), i);
    const std::basic_string<Char> large(100000, Char{'v'});
    const auto at = [](const wchar_t* path) { return in<Char>(path); };
    const auto b = at(L"L/b"), i = at(L"/L/i"), h = at(L"L/h"), d = at(L"L/d"), p = at(L"L/p"),
               r = at(L"L/r"), s = at(L"L/s"), distant = at(L"long/i1999"), none = at(L"long/none"),
               lost = at(L"none/none");
    BOOL flag;
    INT number;
    INT64 big;
    double real;
    POINT point;
    RECT rect;
    COLORREF colour;
    Char buffer[20];
    int counted = 0, results = 0;
    {
        const CountedAllocations counter;
        results |= TypeParam::getBool(job, 0, b.c_str(), &flag, 0);
        results |= TypeParam::getInt(job, 0, i.c_str(), &number, 0);
        results |= TypeParam::getInt(job, 0, h.c_str(), &number, 0);
        results |= TypeParam::getInt(job, 0, distant.c_str(), &number, 0);
        results |= TypeParam::getInt64(job, 0, i.c_str(), &big, 0);
        results |= TypeParam::getDouble(job, 0, d.c_str(), &real, 0);
        results |= TypeParam::getPoint(job, 0, p.c_str(), &point, nullptr);
        results |= TypeParam::getRect(job, 0, r.c_str(), &rect, nullptr);
        results |= TypeParam::getRectLTWH(job, 0, r.c_str(), &rect, nullptr);
        results |= TypeParam::getColorref(job, 0, r.c_str(), &colour, 0);
        for (const auto* path : {&none, &lost})
            results |= TypeParam::getInt(job, 0, path->c_str(), &number, 0) ^ PROF_NOT_FOUND;
        results |= TypeParam::getString(job, 0, s.c_str(), buffer, 20, none.c_str()) ^ 4;
        results |= TypeParam::getString(job, 0, none.c_str(), buffer, 20, s.c_str()) ^ PROF_NOT_FOUND;
        results |= TypeParam::getStringLength(job, 0, s.c_str()) ^ 4;
        results |= TypeParam::getList(job, 0, s.c_str()) != nullptr;
        counted = CountedAllocations::count;
        TypeParam::appendString(job, 0, none.c_str(), large.c_str());
        EXPECT_GT(CountedAllocations::count, counted) << "the count does not see the library's allocations";
    }
    EXPECT_EQ(results, 0);
    EXPECT_EQ(counted, 0);
}

} // namespace
} // namespace testing_prof
