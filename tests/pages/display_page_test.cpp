// The display page with its export buttons, and the LTspice page.
#include "pages/display_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "analysis/part_resonances.h"
#include "analysis/sweep.h"
#include "app_fixture.h"
#include "core/formatters.h"
#include "export/formats.h"
#include "pages/part_model_entries.h"
#include "pages/spice_page.h"
#include "parts/parts_list.h"
#include "plot/frequency_axis.h"
#include "plot/overlay.h"
#include "plot/response_plot.h"
#include "support/temp_folder.h"
#include "synthesis/denormalize.h"
#include "synthesis/design_edges.h"
#include "synthesis/stray_warning.h"
#include "tolerance/tolerance.h"

namespace drenik::testing {
namespace {

class DisplayPageTest : public AppTest {
 protected:
  // Design page with its defaults, then "Display responses".
  DisplayPage& OpenDisplay() {
    StartDesign();
    Display().SetAnalysisObserver([this](int mode) { modes.push_back(mode); });
    Design().Button("cmdDesign").Click();
    return Display();
  }
  const RecordingCanvas& Page() { return App().DisplayCanvas(); }
  std::vector<int> modes;
};

TEST_F(DisplayPageTest, LoadDrawsStandardValuesTheButtonsRedrawAndUpThenDownIsNotARoundTrip) {
  DisplayPage& page = OpenDisplay();
  EXPECT_EQ(modes, (std::vector<int>{1, 2}));
  EXPECT_TRUE(D().InductorMode == 0 && D().ValueMode == 2);
  EXPECT_TRUE(Shows("Bandwidth: " + FormatFrequency(D().Width), 9000, 2700));
  EXPECT_TRUE(Shows("Cursor on plot", 500, 6100));

  // The inductor toggle shows 5% L values, then goes back.
  modes.clear();
  page.OnInductors();
  EXPECT_EQ(modes, std::vector<int>{3});
  EXPECT_TRUE(Shows("5% L values", 800, 4500) && Shows("5% L values", 800, 5600));
  EXPECT_EQ(Page().Ops().back().color, 8947967);
  EXPECT_EQ(Page().ForeColor(), kBlack);
  page.OnInductors();
  EXPECT_EQ(D().InductorMode, 0);
  EXPECT_EQ(modes, (std::vector<int>{3, 1, 2}));

  page.OnVswr();
  EXPECT_EQ(D().ShowVSWR, 1);
  page.OnVswr();
  page.OnTime();
  EXPECT_TRUE(D().ShowDelay == 1 && D().ShowVSWR == 0);
  EXPECT_EQ(modes, (std::vector<int>{3, 1, 2, 1, 2, 1, 2, 1, 2}));

  // The readout follows the mouse until it reaches the plot's edge.
  page.OnMouseMove(5500, 6000);
  DataReadout r = ComputeReadout(D(), 5500, 6000);
  EXPECT_TRUE(Shows(r.frequency, 800, 6200) && Shows(r.vswr, 800, 7700));
  EXPECT_TRUE(Shows("Frequency:", 500, 6000) && Shows("Env. Delay:", 500, 8000));
  EXPECT_FALSE(Shows("Cursor on plot", 500, 6100));
  page.OnMouseMove(3000, 6000);  // on the edge: off the plot
  EXPECT_TRUE(Shows("Cursor on plot", 500, 6100));
  EXPECT_FALSE(Shows("Frequency:", 500, 6000));

  // Up then Down: 1.01 and 0.99 are not reciprocal, a round trip loses 0.01%.
  float start = D().Width;
  modes.clear();
  page.OnUp();
  EXPECT_EQ(modes, (std::vector<int>{1, 2, 3}));
  page.OnDown();
  EXPECT_NEAR(D().Width / start, 0.9999, 1e-6);
  EXPECT_EQ(D().ValueMode, 3);
  EXPECT_TRUE(Shows("Bandwidth: " + FormatFrequency(D().Width), 9000, 2700));
  page.OnExit();  // saves the session
  EXPECT_TRUE(platform.ended && ReadSession().find("\"Cinlowpass\"") != std::string::npos);
}

// Only strictly inside the plot reads values.
// A winding capacitance that resonates the inductors inside the sweep is
// told in one line; ideal parts leave the page as it was.
// A band moves whole, centre and width together, and stops at the top of
// the range the design page's boxes take.
TEST_F(DisplayPageTest, UpAndDownMoveABandWholeWithinTheBoxesRange) {
  DesignPage& page = StartDesign();
  page.Box("txtBandwidth").Type("300k");
  page.Option("optCinbandpass").Click();
  page.Button("cmdDesign").Click();
  const float center = D().Center, width = D().Width;
  Display().Controls().FindButton("cmdUp")->Click();
  EXPECT_TRUE(D().Center == float(center * 1.01) && D().Width == float(width * 1.01));
  EXPECT_TRUE(Shows("f0 7.2215MHz, f1 7.0716MHz, f2 7.3746MHz"));
  D().Center = 9.95e9f, D().Width = 1e9f;
  Display().Controls().FindButton("cmdUp")->Click();
  EXPECT_EQ(D().Center, 1e10f);
  EXPECT_NEAR(D().Width, 1e9 * 1e10 / 9.95e9, 1e3);
}

// A third-order elliptic bandpass's own sweep reaches past its far stop
// edges, so its default mask checks both skirts. "Sweep" widens it about the
// centre (an empty box goes back; k of 1 changes nothing, with a message),
// keeps the stages shown, and judges the band at no fewer points: the chosen
// parts and the mask's passband stay as they were. A lowpass sweeps as ever.
TEST_F(DisplayPageTest, SweepWidensABandAboutItsCentreAndJudgesItAsBefore) {
  DesignPage& design = StartDesign();
  design.Button("cmdDesign").Click();
  EXPECT_FALSE(Display().Controls().FindButton("cmdSweep")->Enabled());
  Display().Controls().FindButton("cmdDesign")->Click();
  for (const char* option : {"optCauer", "optOrder3", "optAstop60", "opt01", "optCinbandpass"})
    design.Option(option).Click();
  design.Box("txtBandwidth").Type("300k");
  design.Button("cmdDesign").Click();
  const DesignEdges e = EdgesOf(D());
  EXPECT_TRUE(D().Fstart < e.stopLow && D().Fstop > e.stopHigh) << D().Fstop;
  Display().OnChosenParts();
  const PartsChoice chosen = *Display().ChosenParts();
  const Mask own = DefaultMask(ToleranceDesignOf(D()));  // of the chosen parts
  EXPECT_EQ(own.stops.size(), 2u);

  std::string asked;
  App().SetSweepService([&](SweepEntry& entry) {
    EXPECT_EQ(entry.center, D().Center);
    entry.span = asked;
    return true;
  });
  auto sweep = [&](const char* span) {
    asked = span;
    Display().Controls().FindButton("cmdSweep")->Click();
  };
  sweep("3");
  EXPECT_TRUE(D().Fstart == float(D().Center / 3) && D().Fstop == float(D().Center * 3));
  ASSERT_TRUE(Display().ChosenParts());
  EXPECT_EQ(Display().ChosenParts()->chosen.returnLoss, chosen.chosen.returnLoss);
  const Mask wide = DefaultMask(ToleranceDesignOf(D()));
  // The passband as before; the skirts judged further out, never shallower.
  EXPECT_TRUE(wide.passRl == own.passRl && wide.stops[0].depth <= own.stops[0].depth &&
              wide.stops[1].depth <= own.stops[1].depth);
  sweep("1");
  EXPECT_TRUE(platform.messages.size() == 1u && D().SweepSpan == 3);
  sweep(" ");
  EXPECT_TRUE(D().Fstart < e.stopLow && D().Fstart > D().Center / 3);
}

TEST_F(DisplayPageTest, WarnsOfASelfResonanceInsideTheSweep) {
  StartDesign();
  D().WindingCapacitance = 40e-12f;  // with about 2.6 uH: near 15.6 MHz, below Fstop 21 MHz
  Design().Button("cmdDesign").Click();
  const std::vector<PartResonance> r = PartResonances(D());
  ASSERT_EQ(r.size(), 2u);
  const std::string f = TrimBlanks(FormatFrequency(r[0].hertz));
  EXPECT_TRUE(
      Shows("Self-resonance inside the sweep: L2 at " + f + ", L4 at " + f + ".", 2400, 8340));
  D().WindingCapacitance = 0;
  Display().Load();
  for (const DrawOp& op : Page().Ops())
    EXPECT_TRUE(op.kind != DrawOp::Kind::Text || op.text.find("resonance") == std::string::npos);
  // Without one, the line warns of capacitors that the board's strays
  // swamp: the 2 m band on 170 nH resonators.
  Display().OnChangeDesign();
  Design().Option("optCoupledbandpass").Click();
  Design().Box("txtCenter").Type("146M");
  Design().Box("txtBandwidth").Type("4M");
  Design().Box("txtResonatorL").Type("170n");
  Design().Button("cmdDesign").Click();
  EXPECT_TRUE(StrayWarning(D()).starts_with("C5 0.12pF and 3 more"));
  EXPECT_TRUE(Shows(StrayWarning(D()), 2400, 8340));

  // A band design's series branches and tanks (codes 5 and 8) carry real
  // inductors, which resonate too; elsewhere the kernel takes them as wires.
  DesignRecord band;
  band.Stages = 2, band.ElementType = {0, 5, 8}, band.L = {0, 1e-6f, 2e-6f};
  band.C = {0, 1e-10f, 1e-10f}, band.WindingCapacitance = 1e-12f;
  EXPECT_TRUE(PartResonances(band).empty());
  band.Center = 7e6f;
  ASSERT_EQ(PartResonances(band).size(), 2u);
  EXPECT_NEAR(PartResonances(band)[1].hertz, 1 / (2 * M_PI * std::sqrt(2e-18)), 1e3);
}

TEST(Readout, InsideThePlotReadsSignedTextsWithUnits) {
  DesignRecord d;
  d.NrIntervals = 1000;
  for (int i = 0; i <= 1000; ++i) {
    d.Freq[i] = 1e6f + 1000.0f * static_cast<float>(i);
    d.VSWR[i] = 1.5f;
  }
  for (auto [x, y] : {std::pair{3000.f, 6000.f}, {5000, 4000}, {8000, 6000}, {5000, 8000}})
    EXPECT_FALSE(ComputeReadout(d, x, y).onPlot) << x << " " << y;
  EXPECT_TRUE(ComputeReadout(d, 3000.5f, 4000.5f).onPlot);
  EXPECT_EQ(ComputeReadout(d, 3000.5f, 6000).index, 0);
  EXPECT_EQ(ComputeReadout(d, 5500, 6000).index, 500);  // 0.5 * 1001 = 500.5
  EXPECT_EQ(ComputeReadout(d, 7999.99f, 6000).index, 1000);

  d.Transmission[500] = 0.2f;  // a gain reads as a loss as well
  d.Reflection[500] = -23.5f;
  d.VSWR[500] = 3.7f;
  d.Delay[500] = -1.5e-7f;
  DataReadout r = ComputeReadout(d, 5500, 6000);
  std::string f = FormatFrequency(d.Freq[500]);
  f.erase(0, f.find_first_not_of(' '));
  f.erase(f.find_last_not_of(' ') + 1);
  EXPECT_EQ(r.frequency, f + "Hz");
  EXPECT_EQ(r.transmission, "-0.2dB");
  EXPECT_EQ(r.reflection, "-23.5dB:");
  EXPECT_EQ(r.vswr, ">" + FormatValue(2.4f) + ":1");
  EXPECT_EQ(r.delay, FormatPrefixed(1.5e-7f) + "s");
  d.VSWR[500] = 2.4f;  // exactly the limit reads as "more than"
  EXPECT_EQ(ComputeReadout(d, 5500, 6000).vswr, ">" + FormatValue(2.4f) + ":1");
  d.VSWR[500] = 1.5f;
  EXPECT_EQ(ComputeReadout(d, 5500, 6000).vswr, FormatValue(1.5f) + ":1");
}

TEST_F(DisplayPageTest, ExportHooksAskForFilesDrawOverlaysAndReachTheApplication) {
  DisplayPage& page = OpenDisplay();
  for (const char* format : {"lct", "cir", "s2p", "csv"}) page.OnExport(*FindExportFormat(format));
  ASSERT_EQ(platform.dialogs.size(), 4u);
  EXPECT_EQ(platform.dialogs[1].proposedName + platform.dialogs[2].proposedName +
                platform.dialogs[3].proposedName,
            "Default.cirDefault.s2pDefault.csv");
  ASSERT_EQ(platform.messages.size(), 1u);  // only the Pallis file says so
  EXPECT_EQ(platform.messages[0].text, "We did not write an Pallis file.");
  EXPECT_TRUE(D().FileName.empty() && std::filesystem::is_empty(folder_));

  platform.dialogAnswer = (folder_ / "a.LCT").string();
  page.OnExport(*FindExportFormat("lct"));
  EXPECT_EQ(D().FileName, platform.dialogAnswer);
  platform.dialogAnswer = (folder_ / "a.s2p").string();
  page.OnExport(*FindExportFormat("s2p"));
  EXPECT_EQ(platform.dialogs[5].proposedName, platform.dialogAnswer);
  EXPECT_GT(std::filesystem::file_size(platform.dialogAnswer), 0u);
  EXPECT_EQ(platform.messages.size(), 1u);

  // The overlay is drawn over the page until a file is missing.
  platform.messages.clear();
  auto magenta = [&] {
    return std::ranges::count_if(Page().Ops(), [](const DrawOp& o) {
      return o.kind == DrawOp::Kind::Point && o.color == kOverlayColor;
    });
  };
  std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::current_path(folder_);
  page.OnSaveOverlay();
  page.OnGetOverlay();
  long all = magenta();
  std::filesystem::remove(folder_ / "Data.S11");
  page.OnGetOverlay();
  long onlyS21 = magenta() - all;
  std::filesystem::current_path(previous);
  EXPECT_TRUE(all == 3 * 1001 && onlyS21 == 1001) << all << " " << onlyS21;
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].title + ": " + platform.messages[0].text,
            "File Test: File  is not available.");

  bool shown = false;
  App().SetSpiceObserver([&](SpicePage& spice) { shown = spice.Visible(); });
  page.OnExport(*FindExportFormat("asc"));
  EXPECT_TRUE(shown);

  page.OnPrint();  // no print service: a message
  EXPECT_EQ(platform.messages.size(), 2u);
  int prints = 0;
  App().SetPrintService([&] { ++prints; });
  page.OnPrint();
  EXPECT_TRUE(prints == 1 && platform.messages.size() == 2u);
}

TEST(SpicePage, TextsProposedNamesAndDrawing) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d;
  d.Qind = 1e6f;
  d.SchematicWidth = 10;
  d.FileName = folder / "x.LCT";
  SpicePage page(d, platform);
  EXPECT_EQ(SpicePage::ProposedName(""), "Default.ASC");
  EXPECT_EQ(SpicePage::ProposedName("/home/u/filter.LCT"), "/home/u/filter.ASC");
  EXPECT_EQ(SpicePage::ProposedName("ab"), ".ASC");

  page.cmdDraw_Click();  // cancelled
  ASSERT_EQ(platform.dialogs.size(), 1u);
  EXPECT_EQ(platform.dialogs[0].filter, "LTspice files (*.ASC) | *.ASC");
  EXPECT_EQ(platform.dialogs[0].proposedName, folder / "x.ASC");
  EXPECT_EQ(d.SchematicWidth, 800);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "We could not write the LTspice file");

  platform.dialogAnswer = folder / "y.ASC";
  page.cmdDraw_Click();
  EXPECT_EQ(platform.dialogs[1].proposedName, "Default.ASC");  // the cancel emptied the name
  EXPECT_EQ(d.FileName, folder / "y.ASC");
  EXPECT_EQ(CrLfLines(d.FileName).at(0), "Version 4");
  EXPECT_EQ(platform.messages.size(), 1u);
  page.cmdExit_Click();
  EXPECT_FALSE(page.Visible());
  EXPECT_EQ(platform.dialogs.size(), 2u);
}

// The chosen-parts stage: the host's choices, drawn after every redraw until
// the page loads again, the record and the readout holding its own analysis,
// and its parts list saved through the file dialog.
TEST_F(DisplayPageTest, ChosenPartsFollowEveryRedrawUntilTheNextLoadAndSaveTheirList) {
  DisplayPage& page = OpenDisplay();
  int asked = 0;
  App().SetPartsRequestService([&](PartsRequest& r, const std::string&) {
    r = {ESeries::E12, std::nullopt, true};
    return ++asked > 1;  // the first dialog is cancelled
  });
  modes.clear();
  page.OnChosenParts();
  EXPECT_TRUE(modes.empty() && !page.ChosenParts());
  page.OnChosenParts();
  EXPECT_EQ(modes, std::vector<int>{4});
  ASSERT_TRUE(page.ChosenParts());
  EXPECT_TRUE(page.GetPartsRequest().pairs &&
              page.ChosenParts()->request.capacitors == ESeries::E12);
  EXPECT_TRUE(Shows("Chosen parts", 800, 4700) && Shows("Chosen parts", 800, 5800));
  const PositionParts& first = page.ChosenParts()->positions[0];
  EXPECT_TRUE(std::ranges::any_of(Page().Ops(), [&](const DrawOp& op) {
    return op.text == FormatCapacitance(first.C) && op.color == kChosenTransmissionColor;
  }));
  DesignRecord analysed = D();
  ASSERT_TRUE(AnalyzeSweep(analysed).Ok());
  EXPECT_TRUE(D().C[1] == first.C && D().ValueMode == kChosenPartsMode);
  EXPECT_TRUE(analysed.Transmission == D().Transmission && analysed.Reflection == D().Reflection);

  // A redraw ends with the stage again, for the new width, without asking.
  modes.clear();
  page.OnUp();
  EXPECT_EQ(modes, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(asked, 2);
  DesignRecord exact = D();
  ASSERT_TRUE(Denormalize(exact).Ok());
  EXPECT_EQ(page.ChosenParts()->positions[0].exactC, exact.C[1]);

  platform.dialogAnswer = (folder_ / "parts.csv").string();
  page.OnPartsList();
  EXPECT_EQ(platform.dialogs.back().title, "Save parts list");
  EXPECT_TRUE(ReadWhole(platform.dialogAnswer).starts_with(kPartsListHeader));

  // A new load hides the stage; the parts list then draws it first.
  modes.clear();
  page.Load();
  EXPECT_TRUE(!page.ChosenParts() && modes == (std::vector<int>{1, 2}));
  page.OnPartsList();
  EXPECT_EQ(modes.back(), kChosenPartsMode);
  EXPECT_EQ(platform.dialogs.size(), 2u);

  // Another run with other parts replaces the curves at once: one curve of
  // each colour, never the last run's beside it. E6 parts give stopband
  // away: the dialog comes back with the line that says so, and its Cancel
  // keeps them.
  std::vector<std::string> notes;
  App().SetPartsRequestService([&](PartsRequest& r, const std::string& note) {
    r = {ESeries::E6, ESeries::E6, false};
    notes.push_back(note);
    return note.empty();
  });
  page.OnChosenParts();
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_TRUE(notes[0].empty() && notes[1] == page.ChosenParts()->note);
  EXPECT_TRUE(notes[1].starts_with("E6 capacitors and E6 inductors cannot keep both")) << notes[1];
  for (int32_t color : {kChosenTransmissionColor, kChosenReflectionColor})
    EXPECT_LE(std::ranges::count_if(Page().Ops(),
                                    [&](const DrawOp& op) {
                                      return op.kind == DrawOp::Kind::Line && op.color == color &&
                                             op.x1 >= kPlotLeft && op.y1 >= kPlotTop &&
                                             op.y1 <= kPlotBottom;
                                    }),
              std::ptrdiff_t{D().NrIntervals} + 1);
}

// "Part models": Cancel and bad entries change nothing (each bad box named
// once); good ones redraw every stage shown with the models and list each
// inductor's self-resonance right of the schematic; ideal ones give back
// today's curves.
TEST_F(DisplayPageTest, PartModelsRedrawEveryStageAndNameBadEntries) {
  DisplayPage& page = OpenDisplay();
  const SweepArray ideal = D().Transmission;
  PartModelEntries answer{QLaw::Sqrt, "-5", "40p", "2n", CoreNamed("T50-2")};
  bool ok = false;
  App().SetPartModelsService([&](PartModelEntries& e) {
    e = answer;
    return ok;
  });
  modes.clear();
  page.OnPartModels();
  ok = true;
  answer.capacitorEsl = "nH";
  page.OnPartModels();
  ASSERT_EQ(platform.messages.size(), 1u);
  const std::string& why = platform.messages[0].text;
  EXPECT_TRUE(why.find("Capacitor Q: \"-5\"") != std::string::npos &&
              why.find("lead inductance: \"nH\"") != std::string::npos &&
              why.find("Winding") == std::string::npos)
      << why;
  EXPECT_TRUE(modes.empty() && D().InductorQLaw == QLaw::Constant && D().WindingCapacitance == 0 &&
              !page.GetPartsRequest().former);

  answer.capacitorQ = "1k";
  answer.capacitorEsl = "2n";
  page.OnPartModels();
  EXPECT_EQ(modes, (std::vector<int>{1, 2}));
  EXPECT_TRUE(D().InductorQLaw == QLaw::Sqrt && D().CapacitorQ == 1000 &&
              D().WindingCapacitance == 40e-12f && D().CapacitorEsl == 2e-9f);
  EXPECT_EQ(page.GetPartsRequest().former->Name(), "T50-2");
  EXPECT_NE(D().Transmission, ideal);
  const std::vector<float> srf = InductorResonances(D());
  EXPECT_TRUE(Shows("Self-resonance:", 9900, 950) &&
              Shows("L2  " + TrimBlanks(FormatFrequency(srf[2])), 9900, 1130) &&
              Shows("L4  " + TrimBlanks(FormatFrequency(srf[4])), 9900, 1310));
  const PartModelEntries shown = EntriesOf(D(), page.GetPartsRequest().former);
  EXPECT_TRUE(shown.capacitorQ == "1k" && shown.windingCapacitance == "40pF");

  // With the 5% L curve on, the whole retune sequence runs.
  page.OnInductors();
  modes.clear();
  answer = {QLaw::Constant, "inf", "", "", std::nullopt};
  page.OnPartModels();
  EXPECT_EQ(modes, (std::vector<int>{1, 2, 3}));
  page.OnInductors();
  EXPECT_EQ(D().Transmission, ideal);
}

// What the boxes take: "inf" in any case and empty boxes are the ideal parts,
// prefix letters and "," as the point read as elsewhere; a Q of 0, a
// negative value, text without a digit and an air core of no diameter are
// refused whole.
TEST(PartModelEntries, EmptyBoxesAreIdealAndARefusalChangesNothing) {
  DesignRecord d;
  std::optional<Former> former;
  EXPECT_EQ(ReadEntries({QLaw::Linear, " Inf ", "", "", std::nullopt}, d, former), "");
  EXPECT_TRUE(d.CapacitorQ == kInfiniteQcap && d.WindingCapacitance == 0 &&
              d.InductorQLaw == QLaw::Linear);
  EXPECT_EQ(ReadEntries({QLaw::Sqrt, "2,5k", "1.5p", "3n", std::nullopt}, d, former), "");
  EXPECT_TRUE(d.CapacitorQ == 2500 && d.WindingCapacitance == 1.5e-12f && d.CapacitorEsl == 3e-9f);
  for (PartModelEntries bad : {PartModelEntries{QLaw::Constant, "0", "", "", CoreNamed("T37-2")},
                               {QLaw::Constant, "", "-1p", "", std::nullopt},
                               {QLaw::Constant, "", "", "p", std::nullopt},
                               {QLaw::Constant, "", "", "", Former{nullptr, {0, 0.8}}}})
    EXPECT_NE(ReadEntries(bad, d, former), "") << bad.capacitorQ << bad.windingCapacitance;
  EXPECT_TRUE(d.InductorQLaw == QLaw::Sqrt && d.CapacitorQ == 2500 && !former);
}

}  // namespace
}  // namespace drenik::testing
