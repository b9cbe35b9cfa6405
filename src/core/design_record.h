#pragma once
// The one shared state of the designer: the user's choices, the normalized
// prototype, the real component values, the sweep and its results, and the
// display state. Every routine reads and writes these fields directly.
//
// Real fields are 32-bit floats on purpose: arithmetic is carried in double
// and stored back, so every stored value carries single-precision rounding
// exactly where the routines store it. Integers are 16-bit.

#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include "core/part_models.h"

namespace drenik {

// The orders of the design page's option buttons (and of the Bessel table).
inline constexpr int kLowestButtonOrder = 3;
inline constexpr int kHighestButtonOrder = 7;
// The highest order of any family's prototype.
inline constexpr int kMaxOrder = 15;
// Prototype positions run 1..20 (index 0 is never used by synthesis); G and
// H: indices 0..21.
inline constexpr int kPrototypePositions = 20;
inline constexpr int kPrototypeSlots = 22;
// Ladder positions run 1..31: the longest ladder is a coupled bandpass of
// the highest order, a series capacitor before and after each of its
// resonators. L, C, Lstd, Cstd: indices 0..31; ElementType one more, as G.
inline constexpr int kMaxPositions = 2 * kMaxOrder + 1;
inline constexpr int kComponentSlots = kMaxPositions + 1;
inline constexpr int kElementSlots = kComponentSlots + 1;
// The component arrays as far as reports list them: indices 0..20 (the
// ladders of the design page's orders fit in 20 positions), and on to the
// last position of a longer ladder.
inline constexpr int kReportedComponentSlots = 21;
// Sweep arrays: points 0..2000.
inline constexpr int kSweepSlots = 2001;
// Grid frequency list of the response plot: indices 0..200.
inline constexpr int kGridSlots = 201;

// The display page's fourth value stage: stock parts chosen to keep the
// response (ValueMode and the schematic's label row).
inline constexpr int16_t kChosenPartsMode = 4;

// The tolerance window's mask as the last-session file keeps it: its shape,
// then the window's thirteen mask boxes in order (DesignRecord::KeptMask).
inline constexpr int kKeptMaskFields = 14;

// Qind of 1e6 stands for an ideal inductor; Qcap of 1e7 for an ideal capacitor.
inline constexpr float kInfiniteQind = 1e6f;
inline constexpr float kInfiniteQcap = 1e7f;

using PrototypeArray = std::array<float, kPrototypeSlots>;
using ComponentArray = std::array<float, kComponentSlots>;
using SweepArray = std::array<float, kSweepSlots>;

struct DesignRecord {
  // --- Choices (design page, last-session file) ---
  int16_t Family = 0;     // family code (synthesis/families.h)
  int16_t Order = 0;      // 3..7 on the design page's buttons
  std::string Topology;   // exact topology string (synthesis/topologies.h)
  std::string CauerType;  // "A", "B" or "C"
  float Apass = 0;        // passband ripple, dB
  // A ripple and depth (dB) chosen beyond the design page's buttons, which
  // stand in for a selected button: the design takes them whatever another
  // family's prototype wrote into Apass and Astop meanwhile, and such a
  // ripple is not snapped onto the nearest button. 0 where a button holds it.
  float ChosenRipple = 0;
  float ChosenDepth = 0;
  float Astop = 0;             // stopband depth, dB (Cauer only)
  float Width = 0;             // cutoff ("bandwidth"), Hz; a band design's width f2 - f1
  float Center = 0;            // geometric centre sqrt(f1 f2) of a band design, Hz
  float ResonatorL = 0;        // inductance of every coupled resonator, H; 0 for the default
  float Rsource = 0;           // ohms
  float Rload = 0;             // ohms
  float Qind = 0;              // inductor Q; 1e6 = infinite
  float Qcap = kInfiniteQcap;  // capacitor Q; 1e7 = infinite
  // --- Real parts (display page's part models; the defaults are ideal) ---
  QLaw InductorQLaw = QLaw::Constant;  // how Qind changes away from the cutoff
  // The capacitors' Q (1e7 = infinite). The synthesis driver resets Qcap on
  // every design, so the user's setting is kept apart and the analysis reads
  // it wherever it is finite.
  float CapacitorQ = kInfiniteQcap;
  float WindingCapacitance = 0;  // F, across every inductor
  float CapacitorEsl = 0;        // H, in series with every capacitor
  float Rstandard = 0;           // reference resistance for reflection and VSWR, ohms
  // --- Setup of the chosen parts and the tolerance window, kept for the next
  // start: read into those pages at start, written back from them on Exit ---
  int16_t KeptCapacitorSeries = 0;  // E series by its count (12 for E12); 0: the chooser's own
  int16_t KeptInductorSeries = 0;   // E series by its count; 0: wound to value
  int16_t KeptPairs = 0;            // 1: two capacitors in parallel where that comes nearer
  std::string KeptWinding;          // whole turns on "T50-6", or "6:0.8" (form, wire mm); "": none
  // The mask's shape (0 none kept, 1 a lowpass's or highpass's, 2 a
  // bandpass's, 3 a bandstop's), then its boxes: the passband edge and the
  // second edge (Hz), the return loss and the loss (dB), and for each of
  // three stopbands its from, its to (Hz) and its depth (dB); 0 where a box
  // is empty.
  std::array<float, kKeptMaskFields> KeptMask{};

  // --- Normalized prototype (1-ohm source, 1 rad/s cutoff) ---
  PrototypeArray G{};
  PrototypeArray H{};  // partner values of resonant positions (Cauer, Zelmar)
  int16_t CauerFlag = 0;
  float FstopNormalized = 0;
  float RloadNormalized = 0;

  // --- Real components ---
  std::array<int16_t, kElementSlots> ElementType{};  // element codes (core/element_kinds.h)
  ComponentArray L{};                                // henries
  ComponentArray C{};                                // farads
  ComponentArray Lstd{};                             // nearest 5% inductances
  ComponentArray Cstd{};                             // nearest 5% capacitances
  // Whole turns of each position's inductor at the chosen-parts stage when
  // it is wound on a core or form; 0 otherwise.
  std::array<int16_t, kComponentSlots> Turns{};
  int16_t Stages = 0;
  float Omega = 0;  // 2 pi Width, rad/s

  // --- Constants and identity, set by the opening page ---
  float Pi = 0;
  float TwoPi = 0;
  std::string ProgramTitle;
  std::string Version;

  // --- Sweep settings and results ---
  float Fstart = 0;  // Hz
  float Fstop = 0;   // Hz
  // A band design's display sweep runs from Center / SweepSpan to Center *
  // SweepSpan when the user widened (or narrowed) it; 0 for the design's own.
  float SweepSpan = 0;
  int16_t NrIntervals = 0;
  SweepArray Freq{};          // Hz
  SweepArray Transmission{};  // dB (0 or negative)
  SweepArray Reflection{};    // dB (negative: return loss)
  SweepArray VSWR{};
  SweepArray Delay{};  // s
  SweepArray Phase{};  // degrees
  SweepArray Overlay{};
  float MaxDelay = 0;  // s

  // --- Response plot scales ---
  float GraphScale = 0;          // shared scratch value (plots, LTspice Rser)
  int16_t Divisions = 0;         // number of vertical divisions of the dB scales
  float TransmissionBottom = 0;  // dB at the bottom edge of the plot
  float ReflectionBottom = 0;    // dB at the bottom edge of the plot
  std::array<float, kGridSlots> GridFrequency{};
  int16_t GridCount = -1;  // index of the last grid frequency, -1 when none

  // --- Files ---
  std::string FileName;

  // --- Design page ---
  float StopbandEdge = 0;  // Hz

  // --- Display page ---
  int16_t ValueMode = 0;      // 1 exact, 2 5% C values, 3 5% L values, 4 chosen parts
  uint16_t InductorMode = 0;  // 0 exact/5% C curves, 1 5% L curve
  int16_t ShowVSWR = 0;
  int16_t ShowDelay = 0;

  // --- Schematic drawing ---
  float SchematicWidth = 0;  // drawing units
  float X = 0;               // pen position, drawing units
  float Y = 0;               // upper rail of the pen
  float LabelX = 0;          // where the next value text goes
  float LabelY = 0;
  float ResonantFrequency = 0;  // Hz, of the last resonant branch drawn

  // --- Shared loop counters (kept for the routines that expose them) ---
  int16_t I = 0;
  int16_t J = 0;
  int16_t K = 0;
};

// Pi and two pi as the record keeps them: 4 atan(1) and 8 atan(1), rounded
// to single precision.
inline void SetCircleConstants(DesignRecord& d) {
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
}

// How many entries of L, C, Lstd and Cstd a report lists, from index 0
// (ElementType one more).
inline int ReportedComponentCount(const DesignRecord& d) {
  const int stages = d.Stages < 0 ? 0 : (d.Stages > kMaxPositions ? kMaxPositions : d.Stages);
  return stages + 1 > kReportedComponentSlots ? stages + 1 : kReportedComponentSlots;
}

}  // namespace drenik
