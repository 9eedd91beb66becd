/* The English texts of the dialogs in dialogs.rc. UTF-8. Mnemonics are unique within a dialog; only 1200 has two with P,
   of which never more than one is enabled. Read by the resource compiler only. */

/* several dialogs */
#define T_OK "OK"
#define T_CANCEL "Cancel"
#define T_QUIT "&Quit"
#define T_HELP "&Help"
#define T_SETUP_NAME "<SetupName>"

/* 1200 */
#define T_INSTALL "I&nstall"
#define T_REMOVE "&Remove"
#define T_FOLDER_LABEL "&Destination folder:"
#define T_BROWSE "&Browse..."
#define T_REMOVE_ALL_BUT "Remove all <AppName> components except:"
#define T_WORKSTATION_NOTE                                                                                             \
  "Workstation installation: <AppName> stays in the shared folder on the server. Only the fonts, the shortcuts and the registry of this workstation are changed."

/* 1600 */
#define T_PROGRESS_TITLE "Installing <AppName> ..."
#define T_FILES_COPIED "Files copied:"

/* 1700 */
#define T_YES "&Yes"
#define T_YES_TO_ALL "Yes to &All"
#define T_NO "&No"

/* 1800 */
#define T_BROWSE_TITLE "Choose Folder"
#define T_FOLDERS "&Folder:"
#define T_DRIVES "Dri&ve:"
#define T_CREATE_FOLDER "&Create Folder..."
#define T_NETWORK "N&etwork..."
#define T_FILE_NAME "File &name:"
#define T_FILE_TYPE "File &type:"
#define T_READ_ONLY "&Read only"

/* 1900 */
#define T_NEW_FOLDER_TITLE "New Folder"
#define T_NEW_FOLDER_LABEL "&Enter the name of the folder to create:"

/* 2000 */
#define T_OLE_TITLE "<EqnConvMgr>"
#define T_OLE_CONVERT "&Convert to <PrimaryClassName>:"
#define T_OLE_KEEP "Do &not convert:"
#define T_OLE_TO_KEEP "&Remove >>"
#define T_OLE_TO_CONVERT "<< &Add"
#define T_OLE_CONVERT_DETAILS "Detai&ls..."
#define T_OLE_KEEP_DETAILS "Deta&ils..."
#define T_OLE_PRODUCT_DETAILS "&Details of <AppName> <MajVersion>..."
#define T_OLE_INSTALLED_ONLY "In&stalled editors only"
#define T_OLE_ALL "All co&mpatible editors"
#define T_OLE_CLOSE "Cl&ose"

/* 2100 */
#define T_DETAILS_TITLE "Details of <LongName>"
#define T_DETAILS_INTRO "Information about the OLE registration (for solving certain technical problems)."
#define T_DETAILS_CLSID "Class identifier:"
#define T_DETAILS_PROGID "Program identifier:"
#define T_DETAILS_SERVER "Server program:"
#define T_DETAILS_EXISTS "This program exists:"
#define T_DETAILS_AUTOCONVERT "Automatically converted to:"

/* 2200 */
#define T_LANGUAGE_TITLE "Choose Language"
#define T_LANGUAGE_TEXT "Choose the language of the <AppName> user interface:"

/* 2300 */
#define T_OLD_TEXT "An earlier version of <AppName> is in the folder:"
#define T_OLD_REPLACE "&Replace the existing version"
#define T_OLD_KEEP "&Keep the old version"

/* 2500 */
#define T_OFFICE_TEXT                                                                                                  \
  "<SetupName> installs (or removes) software features in Microsoft Word, PowerPoint and Outlook. Please close these applications and click Retry."
#define T_RETRY "&Retry"

/* 2600, 2700, 2800 */
#define T_FINISH_TITLE "Installation Complete"
#define T_LAUNCH "&Start <AppName> now"
#define T_README "&View the release notes"
#define T_README_HINT "Choose ""<Readme_RestartBtn>"" to see this information now."
#define T_REBOOT_TEXT "You must restart Windows to complete the installation of <AppName>."
#define T_REBOOT "&Restart now"
#define T_NO_REBOOT "&Do not restart"

/* 2900, 3000 */
#define T_MACROS_WORD_TITLE "Macro Security in Microsoft Word"
#define T_MACROS_WORD_TEXT                                                                                             \
  "The <AppName> commands for Microsoft Word are macros. Depending on the security level, Word may disable them without asking you.\n\nTo use them, choose Tools, Macro, Security in Word, then trust Quorvale."
#define T_MACROS_PPT_TITLE "Macro Security in Microsoft PowerPoint"
#define T_MACROS_PPT_TEXT                                                                                              \
  "The <AppName> commands for Microsoft PowerPoint are macros. Depending on the security level, PowerPoint may disable them without asking you.\n\nTo use them, choose Tools, Macro, Security in PowerPoint, then trust Quorvale."
#define T_UNDERSTOOD "I understand."
