#pragma once
// File associations: the product's document class, Explorer's open-with lists, and
// conflicts with other programs.
#include "base/str.h"

// Registers a document class by the script in the resources, unless the ProgID is registered already.
void RegisterDocumentClass(const Str& progId, const Str& classId, const Str& className);

// `extension` without the dot; `application` a file name. Both log what they did.
void AddToOpenWithList(const Str& extension, const Str& application);
void RemoveFromOpenWithList(const Str& extension, const Str& application);

// Takes a file type back whose open command, set by another program, starts the product. `typeName`: the
// product's own type.
void CleanForeignAssociation(const Str& extension, const Str& typeName);
// Deletes associations of the extension with the product that old versions wrote into win.ini's [Extensions]
// and the registry keys beside it.
void CleanProfileAssociation(const Str& extension);
