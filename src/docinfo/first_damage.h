// Parts of a document that can be read without each other: all are read, and the first damage is thrown at
// the end.
#pragma once

#include "docinfo/doc_info.h"

namespace tvut {

class clsFirstDamage {
  public:
    template <class Step>
    void Try(Step&& step) {
        try {
            step();
        } catch (const clsDocDamage& damage) {
            if (!first_)
                first_ = damage;
        }
    }
    void Throw() const {
        if (first_)
            throw clsDocDamage(*first_);
    }

  private:
    std::optional<clsDocDamage> first_;
};

} // namespace tvut
