// From the handles of the public interface to what stands behind them, and back.
#pragma once

#include "exports/reason_guard.h"
#include "exports/text_argument.h"
#include "prof/job.h"
#include "prof/path.h"

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

// The list that a handle means: the root list for 0, null for whatever is no list of this job.
inline clsItemList* FromHandle(clsProfJob& job, ProfList handle) {
    return handle ? job.Tree().ListAt(handle) : &job.Tree().Root();
}

// The list that a path starts from. One that begins with "/" starts from the root, and the handle is not
// looked at.
inline clsItemList* StartOf(clsProfJob& job, ProfList handle, std::u16string_view path) {
    return handle && !path.starts_with(u'/') ? job.Tree().ListAt(handle) : &job.Tree().Root();
}

template <class Char>
inline const clsItem* FindItem(clsProfJob& job, ProfList handle, const Char* path) {
    if (!path)
        return nullptr;
    const clsTextArgument<Char> name(path);
    clsItemList* const start = StartOf(job, handle, name.View());
    return start ? ProfpFindItem(*start, name.View()) : nullptr;
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
