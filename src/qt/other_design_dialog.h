#pragma once
// The design page's "Other order and ripple" dialog: any order, passband
// ripple and stopband depth the family takes, each box offered only where
// the family has the choice, its range beside it. It hands back what was
// entered; the page checks it against the family again and designs.

#include <QDialog>

#include "pages/other_design.h"

class QDoubleSpinBox;
class QSpinBox;

namespace drenik {

class OtherDesignDialog : public QDialog {
  Q_OBJECT
 public:
  explicit OtherDesignDialog(const OtherDesign& design, QWidget* parent = nullptr);

  OtherDesign Design() const;
  QSpinBox* Order() const { return order_; }
  QDoubleSpinBox* Ripple() const { return ripple_; }
  QDoubleSpinBox* Depth() const { return depth_; }

 private:
  OtherDesign design_;
  QSpinBox* order_;
  QDoubleSpinBox* ripple_;
  QDoubleSpinBox* depth_;
};

// Shows the dialog modally; on OK the design takes what it holds.
bool AskOtherDesign(OtherDesign& design, QWidget* parent);

}  // namespace drenik
