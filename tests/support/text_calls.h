// Every export that takes text, as a table of calls that put one text into each of its text arguments.
#pragma once

#include "piece_stream.h"

#include <span>

namespace testing_prof {

template <class F>
struct scTextCall {
    const char* name;
    void (*run)(ProfJob job, const typename F::Char* text);
};

template <class Char>
BOOL TVUT22_CALL VisitNothing(ProfJob, const Char*, const Char*, ProfList, UINT_PTR) {
    return TRUE;
}

template <class F>
std::span<const scTextCall<F>> TextCalls() {
    using Char = typename F::Char;
    static constexpr Char oneLetter[] = {'n', 0};
    static constexpr POINT somePoint{1, 2};
    static constexpr RECT someRect{1, 2, 3, 4};
    // clang-format off
#define PROF_TEXT_CALL(NAME, ...) {#NAME, [](ProfJob j, const Char* t) { (void)j, (void)t; __VA_ARGS__; }}
#define PROF_EDIT(NAME, VALUE) PROF_TEXT_CALL(NAME, F::NAME(j, 0, t, VALUE))
#define PROF_GET(NAME, OUT, DEFAULT) PROF_TEXT_CALL(NAME, OUT out; F::NAME(j, 0, t, &out, DEFAULT))
#define PROF_CONVERT(NAME, OUT, DEFAULT) PROF_TEXT_CALL(NAME, OUT out; F::NAME(t, &out, DEFAULT))
    static const scTextCall<F> calls[] = {
        PROF_TEXT_CALL(open, clsJob(F::open(t))),
        PROF_TEXT_CALL(openStream, clsPieceStream stream("[S]\na=1"); clsJob(F::openStream(&stream, t, 0))),
        PROF_TEXT_CALL(getList, F::getList(j, 0, t)), PROF_TEXT_CALL(createList, F::createList(j, 0, t)),
        PROF_TEXT_CALL(appendList, F::appendList(j, 0, t)), PROF_EDIT(appendString, t),
        PROF_TEXT_CALL(appendString value, F::appendString(j, 0, oneLetter, t)), PROF_EDIT(setString, t),
        PROF_EDIT(appendBool, 1), PROF_EDIT(setBool, 1), PROF_EDIT(appendInt, 1), PROF_EDIT(setInt, 1),
        PROF_EDIT(appendIntHex, 1), PROF_EDIT(setIntHex, 1), PROF_EDIT(appendInt64, 1),
        PROF_EDIT(setInt64, 1), PROF_EDIT(appendInt64Hex, 1), PROF_EDIT(setInt64Hex, 1),
        PROF_EDIT(appendDouble, 1e300), PROF_EDIT(setDouble, 1e300), PROF_EDIT(appendPoint, &somePoint),
        PROF_EDIT(setPoint, &somePoint), PROF_EDIT(appendRect, &someRect), PROF_EDIT(setRect, &someRect),
        PROF_EDIT(appendRectLTWH, &someRect), PROF_EDIT(setRectLTWH, &someRect),
        PROF_EDIT(appendColorref, 1), PROF_EDIT(setColorref, 1),
        PROF_TEXT_CALL(getString, Char buffer[10]; F::getString(j, 0, t, buffer, 10, t)),
        PROF_TEXT_CALL(getStringLength, F::getStringLength(j, 0, t)),
        PROF_GET(getBool, BOOL, 1), PROF_GET(getInt, INT, 1), PROF_GET(getInt64, INT64, 1),
        PROF_GET(getDouble, double, 1), PROF_GET(getPoint, POINT, &somePoint), PROF_GET(getRect, RECT, &someRect),
        PROF_GET(getRectLTWH, RECT, &someRect), PROF_GET(getColorref, COLORREF, 1),
        PROF_CONVERT(toBool, BOOL, 1), PROF_CONVERT(toInt, INT, 1), PROF_CONVERT(toInt64, INT64, 1),
        PROF_CONVERT(toRect, RECT, &someRect), PROF_CONVERT(toColorref, COLORREF, 1),
        PROF_TEXT_CALL(appendStream, clsPieceStream stream("abc"); F::appendStream(j, 0, t, t, &stream)),
        PROF_TEXT_CALL(getStream, clsPieceStream stream; F::getStream(j, 0, t, t, &stream)),
        PROF_TEXT_CALL(appendFile, F::appendFile(j, 0, t, t, t)),
        PROF_TEXT_CALL(appendFiles, F::appendFiles(j, 0, t, t)),
        PROF_TEXT_CALL(enumerate, F::enumerate(j, 0, VisitNothing<Char>, 0)),
        PROF_TEXT_CALL(deleteItem, F::deleteItem(j, 0, t)), PROF_TEXT_CALL(deleteList, F::deleteList(j, 0, t))
    };
#undef PROF_TEXT_CALL
#undef PROF_EDIT
#undef PROF_GET
#undef PROF_CONVERT
    // clang-format on
    return calls;
}

} // namespace testing_prof
