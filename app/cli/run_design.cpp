#include "cli/run_design.h"

#include <algorithm>

#include "cli/number_reader.h"
#include "cli/tolerance_command.h"
#include "core/number_text.h"
#include "pages/application.h"
#include "pages/design_choices.h"
#include "pages/other_design.h"
#include "synth/mask_bands.h"
#include "synthesis/families.h"

namespace drenik::cli {

namespace {

void Fail(ConsolePlatform& platform) {
  if (!platform.messages.empty()) throw DesignFailure(platform.messages.front());
}

void Click(DesignPage& page, const std::string& option, const std::string& cliName,
           const DesignRecord& d) {
  if (!page.Option(option).Click()) {
    const FamilyInfo* family = FindFamily(d.Family);
    throw UsageError(cliName + ": not offered for the " + (family ? family->cliWord : "this") +
                     " family");
  }
}

void Type(DesignPage& page, const std::string& box, const std::string& text) {
  page.Box(box).Type(text);
}

const RippleChoice* RippleButton(double ripple) {
  for (const RippleChoice& r : kRippleChoices)
    if (static_cast<float>(ripple) == r.value) return &r;
  return nullptr;
}

const StopbandChoice* StopbandButton(double depth) {
  for (const StopbandChoice& s : kStopbandChoices)
    if (depth == s.value) return &s;
  return nullptr;
}

bool Beyond(const Choices& c) {
  return (c.order && (*c.order < kLowestButtonOrder || *c.order > kHighestButtonOrder)) ||
         (c.ripple && !RippleButton(*c.ripple)) || (c.stopband && !StopbandButton(*c.stopband));
}

// Values beyond the buttons go through the page's "Other order and ripple",
// the values left out as the page holds them.
void ChooseOther(DesignPage& page, const Choices& c, const DesignRecord& d) {
  OtherDesign o = OtherDesignOf(d);
  const std::pair<bool, const char*> offered[] = {
      {!c.order || (o.family && o.family->orderChoice), "--order"},
      {!c.ripple || (o.family && o.family->ripple.Offered()), "--ripple"},
      {!c.stopband || (o.family && o.family->depth.Offered()), "--stopband"}};
  for (const auto& [ok, option] : offered)
    if (!ok)
      throw UsageError(std::string(option) + ": not offered for the " +
                       (o.family ? o.family->cliWord : "this") + " family");
  if (c.order) o.order = *c.order;
  if (c.ripple) o.ripple = *c.ripple;
  if (c.stopband) o.depth = *c.stopband;
  if (const std::string why = page.ChooseOtherDesign(o); !why.empty()) throw UsageError(why);
}

void ApplyChoices(DesignPage& page, const Choices& c, const DesignRecord& d) {
  if (c.familyOption) Click(page, *c.familyOption, "--family", d);
  const bool beyond = Beyond(c);
  if (c.order && *c.order != d.Order && !beyond) {
    Click(page, "optOrder" + std::to_string(*c.order), "--order", d);
  }
  // A band's boxes open with its topology; the band designs once it is
  // whole (the page waits quietly through the bands on the way).
  if (c.topology) Click(page, "opt" + *c.topology, "--topology", d);
  if (c.center) Type(page, "txtCenter", *c.center);
  if (c.resonatorL) Type(page, "txtResonatorL", *c.resonatorL);
  if (c.center && c.bandwidth) Type(page, "txtBandwidth", *c.bandwidth);
  if (c.f1 && c.f2) {
    Type(page, "txtF1", *c.f1);
    Type(page, "txtF2", *c.f2);
  }
  if (beyond) {
    ChooseOther(page, c, d);
  } else {
    if (c.ripple) Click(page, RippleButton(*c.ripple)->option, "--ripple", d);
    if (c.stopband) Click(page, StopbandButton(*c.stopband)->option, "--stopband", d);
  }
  if (c.impedance) {
    if (*c.impedance == "50") {
      Click(page, "optZ50", "--impedance", d);
    } else {
      Click(page, "optZother", "--impedance", d);
      Type(page, "txtZother", *c.impedance);
    }
  }
  if (c.bandwidth && !c.center) Type(page, "txtBandwidth", *c.bandwidth);
  if (c.q) {
    if (*c.q == "inf") {
      Click(page, "optQ1", "--q", d);
    } else {
      Click(page, "optQ2", "--q", d);
      Type(page, "txtQother", *c.q);
    }
  }
}

// The value the design uses for a typed choice, against the one typed.
void NoteClamp(const std::string& option, const std::optional<std::string>& typed, double used,
               const char* unit, std::vector<std::string>& notices) {
  if (!typed || *typed == "inf" || (option == "--impedance" && *typed == "50")) return;
  const double asked = ReadNumber(option, *typed);
  const float askedFloat = static_cast<float>(std::clamp(asked, -3e38, 3e38));
  if (askedFloat == static_cast<float>(used)) return;
  notices.push_back(option + ": the design page does not take '" + *typed + "'; it used " +
                    RoundTripText(static_cast<float>(used)) + unit + " instead");
}

}  // namespace

std::unique_ptr<DesignResult> RunDesign(const CliOptions& options, ConsolePlatform& platform,
                                        const PartsProgress& partsProgress) {
  auto result = std::make_unique<DesignResult>();
  // No session path: the last-session file is neither read nor written.
  Application app(platform, ApplicationOptions{"", ""});
  app.Start();
  app.Opening().Controls().FindButton("cmdStart")->Click();
  Fail(platform);
  ApplyChoices(app.Design(), options.choices, app.Record());
  Fail(platform);
  ApplyPartModels(options.choices.models, app.Record());
  if (options.choices.sweep) app.Record().SweepSpan = *options.choices.sweep;

  bool exactSeen = false;
  app.Display().SetAnalysisObserver([&](int mode) {
    if (mode == 1 && !exactSeen) {
      exactSeen = true;
      result->exact = app.Record();
      if (options.values == ValueStage::Exact) result->page = app.DisplayCanvas();
    }
  });
  app.Design().Button("cmdDesign").Click();
  Fail(platform);
  if (!exactSeen) throw DesignFailure("The display page did not analyse the design.");
  if (options.values == ValueStage::FiveL) app.Display().OnInductors();
  Fail(platform);
  if (options.command == Command::Parts || options.values == ValueStage::Chosen) {
    PartsRequest request = options.parts.request;
    // A tolerance run against a mask checks parts chosen for that mask, as
    // the design-from-a-mask search measures them.
    if (options.command == Command::Tolerance) {
      const ToleranceDesign design = ToleranceDesignOf(result->exact);
      const std::optional<Mask> mask = GivenMask(options.tolerance, design);
      if (mask && MaskFault(*mask, design.highpass).empty())
        request.bands = BandsOfMask(*mask, design.highpass);
    }
    app.Display().SetPartsRequest(request);
    app.Display().SetPartsProgress(partsProgress);
    app.Display().OnChosenParts();
    Fail(platform);
    result->parts = app.Display().ChosenParts();
    // 'parts' prints the line in its table; the other commands name it.
    if (options.command != Command::Parts && result->parts && !result->parts->note.empty())
      result->notices.push_back(result->parts->note);
  }
  app.Display().SetAnalysisObserver(nullptr);

  const Choices& c = options.choices;
  NoteClamp("--bandwidth", c.bandwidth, result->exact.Width, " Hz", result->notices);
  NoteClamp("--center", c.center, result->exact.Center, " Hz", result->notices);
  NoteClamp("--resonator-l", c.resonatorL, result->exact.ResonatorL, " H", result->notices);
  NoteClamp("--impedance", c.impedance, result->exact.Rsource, " ohms", result->notices);
  NoteClamp("--q", c.q, result->exact.Qind, "", result->notices);

  result->chosen = options.values == ValueStage::Exact ? result->exact : app.Record();
  if (options.values != ValueStage::Exact) result->page = app.DisplayCanvas();
  return result;
}

}  // namespace drenik::cli
