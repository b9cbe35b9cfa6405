#pragma once
// The design page: family, order, topology, ripple, stopband depth,
// impedance, bandwidth and inductor Q. Every change is written into the
// design record at once and, for most controls, redesigns the ladder and
// redraws the schematic strip at the top of the page.

#include <cstdint>
#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "pages/controls.h"
#include "pages/page_host.h"
#include "plot/canvas.h"

namespace drenik {

struct FamilyInfo;
struct OtherDesign;
struct TopologyInfo;

class DesignPage {
 public:
  DesignPage(DesignRecord& d, Platform& platform, Canvas& strip, PageHost& host);

  ControlSet& Controls() { return controls_; }
  const std::string& Caption() const { return caption_; }

  // Load of the page: sets every control from the record (defaults for
  // fields still zero or empty), then designs and draws the strip. Every
  // step runs whatever a redesign reports; at most one message is shown.
  void Load();
  // Load without its last step (the design and the drawing), for callers
  // that need to see the controls as the record left them.
  void LoadControls();

  // Turns the page's options into choice fields and computes the prototype
  // of the family.
  void RunSynthesisDriver();
  // Qcap, Width from the bandwidth box, Rstandard, the ripple snap and the
  // stopband edge of odd-order Cauer designs. Runs before a Cauer prototype.
  void ReadDesignInputs();
  // Clears and redraws the schematic strip.
  void RedrawSchematic();
  // An order, ripple and depth beyond the buttons (the "Other order and
  // ripple" dialog): a value that is a button selects it, the others leave
  // their group with none selected; then the redesign chain runs. Returns
  // the reason when the family does not take the values (nothing changes).
  std::string ChooseOtherDesign(const OtherDesign& o);

  // How often the synthesis driver and the strip drawing have run (a view
  // repaints the strip when the second one grows).
  int DriverRuns() const { return driverRuns_; }
  int SchematicRedraws() const { return schematicRedraws_; }

  // Named access for the window and the tests.
  OptionButton& Option(const std::string& name) const;
  TextBox& Box(const std::string& name) const;
  Label& LabelNamed(const std::string& name) const;
  Frame& FrameNamed(const std::string& name) const;
  CommandButton& Button(const std::string& name) const;

 private:
  void Build();
  void RedesignChain();
  void SetFamilyGroups(bool order, bool ripple, bool stopband);
  void OnFamily(const FamilyInfo& family);
  void MatchFixedDesignLoad();
  void OnZ50();
  void OnZother();
  void OnQ1();
  void OnQ2();
  void OnBandwidthChange();
  void OnZotherChange();
  void OnQotherChange();
  void OnDesign();
  // The chosen band topology, or nullptr for a lowpass or highpass.
  const TopologyInfo* SelectedBand() const;
  void OnTopology(const TopologyInfo& topology);
  void ReadCenter();
  void ReadResonatorL();
  void OnCenterChange();
  void OnResonatorLChange();
  void OnEdgeChange();
  // Denormalizes; a band design the engine refuses is shown as refused
  // (refusal_) instead of raising the run-time error.
  void DenormalizeOrRefuse();
  void ShowBand();
  void ShowEdges();
  void OnOtherDesign();
  void ShowOtherDesign();

  DesignRecord& d_;
  Platform& platform_;
  Canvas& strip_;
  PageHost& host_;
  ControlSet controls_;
  std::string caption_;
  int driverRuns_ = 0;
  int schematicRedraws_ = 0;
  // Why the band the boxes give has no design (the label and the strip say
  // so, and Display responses gives it as the message); empty while the
  // strip shows the design.
  std::string refusal_;
  // While the edge boxes are typed into, they are what the band follows.
  bool typingEdges_ = false;
};

// The option button of a topology ("opt" and its string).
std::string TopologyOption(const TopologyInfo& topology);

// A box's text for a value the record holds: the page's own format where it
// reads back to the same float, else the fewest digits that do.
std::string ExactEntry(float value, const std::string& formatted);

}  // namespace drenik
