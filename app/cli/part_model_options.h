#pragma once
// The command line's part-model options, shared by every command that
// designs: --q-law, --cq, --lcp and --cesl.

#include <functional>
#include <optional>
#include <string>

#include "core/design_record.h"

namespace drenik::cli {

// Unset ones keep the ideal parts.
struct PartModelChoices {
  std::optional<QLaw> qLaw;
  std::optional<float> capacitorQ;          // 1e7 for "inf"
  std::optional<float> windingCapacitance;  // F
  std::optional<float> capacitorEsl;        // H
};

// Whether `name` is one of the options; reads its value and checks it
// (throws UsageError naming the option).
bool ParsePartModelOption(const std::string& name, const std::function<std::string()>& value,
                          PartModelChoices& models);

// Into the record before the display page analyses it.
void ApplyPartModels(const PartModelChoices& models, DesignRecord& d);

std::string PartModelUsageText();

}  // namespace drenik::cli
