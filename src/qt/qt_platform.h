#pragma once
// The desktop as the program sees it, on Qt: QMessageBox, QFileDialog,
// QDesktopServices, QApplication::beep.

#include <QPointer>
#include <QWidget>

#include "core/platform.h"

namespace drenik {

class QtPlatform : public Platform {
 public:
  // Dialogs and message boxes are centred on `parent` when it is set.
  explicit QtPlatform(QWidget* parent = nullptr) : parent_(parent) {}
  void SetParent(QWidget* parent) { parent_ = parent; }

  using Platform::ShowMessage;
  void ShowMessage(const std::string& text, const std::string& title, MessageIcon icon) override;
  std::string SaveFileDialog(const std::string& title, const std::string& filter,
                             const std::string& proposedName) override;
  std::string OpenFileDialog(const std::string& title, const std::string& filter,
                             const std::string& proposedName) override;
  bool OpenUrl(const std::string& url) override;
  void Beep() override;
  std::string TodayShort() override;
  void EndProgram() override;

  // "Pallis files (*.LCT)|*.LCT" → "Pallis files (*.LCT)" for QFileDialog.
  static QString QtFilter(const std::string& filter);

 private:
  QPointer<QWidget> parent_;
};

}  // namespace drenik
