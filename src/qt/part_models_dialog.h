#pragma once
// The part-models dialog of the display page: the inductor Q law, the
// capacitor Q, the winding capacitance across each inductor, the lead
// inductance of each capacitor, and the winding. It hands back what was
// typed; the display page reads it and names what it cannot use.

#include <QDialog>

#include "pages/part_model_entries.h"

class QComboBox;
class QLineEdit;

namespace drenik {

class WindingBox;

class PartModelsDialog : public QDialog {
  Q_OBJECT
 public:
  explicit PartModelsDialog(const PartModelEntries& entries, QWidget* parent = nullptr);

  PartModelEntries Entries() const;
  QComboBox* Law() const { return law_; }
  QLineEdit* CapacitorQ() const { return capacitorQ_; }
  QLineEdit* WindingCapacitance() const { return windingCapacitance_; }
  QLineEdit* CapacitorEsl() const { return capacitorEsl_; }
  WindingBox* Winding() const { return winding_; }

 private:
  QComboBox* law_;
  QLineEdit* capacitorQ_;
  QLineEdit* windingCapacitance_;
  QLineEdit* capacitorEsl_;
  WindingBox* winding_;
};

// Shows the dialog modally; on OK the entries take what it holds.
bool AskPartModels(PartModelEntries& entries, QWidget* parent);

}  // namespace drenik
