// Every export that takes text, as a table of calls that put one text into each of its text arguments.
#pragma once

#include "piece_stream.h"

#include <span>

namespace testing_prof {

template <class F>
struct TextCall {
    const char* name;
    INT (*run)(ProfJob job, const typename F::Char* text); // a Get's, open's or save's result, else 0
};

template <class Char>
BOOL TVUT22_CALL visitNothing(ProfJob, const Char*, const Char*, ProfList, UINT_PTR) {
    return TRUE;
}

/// A job's error, or 1 when there was no memory for a job.
inline INT closedError(ProfJob job) {
    const INT error = job ? ProfGetError(job) : 1;
    ProfJobClose(job);
    return error;
}

template <class F>
std::span<const TextCall<F>> textCalls() {
    using Char = typename F::Char;
    static constexpr Char kName[] = {'n', 0};
    static constexpr POINT kPoint{1, 2};
    static constexpr RECT kRect{1, 2, 3, 4};
    static const TextCall<F> calls[] = {
        {"JobOpen", [](ProfJob, const Char* t) { return closedError(F::open(t)); }},
        {"JobOpenStreamObject",
         [](ProfJob, const Char* t) {
             PieceStream stream("[S]\na=1");
             return closedError(F::openStream(&stream, t, 0));
         }},
        {"GetList", [](ProfJob j, const Char* t) { return F::getList(j, 0, t) ? 0 : 0; }},
        {"CreateList", [](ProfJob j, const Char* t) { return F::createList(j, 0, t) ? 0 : 0; }},
        {"AppendList", [](ProfJob j, const Char* t) { return F::appendList(j, 0, t) ? 0 : 0; }},
        {"AppendString", [](ProfJob j, const Char* t) { return F::appendString(j, 0, t, t), 0; }},
        {"AppendString value", [](ProfJob j, const Char* t) { return F::appendString(j, 0, kName, t), 0; }},
        {"SetString", [](ProfJob j, const Char* t) { return F::setString(j, 0, t, t), 0; }},
        {"AppendBool", [](ProfJob j, const Char* t) { return F::appendBool(j, 0, t, 1), 0; }},
        {"SetBool", [](ProfJob j, const Char* t) { return F::setBool(j, 0, t, 1), 0; }},
        {"AppendInt", [](ProfJob j, const Char* t) { return F::appendInt(j, 0, t, 1), 0; }},
        {"SetInt", [](ProfJob j, const Char* t) { return F::setInt(j, 0, t, 1), 0; }},
        {"AppendIntHex", [](ProfJob j, const Char* t) { return F::appendIntHex(j, 0, t, 1), 0; }},
        {"SetIntHex", [](ProfJob j, const Char* t) { return F::setIntHex(j, 0, t, 1), 0; }},
        {"AppendInt64", [](ProfJob j, const Char* t) { return F::appendInt64(j, 0, t, 1), 0; }},
        {"SetInt64", [](ProfJob j, const Char* t) { return F::setInt64(j, 0, t, 1), 0; }},
        {"AppendInt64Hex", [](ProfJob j, const Char* t) { return F::appendInt64Hex(j, 0, t, 1), 0; }},
        {"SetInt64Hex", [](ProfJob j, const Char* t) { return F::setInt64Hex(j, 0, t, 1), 0; }},
        {"AppendDouble", [](ProfJob j, const Char* t) { return F::appendDouble(j, 0, t, 1e300), 0; }},
        {"SetDouble", [](ProfJob j, const Char* t) { return F::setDouble(j, 0, t, 1e300), 0; }},
        {"AppendPoint", [](ProfJob j, const Char* t) { return F::appendPoint(j, 0, t, &kPoint), 0; }},
        {"SetPoint", [](ProfJob j, const Char* t) { return F::setPoint(j, 0, t, &kPoint), 0; }},
        {"AppendRect", [](ProfJob j, const Char* t) { return F::appendRect(j, 0, t, &kRect), 0; }},
        {"SetRect", [](ProfJob j, const Char* t) { return F::setRect(j, 0, t, &kRect), 0; }},
        {"AppendRectLTWH", [](ProfJob j, const Char* t) { return F::appendRectLTWH(j, 0, t, &kRect), 0; }},
        {"SetRectLTWH", [](ProfJob j, const Char* t) { return F::setRectLTWH(j, 0, t, &kRect), 0; }},
        {"AppendColorref", [](ProfJob j, const Char* t) { return F::appendColorref(j, 0, t, 1), 0; }},
        {"SetColorref", [](ProfJob j, const Char* t) { return F::setColorref(j, 0, t, 1), 0; }},
        {"GetString",
         [](ProfJob j, const Char* t) {
             Char buffer[10];
             return F::getString(j, 0, t, buffer, 10, t);
         }},
        {"GetStringLength", [](ProfJob j, const Char* t) { return F::getStringLength(j, 0, t); }},
        {"GetBool", [](ProfJob j, const Char* t) { BOOL out; return F::getBool(j, 0, t, &out, 1); }},
        {"GetInt", [](ProfJob j, const Char* t) { INT out; return F::getInt(j, 0, t, &out, 1); }},
        {"GetInt64", [](ProfJob j, const Char* t) { INT64 out; return F::getInt64(j, 0, t, &out, 1); }},
        {"GetDouble", [](ProfJob j, const Char* t) { double out; return F::getDouble(j, 0, t, &out, 1); }},
        {"GetPoint", [](ProfJob j, const Char* t) { POINT out; return F::getPoint(j, 0, t, &out, &kPoint); }},
        {"GetRect", [](ProfJob j, const Char* t) { RECT out; return F::getRect(j, 0, t, &out, &kRect); }},
        {"GetRectLTWH", [](ProfJob j, const Char* t) { RECT out; return F::getRectLTWH(j, 0, t, &out, &kRect); }},
        {"GetColorref", [](ProfJob j, const Char* t) { COLORREF out; return F::getColorref(j, 0, t, &out, 1); }},
        {"LPSTRtoBOOL", [](ProfJob, const Char* t) { BOOL out; return F::toBool(t, &out, 1), 0; }},
        {"LPSTRtoINT", [](ProfJob, const Char* t) { INT out; return F::toInt(t, &out, 1), 0; }},
        {"LPSTRtoINT64", [](ProfJob, const Char* t) { INT64 out; return F::toInt64(t, &out, 1), 0; }},
        {"LPSTRtoRECT", [](ProfJob, const Char* t) { RECT out; return F::toRect(t, &out, &kRect), 0; }},
        {"LPSTRtoCOLORREF", [](ProfJob, const Char* t) { COLORREF out; return F::toColorref(t, &out, 1), 0; }},
        {"Enum", [](ProfJob j, const Char*) { return F::enumerate(j, 0, visitNothing<Char>, 0); }},
        {"DeleteItem", [](ProfJob j, const Char* t) { return F::deleteItem(j, 0, t), 0; }},
        {"DeleteList", [](ProfJob j, const Char* t) { return F::deleteList(j, 0, t), 0; }},
    };
    return calls;
}

} // namespace testing_prof
