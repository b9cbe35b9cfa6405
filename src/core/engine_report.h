#pragma once
// What an engine routine (synthesis, analysis) has to tell the user, as a
// value: the engine never calls the desktop. The page that ran the routine
// decides what to show: a message box for a notice, the alert sound for each
// alert owed, and the run-time error message for a fault.

#include <string>
#include <utility>

namespace drenik {

struct EngineReport {
  // The routine stopped: what would have divided by zero or run past the
  // fixed arrays. Empty when it ran to its end.
  std::string fault;
  // A message for the user; the routine went on as far as it could (the
  // Cauer family's minimum order).
  std::string notice;
  // Audible alerts owed: one per unmodelled ladder position per sweep point.
  int alerts = 0;

  bool Ok() const { return fault.empty(); }

  static EngineReport Fault(std::string why) { return {std::move(why), {}, 0}; }
  static EngineReport Notice(std::string text) { return {{}, std::move(text), 0}; }
};

}  // namespace drenik
