#pragma once
// The winding the inductors take whole turns on: none, a toroid core from
// the core table, or a close-wound air-core coil given by the diameters of
// its form and its wire. The diameters can only be set within what a filter
// coil is wound with, so every choice is a former that can be wound.

#include <QWidget>
#include <optional>

#include "winding/winding.h"

class QComboBox;
class QDoubleSpinBox;

namespace drenik {

class WindingBox : public QWidget {
  Q_OBJECT
 public:
  // `noneText` names the first choice, no winding.
  WindingBox(const std::optional<Former>& former, const QString& noneText,
             QWidget* parent = nullptr);

  std::optional<Former> Winding() const;
  QComboBox* Formers() const { return formers_; }
  QDoubleSpinBox* FormMm() const { return formMm_; }
  QDoubleSpinBox* WireMm() const { return wireMm_; }

 signals:
  void Changed();

 private:
  bool AirCore() const;

  QComboBox* formers_;
  QDoubleSpinBox* formMm_;
  QDoubleSpinBox* wireMm_;
};

}  // namespace drenik
