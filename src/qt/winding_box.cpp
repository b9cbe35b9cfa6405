#include "qt/winding_box.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>

#include "core/formatters.h"

namespace drenik {
namespace {

// The list: none, the cores in the table's order, then the air-core coil.
QString CoreText(const ToroidCore& c) {
  return QString("%1  (AL %2 nH/turn\u00B2, %3 to %4)")
      .arg(c.name)
      .arg(c.alNanohenry)
      .arg(QString::fromStdString(TrimBlanks(FormatFrequency(c.fLowHz))))
      .arg(QString::fromStdString(TrimBlanks(FormatFrequency(c.fHighHz))));
}

QDoubleSpinBox* Diameter(double least, double most, double value, QWidget* parent) {
  auto* box = new QDoubleSpinBox(parent);
  box->setRange(least, most);
  box->setDecimals(2);
  box->setSingleStep(0.1);
  box->setSuffix(" mm");
  box->setValue(value);
  return box;
}

}  // namespace

// A 6 mm form with 0.8 mm wire is a common start for HF coils.
WindingBox::WindingBox(const std::optional<Former>& former, const QString& noneText,
                       QWidget* parent)
    : QWidget(parent),
      formers_(new QComboBox(this)),
      formMm_(Diameter(0.5, 200, former && !former->core ? former->air.formMm : 6, this)),
      wireMm_(Diameter(0.05, 10, former && !former->core ? former->air.wireMm : 0.8, this)) {
  formers_->addItem(noneText);
  int current = 0;
  for (const ToroidCore& c : ToroidCores()) {
    formers_->addItem(CoreText(c));
    if (former && former->core == &c) current = formers_->count() - 1;
  }
  formers_->addItem("Air-core coil, close-wound");
  if (former && !former->core) current = formers_->count() - 1;
  formers_->setCurrentIndex(current);
  formers_->setObjectName("cboWinding");
  formMm_->setObjectName("spnFormMm");
  wireMm_->setObjectName("spnWireMm");

  auto* air = new QHBoxLayout;
  air->addWidget(new QLabel("Form", this));
  air->addWidget(formMm_);
  air->addWidget(new QLabel("wire", this));
  air->addWidget(wireMm_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(formers_);
  layout->addLayout(air);

  auto follow = [this] {
    formMm_->setEnabled(AirCore());
    wireMm_->setEnabled(AirCore());
    emit Changed();
  };
  connect(formers_, &QComboBox::currentIndexChanged, this, follow);
  follow();
}

bool WindingBox::AirCore() const {
  return formers_->currentIndex() == formers_->count() - 1;
}

std::optional<Former> WindingBox::Winding() const {
  const int index = formers_->currentIndex();
  if (index <= 0) return std::nullopt;
  if (AirCore()) return Former{nullptr, {formMm_->value(), wireMm_->value()}};
  return Former{&ToroidCores()[static_cast<size_t>(index - 1)], {}};
}

}  // namespace drenik
