#include "cli/part_model_options.h"

#include <cmath>

#include "cli/number_reader.h"
#include "cli/options.h"
#include "core/formatters.h"

namespace drenik::cli {
namespace {

std::string LawWords() {
  std::string words;
  for (const QLawFacts& f : QLaws()) words += (words.empty() ? "" : "|") + std::string(f.word);
  return words;
}

// Read as every number on the command line is (prefix letters, "," as
// point); a part value is stored in single precision like the record's.
float Entry(const std::string& name, const std::string& text, bool zeroAllowed, const char* what) {
  const double v = ReadNumber(name, text);
  if (v < 0 || (v == 0 && !zeroAllowed) || !std::isfinite(static_cast<float>(v)))
    throw UsageError(name + ": expected " + what + (zeroAllowed ? " of 0 or above" : " above 0") +
                     ", got '" + text + "'");
  return static_cast<float>(v);
}

}  // namespace

bool ParsePartModelOption(const std::string& name, const std::function<std::string()>& value,
                          PartModelChoices& models) {
  if (name == "--q-law") {
    const std::string v = value();
    models.qLaw = QLawNamed(v);
    if (!models.qLaw) throw UsageError(name + ": expected " + LawWords() + ", got '" + v + "'");
  } else if (name == "--cq") {
    const std::string v = value();
    models.capacitorQ = v == "inf" ? kInfiniteQcap : Entry(name, v, false, "a capacitor Q");
  } else if (name == "--lcp") {
    models.windingCapacitance = Entry(name, value(), true, "a capacitance in farads");
  } else if (name == "--cesl") {
    models.capacitorEsl = Entry(name, value(), true, "an inductance in henries");
  } else {
    return false;
  }
  return true;
}

void ApplyPartModels(const PartModelChoices& models, DesignRecord& d) {
  if (models.qLaw) d.InductorQLaw = *models.qLaw;
  if (models.capacitorQ) d.CapacitorQ = *models.capacitorQ;
  if (models.windingCapacitance) d.WindingCapacitance = *models.windingCapacitance;
  if (models.capacitorEsl) d.CapacitorEsl = *models.capacitorEsl;
}

std::string PartModelUsageText() {
  return "part models (ideal when left out):\n"
         "  --q-law " +
         LawWords() +
         "  how the inductor Q changes from the cutoff (constant)\n"
         "  --cq inf|TEXT               capacitor Q               (inf)\n"
         "  --lcp TEXT                  inductor winding capacitance, F, e.g. 0.5p (0)\n"
         "  --cesl TEXT                 capacitor lead inductance, H, e.g. 2n (0)\n";
}

}  // namespace drenik::cli
