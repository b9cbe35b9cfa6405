#include "qt/part_models_dialog.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

#include "qt/form_dialog.h"
#include "qt/winding_box.h"

namespace drenik {
namespace {

QLineEdit* Entry(const std::string& text, const char* name, const char* hint, QWidget* parent) {
  auto* edit = new QLineEdit(QString::fromStdString(text), parent);
  edit->setObjectName(name);
  edit->setPlaceholderText(hint);
  return edit;
}

}  // namespace

// The law list follows the Q-law table, so index k is the table's row k.
PartModelsDialog::PartModelsDialog(const PartModelEntries& entries, QWidget* parent)
    : QDialog(parent),
      law_(new QComboBox(this)),
      capacitorQ_(Entry(entries.capacitorQ, "txtCapacitorQ", "inf", this)),
      windingCapacitance_(
          Entry(entries.windingCapacitance, "txtWindingCapacitance", "0, e.g. 0.5p", this)),
      capacitorEsl_(Entry(entries.capacitorEsl, "txtCapacitorEsl", "0, e.g. 2n", this)),
      winding_(new WindingBox(entries.former, "None: inductors wound to value", this)) {
  setWindowTitle("Part models");
  for (const QLawFacts& f : QLaws()) {
    law_->addItem(QString::fromUtf8(f.caption));
    if (f.law == entries.law) law_->setCurrentIndex(law_->count() - 1);
  }
  law_->setObjectName("cboQLaw");

  auto* note = new QLabel(
      "The inductor Q of the design page holds at the cutoff (the centre of a band); the law "
      "says how it changes away from it. Values take the prefix letters p, n, u, m, k, M. The "
      "chosen parts and the parts list give the inductors in whole turns on the winding.",
      this);
  note->setWordWrap(true);
  auto* form = new QFormLayout;
  form->addRow("Inductor Q law:", law_);
  form->addRow("Winding capacitance, F:", windingCapacitance_);
  form->addRow("Capacitor Q:", capacitorQ_);
  form->addRow("Capacitor lead inductance, H:", capacitorEsl_);
  form->addRow("Inductors wound on:", winding_);
  LayOutFormDialog(*this, note, form);
}

PartModelEntries PartModelsDialog::Entries() const {
  PartModelEntries e;
  e.law = QLaws()[static_cast<size_t>(std::max(0, law_->currentIndex()))].law;
  e.capacitorQ = capacitorQ_->text().toStdString();
  e.windingCapacitance = windingCapacitance_->text().toStdString();
  e.capacitorEsl = capacitorEsl_->text().toStdString();
  e.former = winding_->Winding();
  return e;
}

bool AskPartModels(PartModelEntries& entries, QWidget* parent) {
  PartModelsDialog dialog(entries, parent);
  if (dialog.exec() != QDialog::Accepted) return false;
  entries = dialog.Entries();
  return true;
}

}  // namespace drenik
