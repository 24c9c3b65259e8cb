// Numbers of the commands and controls, for the code and the resource script.
#pragma once

#define ID_MENU 1
#define ID_ACCELERATORS 2
#define ID_TEXT_DIALOG 3

#define ID_SAVE 100
#define ID_EXIT 101
#define ID_COPY 102
#define ID_SELECT_ALL 103
#define ID_CLEAR 104
#define ID_GO_INCLUDE 105
#define ID_GO_EXCLUDE 106
#define ID_CLEAR_FILTER 107
#define ID_ABOUT 108
#define ID_OPEN 109
#define ID_LIVE 110
#define ID_GO_FIND 111
#define ID_FIND_NEXT 112
#define ID_FIND_PREVIOUS 113
#define ID_BOOKMARK 114
#define ID_NEXT_BOOKMARK 115
#define ID_PREVIOUS_BOOKMARK 116
#define ID_GO_ONLY 117
#define ID_HIGHLIGHTS 118
#define ID_SAVE_FILTER 119

/* Menu items that are controls of the bar, too. */
#define ID_PAUSE 120
#define ID_FOLLOW 121
#define ID_REGULAR 122

#define ID_INCLUDE 130
#define ID_EXCLUDE 131
#define ID_LINES 132
#define ID_DETAIL 133
#define ID_STATUS 134
#define ID_ONLY 135
#define ID_FIND 136

/* Criteria of the focused line. */
#define ID_ONLY_PROBLEMS 140
#define ID_ONLY_MODULE 141
#define ID_HIDE_MODULE 142
#define ID_ONLY_THREAD 143
#define ID_HIDE_THREAD 144
#define ID_ONLY_PROCESS 145
#define ID_HIDE_PROCESS 146
#define ID_EDIT_FILTERS 147

#define ID_THEME_SYSTEM 150
#define ID_THEME_LIGHT 151
#define ID_THEME_DARK 152

/* Of the dialog for texts. */
#define ID_HINT 160
#define ID_TEXT 161
#define ID_PROBLEM 162

/* One a column, and one a saved filter. */
#define ID_FIRST_COLUMN 200
#define ID_FIRST_SAVED 300
#define ID_LAST_SAVED 399
