/* A list of recently used documents: several items of one name, walked in their order. */
#include <tvut22/prof.h>

#include <stdio.h>

struct Recent {
    ProfJob to;
    const wchar_t* latest;
    int kept;
};

/* Takes over one of the earlier documents, unless it is the latest itself. */
static BOOL TVUT22_CALL keep(ProfJob job, const wchar_t* name, const wchar_t* value, ProfList list,
                             UINT_PTR user) {
    struct Recent* recent = (struct Recent*)user;
    (void)job;
    if (list || lstrcmpiW(value, recent->latest) == 0)
        return TRUE;
    ProfAppendStringW(recent->to, 0, name, value);
    return ++recent->kept < 4; /* FALSE ends the walk */
}

/* Gives the list with a document on its top, and the three that were used before it. */
static ProfJob used(ProfJob before, const wchar_t* document) {
    struct Recent recent = {ProfJobOpenW(NULL), document, 1};
    ProfAppendStringW(recent.to, 0, L"Document", document);
    ProfEnumW(before, 0, keep, (UINT_PTR)&recent);
    ProfJobClose(before);
    return recent.to;
}

static BOOL TVUT22_CALL print(ProfJob job, const wchar_t* name, const wchar_t* value, ProfList list,
                              UINT_PTR user) {
    (void)job, (void)list, (void)user;
    printf("%ls: %ls\n", name, value);
    return TRUE;
}

int main(void) {
    static const wchar_t* const day[] = {L"plan.doc",   L"budget.xls", L"letter.doc",
                                         L"BUDGET.XLS", L"notes.txt",  L"photo.png"};
    ProfJob recent = ProfJobOpenW(NULL);
    size_t i;
    for (i = 0; i < sizeof day / sizeof *day; ++i)
        recent = used(recent, day[i]);
    if (ProfSaveW(recent, L"recent.prf", PROF_FORM_TEXT | PROF_SAVE_COMPRESSED) != PROF_OK)
        return 1;
    ProfJobClose(recent);

    recent = ProfJobOpenW(L"recent.prf"); /* a compressed profile opens like any other */
    ProfEnumW(recent, 0, print, 0);
    ProfJobClose(recent);
    return 0;
}
