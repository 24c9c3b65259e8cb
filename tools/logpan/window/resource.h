// Numbers of the commands and controls, for the code and the resource script.
#pragma once

#define ID_MENU 1
#define ID_ACCELERATORS 2

#define ID_SAVE 100
#define ID_EXIT 101
#define ID_COPY 102
#define ID_SELECT_ALL 103
#define ID_CLEAR 104
#define ID_GO_INCLUDE 105
#define ID_GO_EXCLUDE 106
#define ID_CLEAR_FILTER 107
#define ID_ABOUT 108

/* Menu items that are controls of the bar, too. */
#define ID_PAUSE 120
#define ID_FOLLOW 121
#define ID_REGULAR 122

#define ID_INCLUDE 130
#define ID_EXCLUDE 131
#define ID_LINES 132
#define ID_DETAIL 133
#define ID_STATUS 134
