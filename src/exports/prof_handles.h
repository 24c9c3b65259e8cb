// From the handles of the public interface to what stands behind them, and back.
#pragma once

#include "exports/reason_guard.h"
#include "prof/job.h"

#include <tvut22/prof.h>

namespace tvut {

inline clsProfJob* FromHandle(ProfJob handle) {
    return reinterpret_cast<clsProfJob*>(handle);
}
inline ProfJob ToHandle(clsProfJob* job) {
    return reinterpret_cast<ProfJob>(job);
}
inline ProfList ToHandle(clsItemList* list) {
    return reinterpret_cast<ProfList>(list);
}

// The list that a handle means: the root list for 0, null for one that is not of this job. A freed
// list's memory stays with its job and no longer names the tree, so a stale handle is told, too,
// unless a new list stands there.
inline clsItemList* FromHandle(clsProfJob& job, ProfList handle) {
    if (!handle)
        return &job.Tree().Root();
    auto* const list = reinterpret_cast<clsItemList*>(handle);
    return list->Tree() == &job.Tree() ? list : nullptr;
}

// Calls the body of an export that opens a job. The thread's last error tells why one has no memory for the
// job, or why the job was not filled.
template <class Body>
ProfJob OpenWithReason(Body&& body) {
    clsProfJob* const job = UtilpGuardWithReason(static_cast<clsProfJob*>(nullptr), std::forward<Body>(body));
    if (job && job->Error() != profResult::ok)
        SetLastError(job->Reason());
    return ToHandle(job);
}

// A job that lives at least as long as a call that calls the caller back, whatever is closed there.
class clsJobKeeper {
  public:
    explicit clsJobKeeper(clsProfJob& job) : job_(job) { job_.AddReference(); }
    clsJobKeeper(const clsJobKeeper&) = delete;
    clsJobKeeper& operator=(const clsJobKeeper&) = delete;
    ~clsJobKeeper() { job_.Release(); }

  private:
    clsProfJob& job_;
};

// A text that lives at least as long as a call that calls the caller back, whatever is deleted there.
class clsTextKeeper {
  public:
    clsTextKeeper(clsTree& tree, scText* text) : tree_(tree), text_(clsTextStore::Share(text)) {}
    clsTextKeeper(const clsTextKeeper&) = delete;
    clsTextKeeper& operator=(const clsTextKeeper&) = delete;
    ~clsTextKeeper() { tree_.Texts().Release(text_); }
    std::u16string_view View() const { return ProfpView(text_); }

  private:
    clsTree& tree_;
    scText* text_;
};

} // namespace tvut
