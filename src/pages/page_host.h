#pragma once
// What a page asks of the application that holds it: going to another page,
// ending the program, the address of the user guide, the tolerance page, and
// the services only a window has (the LTspice page, printing, the
// chosen-parts and part-models dialogs).

#include <string>

namespace drenik {

struct PartsRequest;
struct PartModelEntries;
struct OtherDesign;

// What the display page's "Sweep" asks of a band design: the span k of its
// sweep from f0 / k to k f0 as typed (empty for the design's own), with the
// centre f0 (Hz) and the design's own span to show beside it.
struct SweepEntry {
  std::string span;
  double center = 0, ownSpan = 0;
};

class PageHost {
 public:
  virtual ~PageHost() = default;
  virtual void ShowDesignPage() = 0;
  virtual void ShowDisplayPage() = 0;
  // Ends the program; writes the last-session file first when asked to.
  virtual void EndProgram(bool writeSession) = 0;
  // The maker's page opened by the web links: the program's user guide.
  virtual const std::string& UserGuideUrl() const = 0;
  // The LTspice export page; a host without a window has none.
  virtual void ShowSpicePage() {}
  // Prints the display page; false when the host cannot print.
  virtual bool PrintDisplayPage() { return false; }
  // Lets the user change the series and pairs of the chosen-parts stage;
  // false when cancelled. `note` is the line of a choice that gave
  // stopband away (empty before the first choice). A host without a window
  // keeps them as they are.
  virtual bool AskPartsRequest(PartsRequest&, const std::string& /*note*/) { return true; }
  // Lets the user edit the part models and the winding; false when
  // cancelled. A host without a window keeps them as they are.
  virtual bool AskPartModels(PartModelEntries&) { return true; }
  // Lets the user widen a band design's sweep; false when cancelled. A host
  // without a window keeps it as it is.
  virtual bool AskSweep(SweepEntry&) { return true; }
  // Lets the user choose an order, ripple and depth beyond the design page's
  // buttons; false when cancelled. A host without a window takes them as
  // they are.
  virtual bool AskOtherDesign(OtherDesign&) { return true; }
  // The tolerance page for the design the record holds.
  virtual void ShowTolerancePage() {}
  // The time responses and the Smith chart of the design the record holds.
  virtual void ShowTimePage() {}
  // The part stress of the design the record holds.
  virtual void ShowStressPage() {}
  // The design-from-a-mask page, opened on the design the record holds.
  virtual void ShowSynthPage() {}
};

}  // namespace drenik
