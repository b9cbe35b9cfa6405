#include "qt/spice_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace drenik {

SpiceDialog::SpiceDialog(SpicePage& page, QWidget* parent)
    : QDialog(parent),
      page_(page),
      draw_(new QPushButton(QString::fromStdString(page.DrawCaption()), this)),
      cancel_(new QPushButton(QString::fromStdString(page.ExitCaption()), this)) {
  setWindowTitle(QString::fromStdString(page.Caption()));
  auto* heading = new QLabel(QString::fromStdString(page.Heading()), this);
  heading->setObjectName("lblHeading");
  QFont font("Arial");
  font.setPointSize(14);
  font.setBold(true);
  heading->setFont(font);
  auto* disclaimer = new QLabel(QString::fromStdString(page.Label1()), this);
  disclaimer->setObjectName("Label1");
  disclaimer->setWordWrap(true);
  draw_->setObjectName("cmdDraw");
  cancel_->setObjectName("cmdExit");
  draw_->setDefault(true);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(draw_);
  buttons->addWidget(cancel_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(heading);
  layout->addWidget(disclaimer);
  layout->addSpacing(12);
  layout->addLayout(buttons);

  connect(draw_, &QPushButton::clicked, this, [this] {
    page_.cmdDraw_Click();
    CloseWhenHidden();
  });
  connect(cancel_, &QPushButton::clicked, this, [this] {
    page_.cmdExit_Click();
    CloseWhenHidden();
  });
}

void SpiceDialog::CloseWhenHidden() {
  if (!page_.Visible()) accept();
}

void RunSpiceDialog(SpicePage& page, QWidget* parent) {
  SpiceDialog dialog(page, parent);
  dialog.exec();
}

}  // namespace drenik
