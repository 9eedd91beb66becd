#pragma once
// The user's choice of the product's interface language.

// Lets the user choose among the product's language libraries that `pattern` (folder and file pattern) names,
// sets "CurLangAbbrev" and records the choice as "AppLang" in the section "Config" of the machine store.
// Without a folder the program's is searched. False when the path or every language is unusable.
[[nodiscard]] bool ChooseProductLanguage(const char* pattern);
