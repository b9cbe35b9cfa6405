#include "qt/parts_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

#include "qt/form_dialog.h"
#include "qt/winding_box.h"

namespace drenik {

// The inductor list starts with the wound choice; the series follow in the
// order of the capacitor list, so index k + 1 is series k.
PartsDialog::PartsDialog(const PartsRequest& request, const std::string& note, QWidget* parent)
    : QDialog(parent),
      capacitors_(new QComboBox(this)),
      inductors_(new QComboBox(this)),
      pairs_(new QCheckBox("Two capacitors in parallel where that comes nearer", this)),
      winding_(new WindingBox(request.former, "None: the inductors above", this)),
      note_(new QLabel(QString::fromStdString(note), this)) {
  setWindowTitle("Chosen parts");
  inductors_->addItem("Wound to value (exact)");
  for (const ESeriesInfo& s : kESeries) {
    const QString text = QString("%1 (%2%)").arg(s.name).arg(s.tolerancePercent);
    capacitors_->addItem(text);
    inductors_->addItem(text);
  }
  capacitors_->setCurrentIndex(static_cast<int>(request.capacitors));
  inductors_->setCurrentIndex(request.inductors ? static_cast<int>(*request.inductors) + 1 : 0);
  pairs_->setChecked(request.pairs);
  capacitors_->setObjectName("cboCapacitors");
  inductors_->setObjectName("cboInductors");
  pairs_->setObjectName("chkPairs");
  note_->setObjectName("lblNote");
  note_->setWordWrap(true);
  note_->setVisible(!note.empty());

  auto* form = new QFormLayout;
  form->addRow("Capacitors:", capacitors_);
  form->addRow("Inductors:", inductors_);
  form->addRow("Whole turns on:", winding_);
  form->addRow(pairs_);
  // Whole turns take the place of the inductor series.
  auto follow = [this] { inductors_->setEnabled(!winding_->Winding()); };
  connect(winding_, &WindingBox::Changed, this, follow);
  follow();
  QDialogButtonBox* buttons = LayOutFormDialog(*this, note_, form);
  if (!note.empty()) {
    buttons->button(QDialogButtonBox::Ok)->setText("Choose again");
    buttons->button(QDialogButtonBox::Cancel)->setText("Keep these parts");
  }
}

PartsRequest PartsDialog::Request() const {
  PartsRequest r;
  r.capacitors = static_cast<ESeries>(capacitors_->currentIndex());
  if (inductors_->currentIndex() > 0)
    r.inductors = static_cast<ESeries>(inductors_->currentIndex() - 1);
  r.pairs = pairs_->isChecked();
  r.former = winding_->Winding();
  return r;
}

bool AskPartsRequest(PartsRequest& request, const std::string& note, QWidget* parent) {
  PartsDialog dialog(request, note, parent);
  if (dialog.exec() != QDialog::Accepted) return false;
  request = dialog.Request();
  return true;
}

}  // namespace drenik
