#include "pages/stress_page.h"

#include <algorithm>
#include <cmath>

#include "core/formatters.h"
#include "pages/design_heading.h"
#include "stress/ratings.h"
#include "stress/stress_text.h"

namespace drenik {
namespace {

// The window's controls take the left column; the table starts right of it.
constexpr float kTableLeft = 3600, kPaperLeft = 400;
constexpr float kTop = 300, kBottom = 8700;
// Columns from the table's left edge: part, value, V RMS, V peak, rating,
// its frequency, I RMS, its frequency, dissipation, its frequency.
constexpr float kColumns[] = {0, 500, 1450, 2150, 2850, 3600, 4650, 5500, 6400, 7100};

const char* StageName(int16_t valueMode) {
  switch (valueMode) {
    case 1:
      return "exact values";
    case 3:
      return "5% L values";
    case kChosenPartsMode:
      return "chosen parts";
    default:
      return "5% C values";
  }
}

}  // namespace

StressPage::StressPage(Platform& platform, Canvas& canvas)
    : platform_(platform), canvas_(canvas), controls_(platform), caption_("Part stress") {
  host_ = &noHost_;
  controls_.AddFrame("frmStress", "Transmit");
  controls_.AddLabel("lblPower", "Power, W");
  controls_.AddTextBox("txtPower", "100").SetChangeHandler([this] { Recompute(); });
  controls_.AddLabel("lblVswr", "Load VSWR");
  controls_.AddTextBox("txtVswr", "1").SetChangeHandler([this] { Recompute(); });
  controls_.AddLabel("lblNote",
                     "Largest values over the passband; with a VSWR above 1, over every "
                     "load of that VSWR at every phase.");
  controls_.AddButton("cmdPrint", "Print").SetHandler([this] { OnPrint(); });
  controls_.AddButton("cmdClose", "Close").SetHandler([this] { OnClose(); });
}

void StressPage::Load(const DesignRecord& d) {
  design_ = d;
  loaded_ = true;
  caption_ = d.ProgramTitle.empty() ? "Part stress" : d.ProgramTitle + " - Part stress";
  Recompute();
}

void StressPage::OnPrint() {
  controls_.RunEvent([this] {
    if (!host_->Print()) platform_.ShowMessage("Printing is available in the designer window.");
  });
}

void StressPage::OnClose() {
  controls_.RunEvent([this] { host_->Close(); });
}

// A box that does not hold a usable number leaves the table empty and says
// which box; the numbers are read as every box of the program reads them.
void StressPage::Recompute() {
  if (!loaded_) return;
  const auto* power = dynamic_cast<const TextBox*>(controls_.Find("txtPower"));
  const auto* vswr = dynamic_cast<const TextBox*>(controls_.Find("txtVswr"));
  std::string powerText = power->Text(), vswrText = vswr->Text();
  request_ = StressRequest{};
  request_.power = CheckEntry(powerText);
  request_.vswr = CheckEntry(vswrText);
  problem_.clear();
  if (!(request_.power > 0)) problem_ = "Power: a number of watts above 0, such as 100.";
  if (problem_.empty() && !(request_.vswr >= 1))
    problem_ = "Load VSWR: 1 for a matched load, or more, such as 2.";
  result_ = problem_.empty() ? AnalyzeStress(design_, request_) : StressResult{};
  if (problem_.empty() && !result_.report.Ok()) problem_ = result_.report.fault;
  canvas_.Clear();
  Draw(canvas_, kTableLeft);
}

RecordingCanvas StressPage::PaperDrawing() const {
  RecordingCanvas paper;
  Draw(paper, kPaperLeft);
  return paper;
}

void StressPage::Draw(Canvas& canvas, float left) const {
  auto print = [&](float x, float y, const std::string& text, int32_t color = kBlack) {
    canvas.SetForeColor(color);
    canvas.SetTextPosition(x, y);
    canvas.Print(text);
  };
  canvas.SetFont("Arial", 10, true);
  print(left, kTop, "Part stress: " + DesignHeading(design_) + ", " + StageName(design_.ValueMode));
  canvas.SetFont("Arial", 8, false);
  if (!problem_.empty()) {
    print(left, kTop + 400, problem_, kRed);
    return;
  }
  print(left, kTop + 330, StressConditions(result_, request_, design_.Rsource));
  print(left, kTop + 560, "Largest values " + BandsText(result_));

  // Rows share what is left of the page; a long ladder's rows are smaller.
  const size_t rows = result_.parts.size();
  const float top = kTop + 1000;
  const float pitch =
      std::clamp((kBottom - 600 - top) / static_cast<float>(rows + 1), 120.f, 240.f);
  canvas.SetFont("Arial", std::min(8.f, pitch / 25), true);
  const char* heads[] = {"Part", "Value",    "V RMS", "V peak", "Rating",
                         "at",   "I RMS, A", "at",    "P, W",   "at"};
  for (size_t c = 0; c < std::size(heads); ++c) print(left + kColumns[c], top, heads[c]);
  canvas.SetFont("Arial", std::min(8.f, pitch / 25), false);

  // Each column's worst in red: the largest voltage, current and
  // dissipation of any part.
  double vMax = 0, iMax = 0, pMax = 0;
  for (const PartStress& s : result_.parts)
    vMax = std::max(vMax, s.v.value), iMax = std::max(iMax, s.i.value),
    pMax = std::max(pMax, s.p.value);
  float y = top + pitch;
  for (const PartStress& s : result_.parts) {
    const bool capacitor = s.part.type == PartType::Capacitor;
    const int32_t v = s.v.value == vMax ? kRed : kBlack, i = s.i.value == iMax ? kRed : kBlack,
                  p = s.p.value == pMax ? kRed : kBlack;
    print(left + kColumns[0], y, s.name);
    print(left + kColumns[1], y, PartValueText(s));
    print(left + kColumns[2], y, VoltsText(s.v.value), v);
    print(left + kColumns[3], y, VoltsText(s.VPeak()), v);
    print(left + kColumns[4], y, capacitor ? RatingText(s.VPeak()) : "", v);
    print(left + kColumns[5], y, HertzText(s.v.f));
    print(left + kColumns[6], y, AmpsText(s.i.value), i);
    print(left + kColumns[7], y, HertzText(s.i.f));
    print(left + kColumns[8], y, WattsText(s.p.value), p);
    print(left + kColumns[9], y, HertzText(s.p.f));
    y += pitch;
  }
  canvas.SetFont("Arial", 8, false);
  print(left, y + 150, TotalsText(result_));
  print(left, y + 380, LossText(result_));
  print(left, y + 610,
        "Rating: a capacitor's DC working voltage, at least " +
            std::to_string(static_cast<int>(kVoltageDerating)) +
            " times its peak voltage, at the next standard rating.");
  canvas.SetForeColor(kBlack);
}

}  // namespace drenik
