// Any session line the reader accepts, put into the record as it stands
// (band and part-model fields too; the opening page's usability check is
// skipped on purpose), then the design page, the display page and the design
// page again: no fault, at most one message for each page's load and only
// the program's own run-time message or an engine notice. A session the
// usability check accepts loads with no message at all.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/last_session.h"
#include "pages/application.h"
#include "pages/session_check.h"

namespace {

struct CountingPlatform : drenik::NullPlatform {
  using Platform::ShowMessage;
  void ShowMessage(const std::string&, const std::string& title, drenik::MessageIcon) override {
    if (!title.empty() && title != drenik::kRunTimeErrorTitle) std::abort();
    ++messages;
  }
  int messages = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  drenik::DesignRecord session;
  if (!drenik::ParseLastSession(text, session)) return 0;

  CountingPlatform platform;
  drenik::Application app(platform, drenik::ApplicationOptions{"", ""});
  app.Start();
  drenik::DesignRecord& d = app.Record();
  d.Order = session.Order, d.Width = session.Width, d.Family = session.Family;
  d.Apass = session.Apass, d.Astop = session.Astop, d.Topology = session.Topology;
  d.Rsource = session.Rsource, d.Qind = session.Qind;
  d.Center = session.Center, d.ResonatorL = session.ResonatorL;
  d.InductorQLaw = session.InductorQLaw, d.CapacitorQ = session.CapacitorQ;
  d.WindingCapacitance = session.WindingCapacitance, d.CapacitorEsl = session.CapacitorEsl;
  const bool usable = drenik::IsUsableSession(d);

  const auto load = [&](drenik::ControlSet& controls, const char* button) {
    platform.messages = 0;
    controls.FindButton(button)->Click();
    if (platform.messages > (usable ? 0 : 1)) std::abort();
  };
  load(app.Opening().Controls(), "cmdStart");
  load(app.Design().Controls(), "cmdDesign");
  load(app.Display().Controls(), "cmdDesign");
  return 0;
}
