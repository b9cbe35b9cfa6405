#include "cli/json_output.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <span>
#include <vector>

#include "analysis/part_resonances.h"
#include "core/formatters.h"
#include "core/number_text.h"
#include "synthesis/topologies.h"

namespace drenik::cli {

std::string JsonReal(float value) {
  if (!std::isfinite(value)) return "null";
  return RoundTripText(value);
}

std::string JsonNumber(double value) {
  if (!std::isfinite(value)) return "null";
  return RoundTripText(value);
}

std::string JsonString(const std::string& text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", c);
      out += escape;
    } else {
      out += static_cast<char>(c);
    }
  }
  return out + "\"";
}

namespace {

class ObjectWriter {
 public:
  explicit ObjectWriter(std::ostream& out) : out_(out) { out_ << "{"; }
  void Raw(const char* name, const std::string& text) {
    out_ << (first_ ? "\n  " : ",\n  ") << JsonString(name) << ": " << text;
    first_ = false;
  }
  void Real(const char* name, float v) { Raw(name, JsonReal(v)); }
  void Int(const char* name, long v) { Raw(name, std::to_string(v)); }
  void Text(const char* name, const std::string& v) { Raw(name, JsonString(v)); }
  template <typename T>
  void Array(const char* name, std::span<const T> values) {
    std::string text = "[";
    for (size_t i = 0; i < values.size(); ++i) {
      if (i) text += ", ";
      if constexpr (std::is_floating_point_v<T>) {
        text += JsonReal(values[i]);
      } else {
        text += std::to_string(values[i]);
      }
    }
    Raw(name, text + "]");
  }
  void End() { out_ << "\n}\n"; }

 private:
  std::ostream& out_;
  bool first_ = true;
};

std::string TextArray(const std::vector<std::string>& texts) {
  std::string out = "[";
  for (size_t i = 0; i < texts.size(); ++i) out += (i ? ", " : "") + JsonString(texts[i]);
  return out + "]";
}

}  // namespace

void WriteDesignJson(const DesignRecord& d, std::ostream& out) {
  ObjectWriter w(out);
  w.Int("Family", d.Family);
  w.Int("Order", d.Order);
  w.Text("Topology", d.Topology);
  w.Text("CauerType", d.CauerType);
  w.Int("CauerFlag", d.CauerFlag);
  w.Real("Apass", d.Apass);
  w.Real("Astop", d.Astop);
  w.Real("Width", d.Width);
  if (IsBandDesign(d)) {
    // The geometric centre and the edges at the family's cutoff label.
    const BandEdges e = EdgesOfBand(d.Center, d.Width);
    w.Real("Center", d.Center);
    w.Real("F1", static_cast<float>(e.f1));
    w.Real("F2", static_cast<float>(e.f2));
  }
  w.Real("Omega", d.Omega);
  w.Real("Rsource", d.Rsource);
  w.Real("Rload", d.Rload);
  w.Real("Rstandard", d.Rstandard);
  w.Real("Qind", d.Qind);
  w.Real("Qcap", d.Qcap);
  w.Real("RloadNormalized", d.RloadNormalized);
  w.Real("FstopNormalized", d.FstopNormalized);
  w.Real("StopbandEdge", d.StopbandEdge);
  w.Int("Stages", d.Stages);
  w.Int("ValueMode", d.ValueMode);
  w.Real("Fstart", d.Fstart);
  w.Real("Fstop", d.Fstop);
  w.Int("NrIntervals", d.NrIntervals);
  w.Real("MaxDelay", d.MaxDelay);
  // The part models only where one is set, so that an ideal design's
  // object is what it always was.
  if (d.InductorQLaw != QLaw::Constant || d.CapacitorQ != kInfiniteQcap ||
      d.WindingCapacitance != 0 || d.CapacitorEsl != 0) {
    w.Text("QLaw", FactsOf(d.InductorQLaw).word);
    w.Real("CapacitorQ", d.CapacitorQ);
    w.Real("WindingCapacitance", d.WindingCapacitance);
    w.Real("CapacitorEsl", d.CapacitorEsl);
  }

  w.Array<float>("G", d.G);
  w.Array<float>("H", d.H);
  const size_t parts = static_cast<size_t>(ReportedComponentCount(d));
  w.Array<int16_t>("ElementType", std::span<const int16_t>(d.ElementType.data(), parts + 1));
  const std::pair<const char*, const ComponentArray*> components[] = {
      {"L", &d.L}, {"C", &d.C}, {"Lstd", &d.Lstd}, {"Cstd", &d.Cstd}};
  for (const auto& [name, values] : components)
    w.Array<float>(name, std::span<const float>(values->data(), parts));
  // Each inductor's self-resonant frequency, Hz, index 0 first as in L.
  if (d.WindingCapacitance != 0) w.Array<float>("SelfResonance", InductorResonances(d));

  size_t points = d.NrIntervals < 0 ? 0 : std::min<size_t>(d.NrIntervals + 1, kSweepSlots);
  const std::pair<const char*, const SweepArray*> sweep[] = {{"Freq", &d.Freq},
                                                             {"Transmission", &d.Transmission},
                                                             {"Reflection", &d.Reflection},
                                                             {"VSWR", &d.VSWR},
                                                             {"Delay", &d.Delay},
                                                             {"Phase", &d.Phase}};
  for (const auto& [name, values] : sweep) {
    w.Array<float>(name, std::span<const float>(values->data(), points));
  }

  std::vector<std::string> l, c;
  int stages = std::clamp<int>(d.Stages, 0, kMaxPositions);
  for (int j = 1; j <= stages; ++j) {
    l.push_back(FormatInductance(d.L[j]));
    c.push_back(FormatCapacitance(d.C[j]));
  }
  w.Raw("texts", "{\"L\": " + TextArray(l) + ", \"C\": " + TextArray(c) +
                     ", \"Width\": " + JsonString(FormatFrequency(d.Width)) +
                     ", \"Rsource\": " + JsonString(FormatValue(d.Rsource)) +
                     ", \"Rload\": " + JsonString(FormatValue(d.Rload)) + "}");
  w.End();
}

}  // namespace drenik::cli
