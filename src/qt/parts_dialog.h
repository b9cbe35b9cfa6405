#pragma once
// The chosen-parts dialog: which E series the capacitors come from, whether
// the inductors are wound to value or taken from a series too, and whether a
// position may use two capacitors in parallel; or, in place of an inductor
// series, whole turns on a toroid core or an air-core coil.

#include <QDialog>

#include "parts/chooser.h"

class QCheckBox;
class QComboBox;
class QLabel;

namespace drenik {

class WindingBox;

class PartsDialog : public QDialog {
  Q_OBJECT
 public:
  // With a note (the line of a choice that gave stopband away) the dialog
  // shows it over the choices and offers to choose again or keep the parts.
  explicit PartsDialog(const PartsRequest& request, const std::string& note = "",
                       QWidget* parent = nullptr);

  PartsRequest Request() const;
  QComboBox* Capacitors() const { return capacitors_; }
  QComboBox* Inductors() const { return inductors_; }
  QCheckBox* Pairs() const { return pairs_; }
  WindingBox* Winding() const { return winding_; }
  QLabel* Note() const { return note_; }

 private:
  QComboBox* capacitors_;
  QComboBox* inductors_;
  QCheckBox* pairs_;
  WindingBox* winding_;
  QLabel* note_;
};

// Shows the dialog modally; on OK the request takes its choices.
bool AskPartsRequest(PartsRequest& request, const std::string& note, QWidget* parent);

}  // namespace drenik
