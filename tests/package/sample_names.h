// What the samples of the pages and the headers take as given: names of the reader's own program.
#ifndef SAMPLE_NAMES_H
#define SAMPLE_NAMES_H

#include <tvut22/tvut22.h>

#include <oleauto.h>
#include <stdio.h>
#include <stdlib.h>

#ifdef __cplusplus
#include <tvut22/tvut22.hpp>
#define TAKES_ANYTHING ...
class Form;
#else
#define TAKES_ANYTHING
typedef struct Form Form;
#endif

enum { IDH_MARGINS = 4711 };

extern HWND edit, mainWindow, window;
extern UINT message;
extern BOOL formIsOpen;
extern int i, page, pages;
extern UINT count;
extern const wchar_t *file, *nameFromArchive, *password, *path;
extern Form* form;
extern ProfJob settings;
extern UtilJob job;
extern void *report, *reports[200];

BOOL IsForm(const CBT_CREATEWNDW* created);
LRESULT PasteInto(Form* into);
void TVUT22_CALL ExportOne(UINT reason, UINT_PTR user, const volatile LONG* abort);
void OfferToSendReports(void);
void Print(TAKES_ANYTHING);
void ShowProgress(void);
BOOL WritePage(void* of);

#endif
