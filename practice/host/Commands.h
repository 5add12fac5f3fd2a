#pragma once
// Identifiers of the window's resources, for the resource script too.

#define IDM_MAIN 100
#define IDA_MAIN 101
#define IDC_LOAD 201
#define IDC_SAVE 202
#define IDC_SVG 203
#define IDC_EXIT 204
#define IDC_STATE_MENU 211
#define IDC_STATE_KVD 212
#define IDC_START 221
#define IDC_FIT 231
#define IDC_ALL_STOREYS 232
#define IDC_NEXT_STOREY 233
#define IDC_LAST_STOREY 234
