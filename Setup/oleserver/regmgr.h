#pragma once
// Equation servers registered on this machine, and the conversion of their objects to the product's class.
#include <windows.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "base/str.h"
#include "oleserver/serverdesc.h"

// One registered equation server, known by its class identifier in the system's braced form.
class COLEEquationReg {
 public:
  explicit COLEEquationReg(const Str& classId) : mClassId(classId) {}

  const Str& ClassId() const { return mClassId; }
  // Empty when the class has none.
  Str ProgId() const;
  // Full path of the server program as registered; empty when unknown.
  Str ServerPath() const;
  // The system's registered user-type name; empty when there is none.
  Str UserTypeName() const;
  // What lists show: the user-type name, else the ProgID, else the class; the oldest releases
  // have a name of their own.
  Str DisplayName() const;
  ServerDescription Description() const;
  // The class its objects are converted to; false when to none.
  bool GetAutoConvert(Str& targetClassId) const;
  bool ConvertsToUs() const;
  // Turns the conversion to the product's class on or off. A third class found when turning on is remembered
  // and comes back when turning off.
  void SetAutoConvert(bool on) const;
  // Whether the product may take over this server's objects.
  bool MayTakeOver() const;
  // INI-store path of the server's preferences; false when it has none.
  [[nodiscard]] bool GetPreferencePath(Str& path) const;

 private:
  Str mClassId;
};

using ServerList = std::vector<std::unique_ptr<COLEEquationReg>>;

enum class ServerChoice { kAll, kTakeOver };

// Every server but the product's own, one per class.
ServerList ListEquationServers(ServerChoice choice);
// Case-insensitive; null when it is not listed.
const COLEEquationReg* FindServerByProgId(const ServerList& servers, const char* progId);
// Newest first: by version, then maker, then ProgID.
std::vector<const COLEEquationReg*> SortNewestFirst(const ServerList& servers);

// The product's own class, version and maker, from its variables.
Str OwnClassId();
ServerDescription OwnDescription();

// Runs the product's program with "-install" or "-remove". A missing program is a success unless `required`.
[[nodiscard]] bool RegisterProduct(bool install, bool required);
