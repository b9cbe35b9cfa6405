#pragma once
// The stock-part chooser: buyable values for every part of a designed ladder
// that keep its response as well as the series allow. Capacitors come from
// an E series, singly or (when allowed) as two in parallel; inductors are
// either wound to any value or taken from a series too.
//
// The search keeps each capacitor among its series neighbours (and the
// nearest pairs), ranks the combinations by a first-order model with the
// inductors corrected to keep the exact response, then polishes the
// inductors of the most promising few with the true analysis. Its worst
// passband return loss is never below that of plain rounding in the same
// series, nor below the display page's "5% C values" stage when that stage
// is itself made of the requested parts.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/design_record.h"
#include "core/element_kinds.h"
#include "core/engine_report.h"
#include "parts/figures.h"
#include "synthesis/e_series.h"
#include "winding/winding.h"

namespace drenik {

struct PartsRequest {
  ESeries capacitors = ESeries::E24;
  std::optional<ESeries> inductors;  // nothing: wound to the exact value needed
  bool pairs = false;                // two capacitors in parallel where that helps
  // Whole turns on a toroid core or an air-core form: the inductors' values
  // in place of the series.
  std::optional<Former> former{};
  // The bands the sets are judged over: a mask's passband and stopbands in
  // place of the design's own (nothing: the design's), so that the parts
  // keep what that mask asks rather than the whole designed response.
  std::optional<Bands> bands{};
};

// Whether two requests ask for the same parts (a former by its name).
bool SameParts(const PartsRequest& a, const PartsRequest& b);

// The chosen parts of one ladder position.
struct PositionParts {
  int position = 0;
  ElementKind kind = ElementKind::Empty;
  std::vector<double> capacitors;  // F: none, one, or two in parallel (larger first)
  double inductor = 0;             // H; 0 where the position has none
  int turns = 0;                   // whole turns on the request's former; 0 without one
  float exactL = 0, exactC = 0;    // the exact design's values
  float L = 0, C = 0;              // effective values, as the record keeps them
};

// Relative error of a chosen value against the exact one, percent; 0 where
// the exact value is 0.
double ErrorPercent(double chosen, double exact);

struct PartsChoice {
  PartsRequest request;
  std::vector<PositionParts> positions;  // ladder positions 1..Stages in order
  Figures exact;                         // the exact design
  Figures standard;                      // the "5% C values" stage
  // Plain rounding: every capacitor to its nearest single part of the
  // series, every inductor to its nearest allowed value (whole turn, series
  // value, or exact when wound to value), nothing retuned.
  Figures rounded;
  Figures chosen;
  // The search found nothing better than the 5% C stage, which is returned.
  bool keptStandard = false;
  // Nor than plain rounding, which is returned.
  bool keptRounded = false;
  // Where the parts could not keep the stopband within a dB of the exact
  // design's without matching worse than plain rounding: one line saying
  // what was given away and what would help (parts/trade_note.h). Empty
  // when both are kept.
  std::string note;
};

// Called now and then with the share of the choice done (0..1), last with 1.
using PartsProgress = std::function<void(double done)>;

// From a record that holds the exact design (after the display page's
// denormalization) and the display page's sweep settings. The record is not
// changed. Faults: a ladder the analysis cannot solve.
[[nodiscard]] EngineReport ChooseParts(const DesignRecord& exact, const PartsRequest& request,
                                       PartsChoice& choice, const PartsProgress& progress = {});

// Writes the effective values of the choice into L and C (positions
// 1..Stages); the sweep is the caller's to run.
void ApplyParts(const PartsChoice& choice, DesignRecord& d);

}  // namespace drenik
