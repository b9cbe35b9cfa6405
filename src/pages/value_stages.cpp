#include "pages/value_stages.h"

#include "pages/display_page.h"
#include "plot/recording_canvas.h"

namespace drenik {
namespace {

// The display page run without a window: no other page to go to, and its
// messages kept for the caller.
class QuietHost : public PageHost, public NullPlatform {
 public:
  using NullPlatform::EndProgram;
  using NullPlatform::ShowMessage;
  void ShowDesignPage() override {}
  void ShowDisplayPage() override {}
  void EndProgram(bool) override {}
  const std::string& UserGuideUrl() const override { return url_; }
  void ShowMessage(const std::string& text, const std::string&, MessageIcon) override {
    if (message.empty()) message = text;
  }
  std::string message;

 private:
  std::string url_;
};

}  // namespace

const char* ValueStageName(ValueStage stage) {
  switch (stage) {
    case ValueStage::Exact:
      return "Exact";
    case ValueStage::FiveC:
      return "5% C";
    case ValueStage::FiveL:
      return "5% L";
    case ValueStage::Chosen:
      return "Chosen";
  }
  return "";
}

const DesignRecord& ValueStages::At(ValueStage stage) const {
  if (stage == ValueStage::Chosen && chosen) return *chosen;
  return stage == ValueStage::Exact ? exact : (stage == ValueStage::FiveL ? fiveL : fiveC);
}

ValueStages MakeValueStages(const DesignRecord& d) {
  ValueStages stages;
  DesignRecord copy = d;
  QuietHost host;
  RecordingCanvas canvas;
  DisplayPage page(copy, host, canvas, host);
  bool exactSeen = false;
  page.SetAnalysisObserver([&](int mode) {
    if (mode == 1 && !exactSeen) stages.exact = copy, exactSeen = true;
  });
  page.Load();
  stages.fiveC = copy;
  page.OnInductors();
  stages.fiveL = copy;
  if (d.ValueMode == kChosenPartsMode) stages.chosen = d;
  stages.fault = host.message;
  if (stages.fault.empty() && !exactSeen)
    stages.fault = "The display page did not analyse the design.";
  return stages;
}

}  // namespace drenik
