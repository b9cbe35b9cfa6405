#include "pages/part_model_entries.h"

#include <algorithm>
#include <cctype>

#include "core/formatters.h"

namespace drenik {
namespace {

// A value the entry check reads, or nothing for text without a digit (the
// check would read that as 0, which is a valid capacitance here) or for a
// negative value. An empty entry reads as `empty`.
std::optional<float> Read(std::string text, float empty) {
  if (std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isspace(c); }))
    return empty;
  if (std::none_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); }))
    return std::nullopt;
  const float v = CheckEntry(text);
  if (v < 0) return std::nullopt;
  return v;
}

std::string Shown(float value, float ideal, std::string (*format)(double)) {
  return value == ideal ? std::string() : TrimBlanks(format(value));
}

bool Infinite(const std::string& text) {
  std::string t;
  for (char c : text)
    if (!std::isspace(static_cast<unsigned char>(c)))
      t += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return t == "inf" || t == "infinite";
}

}  // namespace

PartModelEntries EntriesOf(const DesignRecord& d, const std::optional<Former>& former) {
  PartModelEntries e;
  e.law = d.InductorQLaw;
  e.capacitorQ = d.CapacitorQ == kInfiniteQcap ? "inf" : TrimBlanks(FormatValue(d.CapacitorQ));
  e.windingCapacitance = Shown(d.WindingCapacitance, 0, &FormatCapacitance);
  e.capacitorEsl = Shown(d.CapacitorEsl, 0, &FormatInductance);
  e.former = former;
  return e;
}

std::string ReadEntries(const PartModelEntries& entries, DesignRecord& d,
                        std::optional<Former>& former) {
  std::string bad;
  auto complain = [&bad](const char* box, const std::string& text, const char* expected) {
    bad +=
        std::string(bad.empty() ? "" : "\n") + box + ": \"" + text + "\" is not " + expected + ".";
  };
  // A capacitor Q of 0 would be a short circuit, not a capacitor.
  std::optional<float> q =
      Infinite(entries.capacitorQ) ? kInfiniteQcap : Read(entries.capacitorQ, kInfiniteQcap);
  if (!q || *q == 0) complain("Capacitor Q", entries.capacitorQ, "\"inf\" or a Q above 0");
  const std::optional<float> cp = Read(entries.windingCapacitance, 0);
  if (!cp)
    complain("Winding capacitance", entries.windingCapacitance,
             "a capacitance of 0 or more (for example 0.5p)");
  const std::optional<float> esl = Read(entries.capacitorEsl, 0);
  if (!esl)
    complain("Capacitor lead inductance", entries.capacitorEsl,
             "an inductance of 0 or more (for example 2n)");
  const std::optional<Former>& f = entries.former;
  if (f && !f->core && !Windable(f->air))
    complain("Air-core coil", f->Name(), "a form and a wire of more than 0 mm, at most 1000 mm");
  if (!bad.empty()) return bad + "\nNothing was changed.";

  d.InductorQLaw = entries.law;
  d.CapacitorQ = *q;
  d.WindingCapacitance = *cp;
  d.CapacitorEsl = *esl;
  former = entries.former;
  return {};
}

}  // namespace drenik
