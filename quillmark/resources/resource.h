// Ids of the module's resources: the option page templates, their
// controls, and the menu of recent files.
#pragma once

// Option page templates.
#define IDD_LENGTH_PAGE 102
#define IDD_AREA_PAGE 104
#define IDD_BLOCKCOUNT_PAGE 105
#define IDD_EXCEL_PAGE 213
#define IDD_TABLECELL_PAGE 215
#define IDD_TEXTFILE_PAGE 216

// The Objects Area and Objects Length pages.
#define IDC_OBJECT_LIST 101
#define IDC_PREVIEW 104
#define IDC_UNITS_LIST 105
#define IDC_ADDITIONAL_FORMAT 107
#define IDC_SELECT_OBJECTS 203
#define IDC_REMOVE_OBJECT 204
#define IDC_PRECISION 207
#define IDC_OBJECT_FILTER 234

// The Additional Format dialog of the Objects Area, Objects Length and
// Block Count pages.
#define IDD_ADDITIONAL_FORMAT 103
#define IDC_CURRENT_VALUE 108
#define IDC_FORMAT_PREVIEW 109
#define IDC_CONVERSION_FACTOR 110
#define IDC_FORMAT_PREFIX 111
#define IDC_FORMAT_SUFFIX 112
#define IDC_DECIMAL_SEPARATOR 113
#define IDC_THOUSANDS_SEPARATOR 114
#define IDC_ZERO_LEADING 115
#define IDC_ZERO_TRAILING 116
#define IDC_ZERO_FEET 117
#define IDC_ZERO_INCHES 118

// The Objects Filter dialog of the Objects Area and Objects Length pages.
#define IDD_OBJECT_FILTER 106
#define IDC_FILTER_LAYERS 120
#define IDC_FILTER_SELECT_ALL 124
#define IDC_FILTER_UNSELECT_ALL 125
#define IDC_TYPE_LINE 226
#define IDC_TYPE_POLYLINE 227
#define IDC_TYPE_CIRCLE 228
#define IDC_TYPE_ARC 229
#define IDC_TYPE_MTEXT 230
#define IDC_TYPE_TEXT 231
#define IDC_TYPE_SOLID 232
#define IDC_TYPE_BLOCKREF 233

// The Block Count page; 104 and 107 as above.
#define IDC_NESTED_BLOCKS 102
#define IDC_SOURCE_DRAWING 103
#define IDC_SOURCE_WINDOW 105
#define IDC_BLOCK_FILTER 119
#define IDC_PICK_WINDOW 203
#define IDC_BLOCK_LIST 207
#define IDC_CHECK_ALL 210
#define IDC_UNCHECK_ALL 211

// The Excel Cell and Text File pages.
#define IDC_WORKSHEET 100
#define IDC_RECENT_FILES 101
#define IDC_PATH 200
#define IDC_BROWSE 201
#define IDC_ROW 205
#define IDC_PATH_TYPE 206
#define IDC_COLUMN 276
#define IDC_ACTIVE_CELL 277

// The Table Cell page; 104 is its preview.
#define IDC_PICK_CELL 200
#define IDC_CELL_NAME 202

// The popup menu of recent files and the commands of its entries.
#define IDR_RECENT_FILES_MENU L"029DA631-CAF4-4096-984F-808D80049830"
#define ID_RECENT_FILE_FIRST 32769
#define ID_RECENT_FILE_LAST 32777

// The Check for Update dialog, its controls and the link it makes.
#define IDD_LIVE_UPDATE L"50FC3BF2-28F7-46F4-A3C8-B7739A3F67CE"
#define IDC_UPDATE_STATUS 211
#define IDC_LINK_PLACEHOLDER 212
#define IDC_DOWNLOAD_NOTE 213
#define IDC_CHECK_UP 214
#define IDC_DOWNLOAD_LINK 3556

// The About dialog and its two texts.
#define IDD_ABOUT L"DEAF365F-720F-4D79-A59D-64D3B5577F27"
#define IDC_ABOUT_VERSION 222
#define IDC_ABOUT_NOTICE 224
// The Block Filter dialog of the Block Count page.
#define IDD_BLOCK_FILTER 211
#define IDC_FILTER_LAYERS 120
#define IDC_FILTER_ATTRIBUTE 121
#define IDC_FILTER_TAG 122
#define IDC_FILTER_VALUE 123
#define IDC_FILTER_CHECK_ALL 124
#define IDC_FILTER_UNCHECK_ALL 125
#define IDC_FILTER_OPERATOR 208
