#include "pages/mask_boxes.h"

#include <cstdio>
#include <tuple>

#include "core/formatters.h"

namespace drenik {

namespace {

std::string Row(const char* box, int row) {
  return box + std::to_string(row);
}

std::string Number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", v);
  return text;
}

std::string Hz(double f) {
  return TrimBlanks(FormatFrequency(f));
}

// The boxes only a band's mask uses.
std::vector<std::string> BandBoxes() {
  std::vector<std::string> names = {"lblPassEdge2", "txtPassEdge2", "lblStopTo"};
  for (int row = 1; row <= kMaskStopRows; ++row) names.push_back(Row("txtStopTo", row));
  return names;
}

// A band's edges and stop rows into the mask; the message naming the boxes
// when they do not make one.
std::string ReadBandMask(const ControlSet& controls, MaskShape shape, Mask& mask) {
  const bool bandstop = shape == MaskShape::Bandstop;
  const char* edgeBoxes = bandstop ? "(Passbands to, and from)" : "(Passband from, to)";
  double lower = 0, upper = 0;
  if (!ReadNumberBox(controls, "txtPassEdge", lower) ||
      !ReadNumberBox(controls, "txtPassEdge2", upper) || !(lower > 0) || !(upper > lower))
    return bandstop ? "The passbands need two edges above 0 Hz, where the lower one ends below "
                      "where the upper one starts " +
                          std::string(edgeBoxes) + "."
                    : "The passband needs two edges above 0 Hz, the lower below the upper " +
                          std::string(edgeBoxes) + ".";
  if (bandstop)
    mask.passEdge = lower, mask.passResume = upper;
  else
    mask.passStart = lower, mask.passEdge = upper;
  const std::vector<Span> passbands = PassSpans(mask, false);
  for (int row = 1; row <= kMaskStopRows; ++row) {
    double from = 0, to = 0, depth = 0;
    const bool hasFrom = ReadNumberBox(controls, Row("txtStopFreq", row), from);
    const bool hasTo = ReadNumberBox(controls, Row("txtStopTo", row), to);
    const bool hasDepth = ReadNumberBox(controls, Row("txtStopDepth", row), depth);
    if (!hasFrom && !hasTo && !hasDepth) continue;
    const std::string where = " (row " + std::to_string(row) + ")";
    if (!(hasFrom || hasTo) || !hasDepth || (hasFrom && !(from > 0)) || (hasTo && !(to > 0)) ||
        depth < 0)
      return "A stopband check needs where it starts (from), where it ends (to) or both, above "
             "0 Hz, and an attenuation of 0 dB or more" +
             where + ".";
    if (hasFrom && hasTo && !(to > from))
      return "A stopband check must end (to) above where it starts (from)" + where + ".";
    // Up from a frequency, down to one, or between two.
    const StopCheck stop = hasFrom
                               ? StopCheck{.frequency = from, .depth = depth, .to = hasTo ? to : 0}
                               : StopCheck{.frequency = to, .depth = depth, .below = true};
    const Span span = StopSpan(stop, false);
    for (const Span& pass : passbands)
      if (Overlap(span, pass))
        return "The stopband " + SpanText(span) + where + " reaches into the passband " +
               SpanText(pass) + ": its from and to must lie clear of the passband's edges " +
               edgeBoxes + ".";
    mask.stops.push_back(stop);
  }
  return {};
}

}  // namespace

bool ReadNumberBox(const ControlSet& controls, const std::string& box, double& value) {
  std::string text = controls.FindTextBox(box)->Text();
  if (text.find_first_of("0123456789") == std::string::npos) return false;
  value = CheckEntry(text);
  return true;
}

std::vector<std::string> MaskBoxNames() {
  std::vector<std::string> names = {"txtPassEdge", "txtPassEdge2", "txtPassRl", "txtPassIl"};
  for (int row = 1; row <= kMaskStopRows; ++row)
    for (const char* box : {"txtStopFreq", "txtStopTo", "txtStopDepth"})
      names.push_back(Row(box, row));
  return names;
}

bool MaskDecibelBox(size_t k) {
  return k == 2 || k == 3 || (k >= 4 && (k - 4) % 3 == 2);
}

void AddMaskBoxes(ControlSet& controls) {
  controls.AddFrame("frmMask", "Mask");
  controls.AddLabel("lblPassEdge", "Passband edge, Hz");
  controls.AddTextBox("txtPassEdge", "");
  // A band's upper edge: a bandpass's passband ends there, a bandstop's
  // upper passband starts there.
  controls.AddLabel("lblPassEdge2", "to, Hz");
  controls.AddTextBox("txtPassEdge2", "");
  controls.AddLabel("lblPassRl", "Return loss at least, dB");
  controls.AddTextBox("txtPassRl", "");
  controls.AddLabel("lblPassIl", "Loss at most, dB");
  controls.AddTextBox("txtPassIl", "");
  controls.AddLabel("lblStop", "Stopband from, Hz");
  controls.AddLabel("lblStopTo", "to, Hz");
  controls.AddLabel("lblStopDepth", "at least, dB");
  for (int row = 1; row <= kMaskStopRows; ++row) {
    controls.AddTextBox(Row("txtStopFreq", row), "");
    // Where a band's stopband ends: a lower skirt has only this, a notch
    // both.
    controls.AddTextBox(Row("txtStopTo", row), "");
    controls.AddTextBox(Row("txtStopDepth", row), "");
  }
}

void ShowMaskShape(ControlSet& controls, MaskShape shape, bool highpass) {
  const bool band = shape != MaskShape::Edge;
  // A band's stopbands have a from and a to side by side: a shorter word.
  controls.FindLabel("lblStop")->SetCaption(band       ? "Stop from, Hz"
                                            : highpass ? "Stopband to, Hz"
                                                       : "Stopband from, Hz");
  controls.FindLabel("lblPassEdge")
      ->SetCaption(!band
                       ? "Passband edge, Hz"
                       : (shape == MaskShape::Bandpass ? "Passband from, Hz" : "Passbands to, Hz"));
  controls.FindLabel("lblPassEdge2")
      ->SetCaption(shape == MaskShape::Bandstop ? "and from, Hz" : "to, Hz");
  for (const std::string& name : BandBoxes()) controls.Find(name)->SetEnabled(band);
}

void FillMaskBoxes(ControlSet& controls, MaskShape shape, const Mask& mask) {
  auto set = [&](const std::string& box, const std::string& text) {
    controls.FindTextBox(box)->SetText(text);
  };
  // A band's boxes hold its lower edge first: where a bandpass's passband
  // starts, where a bandstop's lower passband ends.
  const bool band = shape != MaskShape::Edge, bandpass = shape == MaskShape::Bandpass;
  set("txtPassEdge", Hz(bandpass ? mask.passStart : mask.passEdge));
  set("txtPassEdge2", band ? Hz(bandpass ? mask.passEdge : mask.passResume) : "");
  set("txtPassRl", mask.passRl ? Number(*mask.passRl) : "");
  set("txtPassIl", mask.passIl ? Number(*mask.passIl) : "");
  for (int row = 1; row <= kMaskStopRows; ++row) {
    const StopCheck* stop =
        row <= static_cast<int>(mask.stops.size()) ? &mask.stops[row - 1] : nullptr;
    // A band's lower skirt runs down to its frequency: a "to" alone.
    const bool downTo = band && stop && stop->below;
    const double to = !band || !stop ? 0 : (downTo ? stop->frequency : stop->to);
    set(Row("txtStopFreq", row), stop && !downTo ? Hz(stop->frequency) : "");
    set(Row("txtStopTo", row), to > 0 ? Hz(to) : "");
    set(Row("txtStopDepth", row), stop ? Number(stop->depth) : "");
  }
}

std::string ReadMaskBoxes(const ControlSet& controls, MaskShape shape, Mask& mask) {
  auto read = [&](const std::string& box, double& value) {
    return ReadNumberBox(controls, box, value);
  };
  double edge = 0;
  if (shape == MaskShape::Edge && (!read("txtPassEdge", edge) || !(edge > 0)))
    return "The passband edge must be a frequency above 0 Hz.";
  mask.passEdge = edge;
  double db = 0;
  for (const auto& [box, limit, what] : {std::tuple{"txtPassRl", &mask.passRl, "return loss"},
                                         std::tuple{"txtPassIl", &mask.passIl, "loss"}}) {
    if (!read(box, db)) continue;
    if (db < 0) return std::string("The passband ") + what + " must be 0 dB or more.";
    *limit = db;
  }
  if (shape != MaskShape::Edge) return ReadBandMask(controls, shape, mask);
  for (int row = 1; row <= kMaskStopRows; ++row) {
    double f = 0, depth = 0;
    const bool hasF = read(Row("txtStopFreq", row), f);
    const bool hasDepth = read(Row("txtStopDepth", row), depth);
    if (!hasF && !hasDepth) continue;
    if (!hasF || !hasDepth || !(f > 0) || depth < 0)
      return "A stopband check needs a frequency above 0 Hz and an attenuation of 0 dB or "
             "more (row " +
             std::to_string(row) + ").";
    mask.stops.push_back({f, depth});
  }
  return {};
}

}  // namespace drenik
