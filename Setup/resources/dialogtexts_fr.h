/* The French texts of the dialogs in dialogs.rc. UTF-8. Mnemonics are unique within a dialog; only 1200 has two with P,
   of which never more than one is enabled. Read by the resource compiler only. */

/* several dialogs */
#define T_OK "OK"
#define T_CANCEL "Annuler"
#define T_QUIT "&Quitter"
#define T_HELP "A&ide"
#define T_SETUP_NAME "<SetupName>"

/* 1200 */
#define T_INSTALL "I&nstaller"
#define T_REMOVE "&Supprimer"
#define T_FOLDER_LABEL "&Dossier de destination :"
#define T_BROWSE "&Parcourir..."
#define T_REMOVE_ALL_BUT "Supprimer tous les composants de <AppName> sauf :"
#define T_WORKSTATION_NOTE                                                                                             \
  "Installation sur un poste de travail : <AppName> reste dans le dossier partagé du serveur. Seuls les polices, les raccourcis et les registres de ce poste sont modifiés."

/* 1600 */
#define T_PROGRESS_TITLE "Installation de <AppName> ..."
#define T_FILES_COPIED "Fichiers copiés :"

/* 1700 */
#define T_YES "&Oui"
#define T_YES_TO_ALL "Oui à &tous"
#define T_NO "&Non"

/* 1800 */
#define T_BROWSE_TITLE "Choix du dossier"
#define T_FOLDERS "&Dossier :"
#define T_DRIVES "Di&sque :"
#define T_CREATE_FOLDER "&Créer dossier..."
#define T_NETWORK "Rés&eau..."
#define T_FILE_NAME "Nom de &fichier :"
#define T_FILE_TYPE "&Type de fichier :"
#define T_READ_ONLY "&Lecture seule"

/* 1900 */
#define T_NEW_FOLDER_TITLE "Nouveau dossier"
#define T_NEW_FOLDER_LABEL "&Entrez le nom du dossier à créer :"

/* 2000 */
#define T_OLE_TITLE "<EqnConvMgr>"
#define T_OLE_CONVERT "&Convertir en <PrimaryClassName> :"
#define T_OLE_KEEP "&Ne pas convertir :"
#define T_OLE_TO_KEEP "&Retirer >>"
#define T_OLE_TO_CONVERT "<< &Ajouter"
#define T_OLE_CONVERT_DETAILS "Détai&ls..."
#define T_OLE_KEEP_DETAILS "Déta&ils..."
#define T_OLE_PRODUCT_DETAILS "&Détails de <AppName> <MajVersion>..."
#define T_OLE_INSTALLED_ONLY "Editeurs installés &seulement"
#define T_OLE_ALL "&Tous les éditeurs compatibles"
#define T_OLE_CLOSE "&Fermer"

/* 2100 */
#define T_DETAILS_TITLE "Détails pour <LongName>"
#define T_DETAILS_INTRO "Informations sur les registres OLE (pour résoudre certains problèmes techniques)."
#define T_DETAILS_CLSID "Identificateur de classe :"
#define T_DETAILS_PROGID "Identificateur de programme :"
#define T_DETAILS_SERVER "Programme serveur :"
#define T_DETAILS_EXISTS "Ce programme existe :"
#define T_DETAILS_AUTOCONVERT "Conversion automatique en :"

/* 2200 */
#define T_LANGUAGE_TITLE "Choix de la langue"
#define T_LANGUAGE_TEXT "Choisissez la langue de l'interface utilisateur de <AppName> :"

/* 2300 */
#define T_OLD_TEXT "Une version antérieure de <AppName> se trouve dans le dossier :"
#define T_OLD_REPLACE "&Remplacer la version existante"
#define T_OLD_KEEP "&Conserver l'ancienne version"

/* 2500 */
#define T_OFFICE_TEXT                                                                                                  \
  "<SetupName> installe (ou supprime) des fonctions logicielles dans Microsoft Word, PowerPoint et Outlook. Veuillez fermer ces applications et cliquer sur Réessayer."
#define T_RETRY "&Réessayer"

/* 2600, 2700, 2800 */
#define T_FINISH_TITLE "Installation terminée"
#define T_LAUNCH "&Démarrer <AppName> maintenant"
#define T_README "&Afficher les notes de mise à jour"
#define T_README_HINT "Choisissez ""<Readme_RestartBtn>"" pour visualiser ces informations maintenant."
#define T_REBOOT_TEXT "Vous devez relancer Windows pour terminer l'installation de <AppName>."
#define T_REBOOT "&Redémarrer maintenant"
#define T_NO_REBOOT "&Ne pas redémarrer"

/* 2900, 3000 */
#define T_MACROS_WORD_TITLE "Sécurité des macros de Microsoft Word"
#define T_MACROS_WORD_TEXT                                                                                             \
  "Les commandes de <AppName> pour Microsoft Word sont des macros. Selon le niveau de sécurité choisi, Word peut les désactiver sans vous le demander.\n\nPour les utiliser, choisissez Outils, Macro, Sécurité dans Word, puis faites confiance à Quorvale."
#define T_MACROS_PPT_TITLE "Sécurité des macros de Microsoft PowerPoint"
#define T_MACROS_PPT_TEXT                                                                                              \
  "Les commandes de <AppName> pour Microsoft PowerPoint sont des macros. Selon le niveau de sécurité choisi, PowerPoint peut les désactiver sans vous le demander.\n\nPour les utiliser, choisissez Outils, Macro, Sécurité dans PowerPoint, puis faites confiance à Quorvale."
#define T_UNDERSTOOD "J'ai compris."
