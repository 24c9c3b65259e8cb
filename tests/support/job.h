// An open profile that closes itself, and trees written as short texts: item "name=value;", list "name{...}".
#pragma once

#include "forms.h"

#include <utility>

namespace testing_prof {

class clsJob {
  public:
    clsJob() : clsJob(ProfJobOpenW(nullptr)) {}
    explicit clsJob(ProfJob job) : job_(job) {}
    explicit clsJob(std::wstring_view tree) : clsJob() { Build(0, tree); }
    clsJob(clsJob&& other) noexcept : job_(std::exchange(other.job_, nullptr)) {}
    clsJob& operator=(clsJob&& other) noexcept { return std::swap(job_, other.job_), *this; }
    ~clsJob() { ProfJobClose(job_); }

    operator ProfJob() const { return job_; }
    ProfJob Release() { return std::exchange(job_, nullptr); }
    void Close() { ProfJobClose(std::exchange(job_, nullptr)); }
    INT Error() const { return ProfGetError(job_); }

    // Appends the entries of a tree text to a list.
    void Build(ProfList list, std::wstring_view tree) const {
        while (!tree.empty() && tree.front() != L'}')
            tree = BuildEntry(list, tree);
    }

  private:
    std::wstring_view BuildEntry(ProfList list, std::wstring_view tree) const {
        const size_t mark = tree.find_first_of(L"={");
        const std::wstring name(tree.substr(0, mark));
        const std::wstring_view rest = tree.substr(mark + 1);
        if (tree[mark] == L'=') {
            const size_t end = rest.find(L';');
            ProfAppendStringW(job_, list, name.c_str(), std::wstring(rest.substr(0, end)).c_str());
            return rest.substr(end + 1);
        }
        Build(ProfAppendListW(job_, list, name.c_str()), rest);
        return rest.substr(ClosingBrace(rest) + 1);
    }

    static size_t ClosingBrace(std::wstring_view text) {
        for (size_t i = 0, depth = 1;; ++i) {
            depth += text.at(i) == L'{';
            depth -= text.at(i) == L'}';
            if (depth == 0)
                return i;
        }
    }

    ProfJob job_;
};

// The tree text of a list. Other marks serve trees whose own texts hold these.
struct scDescription {
    std::wstring text;
    std::wstring_view marks = L"=;{}";

    static BOOL TVUT22_CALL Visit(ProfJob job, const wchar_t* name, const wchar_t* value, ProfList subList,
                                  UINT_PTR user) {
        auto& self = *reinterpret_cast<scDescription*>(user);
        self.text += name;
        if (!subList) {
            self.text.append(1, self.marks[0]).append(value) += self.marks[1];
            return TRUE;
        }
        self.text += self.marks[2];
        const BOOL whole = ProfEnumW(job, subList, Visit, user);
        self.text += self.marks[3];
        return whole;
    }
};

inline std::wstring Describe(ProfJob job, ProfList list = 0, std::wstring_view marks = L"=;{}") {
    scDescription description{{}, marks};
    if (!ProfEnumW(job, list, scDescription::Visit, reinterpret_cast<UINT_PTR>(&description)))
        description.text += L"<stopped>";
    return description.text;
}

// The whole text of an item, or "<none>".
inline std::wstring TextOf(ProfJob job, const wchar_t* path, ProfList list = 0) {
    const INT length = ProfGetStringLengthW(job, list, path);
    if (length < 0)
        return L"<none>";
    std::wstring text(static_cast<size_t>(length) + 1, L'?');
    ProfGetStringW(job, list, path, text.data(), static_cast<UINT>(text.size()), nullptr);
    text.pop_back();
    return text;
}

} // namespace testing_prof
