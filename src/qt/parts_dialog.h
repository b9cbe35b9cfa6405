#pragma once
// The chosen-parts dialog: which E series the capacitors come from, whether
// the inductors are wound to value or taken from a series too, and whether a
// position may use two capacitors in parallel; or, in place of an inductor
// series, whole turns on a toroid core or an air-core coil.

#include <QDialog>

#include "parts/chooser.h"

class QCheckBox;
class QComboBox;

namespace drenik {

class WindingBox;

class PartsDialog : public QDialog {
  Q_OBJECT
 public:
  explicit PartsDialog(const PartsRequest& request, QWidget* parent = nullptr);

  PartsRequest Request() const;
  QComboBox* Capacitors() const { return capacitors_; }
  QComboBox* Inductors() const { return inductors_; }
  QCheckBox* Pairs() const { return pairs_; }
  WindingBox* Winding() const { return winding_; }

 private:
  QComboBox* capacitors_;
  QComboBox* inductors_;
  QCheckBox* pairs_;
  WindingBox* winding_;
};

// Shows the dialog modally; on OK the request takes its choices.
bool AskPartsRequest(PartsRequest& request, QWidget* parent);

}  // namespace drenik
