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
  // false when cancelled. A host without a window keeps them as they are.
  virtual bool AskPartsRequest(PartsRequest&) { return true; }
  // Lets the user edit the part models and the winding; false when
  // cancelled. A host without a window keeps them as they are.
  virtual bool AskPartModels(PartModelEntries&) { return true; }
  // Lets the user choose an order, ripple and depth beyond the design page's
  // buttons; false when cancelled. A host without a window takes them as
  // they are.
  virtual bool AskOtherDesign(OtherDesign&) { return true; }
  // The tolerance page for the design the record holds.
  virtual void ShowTolerancePage() {}
  // The time responses and the Smith chart of the design the record holds.
  virtual void ShowTimePage() {}
};

}  // namespace drenik
