// The LTspice schematic: a voltage generator with its source resistor, the
// ladder positions 1..Stages from left to right and the load resistor, on a
// grid of LTspice units. The pen is the record's X (advancing to the right)
// and Y (the upper rail; the ground rail lies 256 below it). Every number is
// written as its value text, run together with the words around it:
// "WIRE " with 0, 160, 0, 80 gives 'WIRE  0  160  0  80 '.
//
// The file replaces an old one only when it is complete (core/atomic_file.h).

#include <string>

#include "core/atomic_file.h"
#include "core/element_kinds.h"
#include "core/formatters.h"
#include "core/number_text.h"
#include "export/ltspice_file.h"
#include "export/writable_parts.h"
#include "export/writers.h"

namespace drenik {
namespace {

class AscWriter {
 public:
  AscWriter(DesignRecord& d, AtomicFile& file) : d_(d), file_(file) {}

  void Wire(float x1, float y1, float x2, float y2) {
    Line("WIRE " + N(x1) + N(y1) + N(x2) + N(y2));
  }

  void Inductor(float x, float y, const char* rotation, int k) {
    Line("SYMBOL ind " + N(x) + N(y) + rotation);
    if (std::string(rotation) == "R270") {
      Line("WINDOW 0 32 56 Vtop 0");
      Line("WINDOW 3 5 56 Vbottom 0");
    }
    Line("SYMATTR InstName L" + std::to_string(k));
    Line("SYMATTR Value " + FormatInductance(d_.L[k]));
    // The inductor's loss at the cutoff frequency (a band design's centre).
    const float at = d_.Center > 0 ? d_.Center : d_.Width;
    d_.GraphScale = static_cast<float>(2.0 * double{d_.Pi} * at * double{d_.L[k]} / d_.Qind);
    Line("SYMATTR SpiceLine Rser=" + ShortestText(d_.GraphScale));
  }

  void Capacitor(float x, float y, const char* rotation, int k) {
    Line("SYMBOL cap " + N(x) + N(y) + rotation);
    if (std::string(rotation) == "R90") {
      Line("WINDOW 0 0 32 Vbottom 0");
      Line("WINDOW 3 32 32 Vtop 0");
    }
    Line("SYMATTR InstName C" + std::to_string(k));
    Line("SYMATTR Value " + FormatCapacitance(d_.C[k]));
  }

  void StageLabel(float x, int k) {
    Line("TEXT " + N(x) + "368 Center 0 ;" + N(static_cast<float>(k)));
  }

  void Generator(const std::string& today) {
    const float x = d_.X, y = d_.Y;
    Line("SYMBOL voltage " + N(x) + N(y + 64) + "R0");
    Line("WINDOW 123 24 132 Left 0");
    Line("SYMATTR InstName Vgen");
    Line("SYMATTR Value AC 2");
    Line("SYMBOL res" + N(x + 208) + N(y - 16) + "R90");
    Line("WINDOW 0 0 56 Vbottom 0");
    Line("WINDOW 3 32 56 Vtop 0");
    Line("SYMATTR InstName RS");
    Line("SYMATTR Value" + N(d_.Rsource));
    Wire(x, y + 80, x, y);
    Wire(x, y, x + 112, y);
    Wire(x + 192, y, x + 224, y);
    Wire(x, y + 160, x, y + 256);
    Wire(x, y + 256, x + 224, y + 256);
    Wire(x, y + 256, x, y + 288);
    Line("FLAG " + N(x) + N(y + 288) + "0");
    Line("TEXT 0 432 Left 0  !.AC DEC 100 " + N(d_.Fstart) + N(d_.Fstop));
    Line(std::string("TEXT 0 464 Left 0  ;Drawn by Drenik Filter - ") + kLtspiceCredit);
    Line("TEXT 0 496 Left 0 " + today);
    d_.X = x + 224;
  }

  // One ladder position, as the kind table lays out its block; false (and
  // nothing written) for a code without a block.
  bool Element(int16_t code, int k) {
    const ElementFacts* facts = FactsOf(code);
    if (!facts || !facts->asc) return false;
    const AscBlock& block = *facts->asc;
    const float x = d_.X, y = d_.Y;
    for (const AscSymbol& symbol : block.symbols) {
      if (symbol.part == 'L')
        Inductor(x + symbol.dx, y + symbol.dy, symbol.rotation, k);
      else
        Capacitor(x + symbol.dx, y + symbol.dy, symbol.rotation, k);
    }
    for (const AscWire& w : block.wires) Wire(x + w.x1, y + w.y1, x + w.x2, y + w.y2);
    StageLabel(x + block.labelDx, k);
    d_.X = x + block.advance;
    return true;
  }

  void Load() {
    const float x = d_.X, y = d_.Y;
    Line("SYMBOL res " + N(x + 80) + N(y + 64) + "R0");
    Line("SYMATTR InstName RL");
    Line("SYMATTR Value" + N(d_.Rload));
    Wire(x, y, x + 96, y);
    Wire(x + 96, y, x + 96, y + 80);
    Wire(x, y + 256, x + 96, y + 256);
    // From the ground rail to the upper end of the load resistor, as the
    // format's users have always had it.
    Wire(x + 96, y + 256, x + 96, y + 80);
  }

  void Line(const std::string& text) { file_.Line(text); }

 private:
  static std::string N(float value) { return ValueText(value); }

  DesignRecord& d_;
  AtomicFile& file_;
};

std::string StageMessage(int k) {
  return "The element at stage " + std::to_string(k) +
         " was not written to the file.\n"
         "In addition to the input and output terminations,\n"
         "only capacitors and inductors in the filter are\n"
         "written to the schematic file.";
}

}  // namespace

bool WriteLtspiceFile(DesignRecord& d, const std::string& path, Platform& platform) {
  if (!PartsWritable(d, platform, kLtspiceFailure)) return false;
  AtomicFile file(path);
  if (!file.IsOpen() || d.Stages > kMaxPositions) {
    platform.ShowMessage(kLtspiceFailure);
    return false;
  }
  if (d.SchematicWidth < kMinSheetWidth) d.SchematicWidth = kMinSheetWidth;
  AscWriter asc(d, file);
  asc.Line("Version 4");
  asc.Line("SHEET 1 " + ValueText(d.SchematicWidth) + " 600");
  d.X = 0;
  d.Y = 80;
  asc.Generator(platform.TodayShort());
  for (d.K = 1; d.K <= d.Stages; ++d.K) {
    if (!asc.Element(d.ElementType[d.K], d.K)) platform.ShowMessage(StageMessage(d.K));
  }
  asc.Load();
  if (!file.Commit()) {
    platform.ShowMessage(kLtspiceFailure);
    return false;
  }
  return true;
}

}  // namespace drenik
