#ifndef SETUP_RESOURCES_IDS_H
#define SETUP_RESOURCES_IDS_H
/* Ids of dialogs, controls and the first texts of runs. Read by the C++ sources and by the resource compiler, so only
   preprocessor lines here. Ids below 20000 live in the language libraries (and, in French, in the program). */

#define IDI_SETUP 1

/* dialogs */
#define IDD_MAIN 1200
#define IDD_PROGRESS 1600
#define IDD_YESTOALL 1700
#define IDD_BROWSE 1800
#define IDD_NEWFOLDER 1900
#define IDD_OLEMGR 2000
#define IDD_OLEDETAILS 2100
#define IDD_LANGUAGE 2200
#define IDD_OLDVERSION 2300
#define IDD_STATUS 2400
#define IDD_OFFICE 2500
#define IDD_FINISH_README 2600
#define IDD_FINISH 2700
#define IDD_FINISH_REBOOT 2800
#define IDD_MACROS_WORD 2900
#define IDD_MACROS_PPT 3000

/* common controls: 1 OK, 2 Cancel/Quit */
#define IDC_HELP_BUTTON 9
#define IDC_MESSAGE 20

/* 1200 */
#define IDC_MAIN_INSTALL 101
#define IDC_MAIN_WORKSTATION 102
#define IDC_MAIN_REMOVE 103
#define IDC_MAIN_TEXT 104
#define IDC_MAIN_FOLDER_LABEL 105
#define IDC_MAIN_FOLDER 106
#define IDC_MAIN_BROWSE 107
#define IDC_MAIN_OPTIONS_LABEL 108
#define IDC_MAIN_WORKSTATION_NOTE 109
#define IDC_MAIN_OPTION_FIRST 110
#define IDC_MAIN_OPTION_LAST 117

/* 1600 */
#define IDC_PROGRESS_LABEL 21
#define IDD_PROGMETER_GRAPH 22
#define IDC_PROGRESS_TEXT 23
#define IDC_PROGRESS_STOP 24

/* 1700 */
#define IDC_ANSWER_YES 6
#define IDC_ANSWER_NO 7
#define IDC_ANSWER_YES_TO_ALL 21

/* 1800, beside the open-file dialog's own ids */
#define IDC_BROWSE_CREATE 1101
/* 1900 */
#define IDC_NEWFOLDER_NAME 121

/* 2000 */
#define IDC_OLE_CONVERT_LIST 131
#define IDC_OLE_KEEP_LIST 132
#define IDC_OLE_TO_KEEP 133
#define IDC_OLE_TO_CONVERT 134
#define IDC_OLE_CONVERT_DETAILS 135
#define IDC_OLE_KEEP_DETAILS 136
#define IDC_OLE_PRODUCT_DETAILS 137
#define IDC_OLE_INSTALLED_ONLY 138
#define IDC_OLE_ALL 139

/* 2100 */
#define IDC_DETAILS_CLSID 171
#define IDC_DETAILS_PROGID 172
#define IDC_DETAILS_SERVER 173
#define IDC_DETAILS_EXISTS 174
#define IDC_DETAILS_AUTOCONVERT 175

/* 2200 */
#define IDC_LANGUAGE_LIST 141

/* 2300 */
#define IDC_OLD_REPLACE 151
#define IDC_OLD_KEEP 152

/* 2600, 2700, 2800 */
#define IDC_FINISH_LAUNCH 161
#define IDC_FINISH_README 162
#define IDC_FINISH_NOTICE 163
#define IDC_FINISH_README_HINT 164

/* texts: first ids of runs that end with "!END!" */
#define IDS_REMOVAL_OPTION_TEXTS 1536
#define IDS_REMOVAL_OPTION_NAMES 1664
#define IDS_STUB_SCRIPT 1792
#define IDS_BUILTIN_SETTINGS 4000

#endif
