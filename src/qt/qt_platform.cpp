#include "qt/qt_platform.h"

#include <QApplication>
#include <QDate>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLocale>
#include <QMessageBox>
#include <QStringList>
#include <QUrl>

namespace drenik {

namespace {

const char* kDefaultTitle = "Drenik Filter Designer";

QMessageBox::Icon ToQtIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::Exclamation:
      return QMessageBox::Warning;
    case MessageIcon::Critical:
      return QMessageBox::Critical;
    case MessageIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

}  // namespace

void QtPlatform::ShowMessage(const std::string& text, const std::string& title, MessageIcon icon) {
  QMessageBox box(ToQtIcon(icon), QString::fromStdString(title.empty() ? kDefaultTitle : title),
                  QString::fromStdString(text), QMessageBox::Ok, parent_);
  box.exec();
}

QString QtPlatform::QtFilter(const std::string& filter) {
  // The program's filters are "Description (*.EXT)|*.EXT" pairs; Qt wants
  // only the descriptions, one per line.
  QStringList parts = QString::fromStdString(filter).split('|');
  QStringList descriptions;
  for (int i = 0; i < parts.size(); i += 2) descriptions << parts[i].trimmed();
  return descriptions.join(";;");
}

std::string QtPlatform::SaveFileDialog(const std::string& title, const std::string& filter,
                                       const std::string& proposedName) {
  QString path =
      QFileDialog::getSaveFileName(parent_, QString::fromStdString(title),
                                   QString::fromStdString(proposedName), QtFilter(filter));
  return path.toStdString();
}

std::string QtPlatform::OpenFileDialog(const std::string& title, const std::string& filter,
                                       const std::string& proposedName) {
  QString path =
      QFileDialog::getOpenFileName(parent_, QString::fromStdString(title),
                                   QString::fromStdString(proposedName), QtFilter(filter));
  return path.toStdString();
}

bool QtPlatform::OpenUrl(const std::string& url) {
  QUrl target = QUrl::fromUserInput(QString::fromStdString(url));
  return QDesktopServices::openUrl(target);
}

void QtPlatform::Beep() {
  QApplication::beep();
}

std::string QtPlatform::TodayShort() {
  return QLocale().toString(QDate::currentDate(), QLocale::ShortFormat).toStdString();
}

void QtPlatform::EndProgram() {
  QApplication::quit();
}

}  // namespace drenik
