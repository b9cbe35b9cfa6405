#pragma once
// The LTspice export page as a dialog over its page logic: heading,
// disclaimer, "Draw" and "Cancel". It closes when the page is no longer
// visible.

#include <QDialog>

#include "pages/spice_page.h"

class QPushButton;

namespace drenik {

class SpiceDialog : public QDialog {
  Q_OBJECT
 public:
  SpiceDialog(SpicePage& page, QWidget* parent = nullptr);

  QPushButton* DrawButton() const { return draw_; }
  QPushButton* CancelButton() const { return cancel_; }

 private:
  void CloseWhenHidden();

  SpicePage& page_;
  QPushButton* draw_;
  QPushButton* cancel_;
};

// Shows the page modally until it is closed.
void RunSpiceDialog(SpicePage& page, QWidget* parent);

}  // namespace drenik
