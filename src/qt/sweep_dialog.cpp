#include "qt/sweep_dialog.h"

#include <QInputDialog>

#include "core/formatters.h"

namespace drenik {

bool AskSweep(SweepEntry& entry, QWidget* parent) {
  QInputDialog dialog(parent);
  dialog.setWindowTitle("Sweep");
  dialog.setInputMode(QInputDialog::TextInput);
  const std::string text =
      "The plot runs from f0 / k to k f0 about the band's centre f0 = " +
      TrimBlanks(FormatFrequency(entry.center)) +
      ".\nType k: 2 shows the second harmonic, 3 the third. Leave it empty for\nthe design's "
      "own sweep (k = " +
      TrimBlanks(FormatValue(entry.ownSpan)) + ", its skirts as far as a lowpass plot shows).";
  dialog.setLabelText(QString::fromStdString(text));
  dialog.setTextValue(QString::fromStdString(entry.span));
  if (dialog.exec() != QDialog::Accepted) return false;
  entry.span = dialog.textValue().toStdString();
  return true;
}

}  // namespace drenik
