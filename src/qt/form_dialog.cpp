#include "qt/form_dialog.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QVBoxLayout>

namespace drenik {

QDialogButtonBox* LayOutFormDialog(QDialog& dialog, QWidget* note, QFormLayout* form) {
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  auto* layout = new QVBoxLayout(&dialog);
  layout->addWidget(note);
  layout->addLayout(form);
  layout->addWidget(buttons);
  return buttons;
}

}  // namespace drenik
