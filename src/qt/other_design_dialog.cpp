#include "qt/other_design_dialog.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>

#include "qt/form_dialog.h"
#include "synthesis/families.h"

namespace drenik {

namespace {

// A box for decibels over the range, with three decimals (the smallest
// ripple is a thousandth of a dB); disabled when the family has no range.
QDoubleSpinBox* DecibelBox(const ChoiceRange& range, double value, const char* name,
                           QWidget* parent) {
  auto* box = new QDoubleSpinBox(parent);
  box->setObjectName(name);
  box->setDecimals(3);
  box->setSuffix(" dB");
  box->setEnabled(range.Offered());
  if (range.Offered()) {
    box->setRange(range.low, range.high);
    box->setValue(range.Holds(value) ? value : range.low);
  }
  return box;
}

QString RangeText(const ChoiceRange& range, const char* unit) {
  if (!range.Offered()) return "not for this family";
  return QString("%1 to %2 %3").arg(range.low).arg(range.high).arg(unit);
}

}  // namespace

OtherDesignDialog::OtherDesignDialog(const OtherDesign& design, QWidget* parent)
    : QDialog(parent), design_(design), order_(new QSpinBox(this)) {
  setWindowTitle("Other order and ripple");
  const FamilyInfo& f = *design.family;
  order_->setObjectName("spnOrder");
  order_->setRange(f.minOrder, f.maxOrder);
  order_->setValue(design.order);
  ripple_ = DecibelBox(f.ripple, design.ripple, "spnRipple", this);
  depth_ = DecibelBox(f.depth, design.depth, "spnDepth", this);

  auto* note = new QLabel(
      QString("Any order, ripple and stopband depth the %1 family takes, beyond the design "
              "page's buttons. The stopband edge of a Cauer design follows from all three.")
          .arg(f.name),
      this);
  note->setWordWrap(true);
  auto* form = new QFormLayout;
  form->addRow(QString("Order (%1 to %2):").arg(f.minOrder).arg(f.maxOrder), order_);
  form->addRow("Passband ripple (" + RangeText(f.ripple, "dB") + "):", ripple_);
  form->addRow("Stopband depth (" + RangeText(f.depth, "dB") + "):", depth_);
  LayOutFormDialog(*this, note, form);
}

OtherDesign OtherDesignDialog::Design() const {
  OtherDesign d = design_;
  d.order = order_->value();
  if (ripple_->isEnabled()) d.ripple = ripple_->value();
  if (depth_->isEnabled()) d.depth = depth_->value();
  return d;
}

bool AskOtherDesign(OtherDesign& design, QWidget* parent) {
  if (!design.family) return false;
  OtherDesignDialog dialog(design, parent);
  if (dialog.exec() != QDialog::Accepted) return false;
  design = dialog.Design();
  return true;
}

}  // namespace drenik
