// The ladder as a KiCad 6 schematic (file version 20211123, which KiCad 6,
// 7 and 8 open), to start a board from: one symbol per inductor and
// capacitor, named as in the SPICE netlist (L2, C3) with the schematic's
// value text, laid out like the schematic strip: series parts along the
// upper rail, shunt parts down to the ground rail, the input and output as
// global labels "IN" and "OUT", ground as GND symbols at both ends of the
// ground rail. Every library symbol placed is embedded, drawn here.
//
// Everything stands on KiCad's 1.27 mm (50 mil) connection grid: the layout
// is worked out in grid steps. Wires meet only at their ends (a rail is
// split where a branch leaves it), and a junction marks every point where
// three or more wire ends and pins meet, so no connection depends on a wire
// end touching the middle of another wire. Each position is laid out from
// its element facts (arm, parts, joining), like the netlist: a part the
// netlist leaves out (a missing capacitor, a trap without its capacitor)
// is left out here, its arm open.

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "core/atomic_file.h"
#include "core/element_kinds.h"
#include "core/formatters.h"
#include "export/writable_parts.h"
#include "export/writers.h"
#include "synthesis/families.h"

namespace drenik {
namespace {

constexpr double kGrid = 1.27;        // mm
constexpr int kRail = 16;             // grid steps from the upper rail down to the ground rail
constexpr int kPinReach = 3;          // from a part's centre to each of its two pins
constexpr int kLeft = 20, kTop = 40;  // where the upper rail starts on the sheet

struct Point {
  int x, y;
  auto operator<=>(const Point&) const = default;
};

struct Part {
  char letter;  // 'L' or 'C'
  int position;
  Point centre;
  bool horizontal;
  std::string value;
};

// The drawing in grid steps.
struct Sheet {
  std::vector<std::pair<Point, Point>> wires;
  std::vector<Part> parts;
  std::vector<Point> grounds;
  Point in, out;
  int width = 0;

  void Wire(Point a, Point b) {
    if (a != b) wires.push_back({a, b});
  }
  // A part between a and b (in line, 2 kPinReach apart), wires to it from
  // `from` and on to `to`.
  void PartBetween(char letter, int k, Point from, Point a, Point b, Point to,
                   const std::string& value) {
    Wire(from, a);
    parts.push_back({letter, k, {(a.x + b.x) / 2, (a.y + b.y) / 2}, a.y == b.y, value});
    Wire(b, to);
  }
};

std::string Mm(int steps) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", steps * kGrid);
  std::string s = text;
  while (s.back() == '0') s.pop_back();
  if (s.back() == '.') s.pop_back();
  return s;
}

std::string At(Point p, int angle = 0) {
  return "(at " + Mm(p.x) + " " + Mm(p.y) + " " + std::to_string(angle) + ")";
}

// The positions' layout: x is the pen, the upper rail at y = kTop.
void LayOut(const DesignRecord& d, Sheet& s) {
  const int top = kTop, bottom = kTop + kRail;
  int x = kLeft;
  s.in = {x, top};
  s.grounds.push_back({x, bottom});
  const int stages = std::clamp<int>(d.Stages, 0, static_cast<int>(d.L.size()) - 1);
  for (int k = 1; k <= stages; ++k) {
    const ElementFacts* f = FactsOf(d.ElementType[k]);
    const std::string lText = TrimBlanks(FormatInductance(d.L[k]));
    const std::string cText = TrimBlanks(FormatCapacitance(d.C[k]));
    const bool hasC = f && f->hasC && d.C[k] != 0;
    int advance = 2;  // a position without a model is a wire
    if (f && Modelled(f, d.Center > 0)) {
      const bool series = f->arm == Arm::Series;
      const bool two = f->hasL && f->hasC && f->joining != Joining::Single;
      if (series && f->joining == Joining::InSeries) {
        // L then C along the rail; without its capacitor the arm is open.
        advance = 4 * kPinReach + 3;
        if (hasC) {
          s.PartBetween('L', k, {x, top}, {x + 1, top}, {x + 1 + 2 * kPinReach, top},
                        {x + 2 + 2 * kPinReach, top}, lText);
          s.PartBetween('C', k, {x + 2 + 2 * kPinReach, top}, {x + 2 + 2 * kPinReach, top},
                        {x + 2 + 4 * kPinReach, top}, {x + advance, top}, cText);
        }
      } else if (series && two) {
        // A tank: the inductor in the rail, the capacitor in a path under it.
        advance = 2 * kPinReach + 4;
        const int a = x + 2, b = a + 2 * kPinReach, under = top + 4;
        s.PartBetween('L', k, {x, top}, {a, top}, {b, top}, {x + advance, top}, lText);
        if (hasC) {
          s.Wire({a, top}, {a, under});
          s.PartBetween('C', k, {a, under}, {a, under}, {b, under}, {b, under}, cText);
          s.Wire({b, under}, {b, top});
        }
      } else if (series) {
        advance = 2 * kPinReach + 2;
        if (f->hasL || hasC)
          s.PartBetween(f->hasL ? 'L' : 'C', k, {x, top}, {x + 1, top},
                        {x + 1 + 2 * kPinReach, top}, {x + advance, top}, f->hasL ? lText : cText);
      } else {
        // Shunt: each path from the rail down to the ground rail, the rails
        // split where a path leaves them.
        std::vector<int> drops;
        auto drop = [&](int at) {
          drops.push_back(at);
          return at;
        };
        if (f->joining == Joining::InSeries) {
          advance = 6;
          if (hasC) {
            const int c = drop(x + 3);
            s.PartBetween('L', k, {c, top}, {c, top + 1}, {c, top + 1 + 2 * kPinReach},
                          {c, top + 2 + 2 * kPinReach}, lText);
            s.PartBetween('C', k, {c, top + 2 + 2 * kPinReach}, {c, top + 2 + 2 * kPinReach},
                          {c, top + 2 + 4 * kPinReach}, {c, bottom}, cText);
          }
        } else {
          advance = two ? 10 : 6;
          const int mid = top + kRail / 2;
          if (f->hasL) {
            const int c = drop(x + 3);
            s.PartBetween('L', k, {c, top}, {c, mid - kPinReach}, {c, mid + kPinReach}, {c, bottom},
                          lText);
          }
          if (hasC) {
            const int c = drop(x + (two ? 7 : 3));
            s.PartBetween('C', k, {c, top}, {c, mid - kPinReach}, {c, mid + kPinReach}, {c, bottom},
                          cText);
          }
        }
        int from = x;
        for (int at : drops) {
          s.Wire({from, top}, {at, top});
          s.Wire({from, bottom}, {at, bottom});
          from = at;
        }
        s.Wire({from, top}, {x + advance, top});
        s.Wire({from, bottom}, {x + advance, bottom});
        x += advance;
        continue;
      }
    } else {
      s.Wire({x, top}, {x + advance, top});
    }
    s.Wire({x, bottom}, {x + advance, bottom});
    x += advance;
  }
  s.out = {x, top};
  s.grounds.push_back({x, bottom});
  s.width = x + kLeft;
}

// Junctions where three or more wire ends and pins meet.
std::vector<Point> Junctions(const Sheet& s) {
  std::map<Point, int> ends;
  for (const auto& [a, b] : s.wires) ++ends[a], ++ends[b];
  for (const Part& p : s.parts) {
    const Point d = p.horizontal ? Point{kPinReach, 0} : Point{0, kPinReach};
    ++ends[{p.centre.x - d.x, p.centre.y - d.y}], ++ends[{p.centre.x + d.x, p.centre.y + d.y}];
  }
  for (const Point& g : s.grounds) ++ends[g];
  ++ends[s.grounds.front()];  // the power flag's pin
  std::vector<Point> out;
  for (const auto& [p, n] : ends)
    if (n >= 3) out.push_back(p);
  return out;
}

// --- The file ---

constexpr const char* kFont = "(effects (font (size 1.27 1.27)))";
constexpr const char* kHidden = "(effects (font (size 1.27 1.27)) hide)";
constexpr const char* kStroke = "(stroke (width 0) (type default) (color 0 0 0 0))";
constexpr const char* kThick = "(stroke (width 0.254) (type default) (color 0 0 0 0))";

class Writer {
 public:
  // Stable identifiers: the same design always writes the same file.
  std::string Uuid() {
    char text[40];
    std::snprintf(text, sizeof text, "d7e1c0de-0000-4000-8000-%012x", ++uuids_);
    return text;
  }
  void Add(const std::string& line) { text_ += line + "\n"; }
  std::string& Text() { return text_; }

 private:
  unsigned uuids_ = 0;
  std::string text_;
};

std::string Pin(const char* number, double y, int angle, double length) {
  char at[64];
  std::snprintf(at, sizeof at, "(at 0 %g %d) (length %g)", y, angle, length);
  return std::string("        (pin passive line ") + at + " (name \"" + number + "\" " + kFont +
         ") (number \"" + number + "\" " + kFont + "))";
}

std::string Property(const char* name, const std::string& value, int id, const std::string& at,
                     bool hidden = false) {
  return "    (property \"" + std::string(name) + "\" \"" + value + "\" (id " + std::to_string(id) +
         ") " + at + " " + (hidden ? kHidden : kFont) + ")";
}

// The embedded library: an inductor of three turns and a capacitor of two
// plates, each with pin 1 at the top and pin 2 at the bottom, 7.62 mm
// apart; the ground symbol's pin at its origin.
void Library(Writer& w) {
  w.Add("  (lib_symbols");
  const struct {
    const char* name;
    const char* prefix;
    double pinLength;
  } twoPins[] = {{"L", "L", 1.27}, {"C", "C", 2.794}};
  for (const auto& sym : twoPins) {
    w.Add(std::string("    (symbol \"Device:") + sym.name +
          "\" (pin_numbers hide) (pin_names (offset 0.254) hide) (in_bom yes) (on_board yes)");
    w.Add(Property("Reference", sym.prefix, 0, "(at 2.54 0 90)"));
    w.Add(Property("Value", sym.name, 1, "(at -2.54 0 90)"));
    w.Add(Property("Footprint", "", 2, "(at 0 0 0)", true));
    w.Add(Property("Datasheet", "~", 3, "(at 0 0 0)", true));
    w.Add(std::string("      (symbol \"") + sym.name + "_0_1\"");
    char line[160];
    if (sym.name[0] == 'L') {
      // Three turns from y = 2.54 down to -2.54, bulging to the right.
      const double turn = 5.08 / 3;
      for (int t = 0; t < 3; ++t) {
        const double y = 2.54 - t * turn;
        std::snprintf(line, sizeof line,
                      "        (arc (start 0 %.4f) (mid %.4f %.4f) (end 0 %.4f) ", y, turn / 2,
                      y - turn / 2, y - turn);
        w.Add(line + std::string(kStroke) + " (fill (type none)))");
      }
    } else {
      for (double y : {0.762, -0.762}) {
        std::snprintf(line, sizeof line, "        (polyline (pts (xy -2.032 %g) (xy 2.032 %g)) ", y,
                      y);
        w.Add(line + std::string(kThick) + " (fill (type none)))");
      }
    }
    w.Add("      )");
    w.Add(std::string("      (symbol \"") + sym.name + "_1_1\"");
    w.Add(Pin("1", 3.81, 270, sym.pinLength));
    w.Add(Pin("2", -3.81, 90, sym.pinLength));
    w.Add("      )");
    w.Add("    )");
  }
  w.Add("    (symbol \"power:GND\" (power) (pin_names (offset 0)) (in_bom yes) (on_board yes)");
  w.Add(Property("Reference", "#PWR", 0, "(at 0 -6.35 0)", true));
  w.Add(Property("Value", "GND", 1, "(at 0 -3.81 0)"));
  w.Add(Property("Footprint", "", 2, "(at 0 0 0)", true));
  w.Add(Property("Datasheet", "", 3, "(at 0 0 0)", true));
  w.Add("      (symbol \"GND_0_1\"");
  w.Add(
      "        (polyline (pts (xy 0 0) (xy 0 -1.27) (xy 1.27 -1.27) (xy 0 -2.54) (xy -1.27 "
      "-1.27) (xy 0 -1.27)) " +
      std::string(kStroke) + " (fill (type none)))");
  w.Add("      )");
  w.Add("      (symbol \"GND_1_1\"");
  w.Add(std::string("        (pin power_in line (at 0 0 270) (length 0) hide (name \"GND\" ") +
        kFont + ") (number \"1\" " + kFont + "))");
  w.Add("      )");
  w.Add("    )");
  // The flag that tells the electrical rules check that ground is driven
  // (by the source and load off the sheet).
  w.Add(
      "    (symbol \"power:PWR_FLAG\" (power) (pin_numbers hide) (pin_names (offset 0) hide) "
      "(in_bom yes) (on_board yes)");
  w.Add(Property("Reference", "#FLG", 0, "(at 0 1.905 0)", true));
  w.Add(Property("Value", "PWR_FLAG", 1, "(at 0 3.81 0)"));
  w.Add(Property("Footprint", "", 2, "(at 0 0 0)", true));
  w.Add(Property("Datasheet", "~", 3, "(at 0 0 0)", true));
  w.Add("      (symbol \"PWR_FLAG_0_0\"");
  w.Add(std::string("        (pin power_out line (at 0 0 90) (length 0) (name \"pwr\" ") + kFont +
        ") (number \"1\" " + kFont + "))");
  w.Add("      )");
  w.Add("      (symbol \"PWR_FLAG_0_1\"");
  w.Add(
      "        (polyline (pts (xy 0 0) (xy 0 1.27) (xy -1.016 1.905) (xy 0 2.54) (xy 1.016 "
      "1.905) (xy 0 1.27)) " +
      std::string(kStroke) + " (fill (type none)))");
  w.Add("      )");
  w.Add("    )");
  w.Add("  )");
}

// The smallest ISO sheet the ladder fits across.
const char* Paper(int widthSteps) {
  const double mm = widthSteps * kGrid;
  if (mm <= 297) return "A4";
  if (mm <= 420) return "A3";
  if (mm <= 594) return "A2";
  if (mm <= 841) return "A1";
  return "A0";
}

std::string Quoted(const std::string& text) {
  std::string out;
  for (char c : text) out += (c == '"' || c == '\\') ? std::string("\\") + c : std::string(1, c);
  return out;
}

}  // namespace

std::string KicadSchematicText(const DesignRecord& d) {
  Sheet s;
  LayOut(d, s);
  Writer w;
  w.Add("(kicad_sch (version 20211123) (generator drenik)");
  w.Add("  (uuid " + w.Uuid() + ")");
  w.Add(std::string("  (paper \"") + Paper(s.width) + "\")");
  const std::string title =
      std::string(FamilyName(d.Family)) + " order " + std::to_string(d.Order) + " " + d.Topology;
  w.Add("  (title_block (title \"" + Quoted(title) + "\") (comment 1 \"Source " +
        TrimBlanks(FormatValue(d.Rsource)) + " ohms, load " + TrimBlanks(FormatValue(d.Rload)) +
        " ohms\") (comment 2 \"" + Quoted(d.ProgramTitle + " " + d.Version) + "\"))");
  Library(w);

  for (const Point& j : Junctions(s))
    w.Add("  (junction (at " + Mm(j.x) + " " + Mm(j.y) + ") (diameter 0) (color 0 0 0 0) (uuid " +
          w.Uuid() + "))");
  for (const auto& [a, b] : s.wires)
    w.Add("  (wire (pts (xy " + Mm(a.x) + " " + Mm(a.y) + ") (xy " + Mm(b.x) + " " + Mm(b.y) +
          ")) " + kStroke + " (uuid " + w.Uuid() + "))");
  for (const auto& [name, p, angle, shape] :
       {std::tuple{"IN", s.in, 180, "input"}, std::tuple{"OUT", s.out, 0, "output"}})
    w.Add(std::string("  (global_label \"") + name + "\" (shape " + shape + ") " + At(p, angle) +
          " (effects (font (size 1.27 1.27)) (justify " + (angle ? "right" : "left") + ")) (uuid " +
          w.Uuid() + "))");

  struct Placed {
    std::string uuid, reference, value;
  };
  std::vector<Placed> placed;
  auto symbol = [&](const std::string& lib, Point at, int angle, const std::string& reference,
                    const std::string& value, bool power) {
    const std::string uuid = w.Uuid();
    w.Add("  (symbol (lib_id \"" + lib + "\") " + At(at, angle) +
          " (unit 1) (in_bom yes) (on_board yes)");
    w.Add("    (uuid " + uuid + ")");
    // The texts above a horizontal part, right of a vertical one. A field's
    // angle turns with its symbol: a turned part's texts are turned back.
    const Point ref = angle ? Point{at.x, at.y - 4} : Point{at.x + 3, at.y - 1};
    const Point val = angle ? Point{at.x, at.y - 2} : Point{at.x + 3, at.y + 1};
    const char* justify = angle ? "" : " (justify left)";
    auto field = [&](const char* name, const std::string& text, int id, Point p) {
      w.Add("    (property \"" + std::string(name) + "\" \"" + Quoted(text) + "\" (id " +
            std::to_string(id) + ") " + At(p, angle) + " (effects (font (size 1.27 1.27))" +
            justify + "))");
    };
    if (power) {
      // Ground's name under its symbol; the flag's is hidden.
      const int down = lib == "power:GND" ? 3 : -4;
      w.Add(Property("Reference", reference, 0, At({at.x, at.y + down + 2}), true));
      w.Add(Property("Value", value, 1, At({at.x, at.y + down}), down < 0));
    } else {
      field("Reference", reference, 0, ref);
      field("Value", value, 1, val);
    }
    w.Add(Property("Footprint", "", 2, At(at), true));
    w.Add(Property("Datasheet", power ? "" : "~", 3, At(at), true));
    if (power) {
      w.Add("    (pin \"1\" (uuid " + w.Uuid() + "))");
    } else {
      w.Add("    (pin \"1\" (uuid " + w.Uuid() + "))");
      w.Add("    (pin \"2\" (uuid " + w.Uuid() + "))");
    }
    w.Add("  )");
    placed.push_back({uuid, reference, value});
  };
  for (const Part& p : s.parts)
    symbol(std::string("Device:") + p.letter, p.centre, p.horizontal ? 90 : 0,
           p.letter + std::to_string(p.position), p.value, false);
  for (size_t g = 0; g < s.grounds.size(); ++g) {
    char ref[32];
    std::snprintf(ref, sizeof ref, "#PWR%02zu", g + 1);
    symbol("power:GND", s.grounds[g], 0, ref, "GND", true);
  }
  symbol("power:PWR_FLAG", s.grounds.front(), 0, "#FLG01", "PWR_FLAG", true);

  w.Add("  (sheet_instances (path \"/\" (page \"1\")))");
  w.Add("  (symbol_instances");
  for (const Placed& p : placed)
    w.Add("    (path \"/" + p.uuid + "\" (reference \"" + p.reference + "\") (unit 1) (value \"" +
          Quoted(p.value) + "\") (footprint \"\"))");
  w.Add("  )");
  w.Add(")");
  return w.Text();
}

bool WriteKicadSchematic(const DesignRecord& d, const std::string& path, Platform& platform) {
  constexpr const char* kFailure = "We could not write the KiCad schematic";
  if (!PartsWritable(d, platform, kFailure)) return false;
  AtomicFile file(path);
  file.Write(KicadSchematicText(d));
  if (file.Commit()) return true;
  platform.ShowMessage(kFailure);
  return false;
}

}  // namespace drenik
