// The frame of every writer: a head, the tree walked, a tail; measured by the same walk before.
//
// A form is a type that names
//   Unit             the characters that it is written in
//   head, tail       what stands before and after the tree; the head is a list of texts
//   Measure          counts the units of the tree as ProfpWalk visits it
//   Writer           puts the tree into a clsFormOutput<Unit> as ProfpWalk visits it
#pragma once

#include "prof/formats/form.h"
#include "prof/formats/form_output.h"
#include "prof/tree_walk.h"

#include <cstdint>

namespace tvut {

template <class Form>
std::uint64_t ProfpMeasureForm(const clsItemList& root) {
    typename Form::Measure measure;
    ProfpWalk(root, 1, measure);
    std::uint64_t units = measure.Units() + Form::tail.size();
    for (const auto& part : Form::head)
        units += part.size();
    return units * sizeof(typename Form::Unit);
}

template <class Form>
void ProfpWriteForm(const clsItemList& root, std::uint64_t bytes, clsByteSink& sink) {
    clsFormOutput<typename Form::Unit> output(sink, bytes);
    for (const auto& part : Form::head)
        output.Put(part);
    ProfpWalk(root, 1, typename Form::Writer(output));
    output.Put(Form::tail);
    output.Flush();
}

template <class Form>
constexpr scFormWriter formWriter{ProfpMeasureForm<Form>, ProfpWriteForm<Form>};

} // namespace tvut
