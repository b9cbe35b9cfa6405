#pragma once
// The LTspice export page: a heading, the disclaimer, "Draw" (choose a file
// and write the schematic) and "Cancel" (close without writing). The window
// shows these texts and forwards the two clicks.

#include <string>

#include "core/design_record.h"
#include "core/platform.h"

namespace drenik {

class SpicePage {
 public:
  SpicePage(DesignRecord& d, Platform& platform);

  // The window title "Pallis - Write Spice schematic" and the heading
  // "Write an LTspice schematic file": each is the pair of its texts joined,
  // with the blanks at the seam taken together and the ends trimmed.
  const std::string& Caption() const { return caption_; }
  const std::string& Heading() const { return heading_; }
  const std::string& Label1() const { return label1_; }
  const std::string& DrawCaption() const { return drawCaption_; }
  const std::string& ExitCaption() const { return exitCaption_; }
  bool Visible() const { return visible_; }

  // Asks for the file ("Default.ASC" or the last file's name with ".ASC"),
  // keeps the chosen path in FileName and writes the schematic there.
  void cmdDraw_Click();
  void cmdExit_Click() { visible_ = false; }

  // The name the save dialog proposes for a last file name.
  static std::string ProposedName(const std::string& fileName);

 private:
  DesignRecord& d_;
  Platform& platform_;
  std::string caption_;
  std::string heading_;
  std::string label1_ = "Zelmar Software has no connection with LinearTechnology Corporation";
  std::string drawCaption_ = "Draw";
  std::string exitCaption_ = "Cancel";
  bool visible_ = true;
};

}  // namespace drenik
