// The designer window.
#include <QApplication>
#include <QScreen>

#include "core/atomic_file.h"
#include "pages/application.h"
#include "qt/designer_window.h"
#include "qt/painter_canvas.h"
#include "qt/qt_platform.h"

int main(int argc, char** argv) {
  drenik::ReportFileSizeLimitAsError();
  QApplication qapp(argc, argv);
  QApplication::setApplicationName("DrenikFilterDesign");
  QApplication::setApplicationVersion("2.12");
  drenik::PrepareQtDrawing();  // font twins, text measured with the real fonts

  drenik::QtPlatform platform;
  drenik::ApplicationOptions options;
  options.userGuideUrl =
      drenik::FindUserGuide(QCoreApplication::applicationDirPath(), DRENIK_SOURCE_DIR);
  drenik::Application app(platform, options);

  drenik::DesignerWindow window(app);
  platform.SetParent(&window);
  app.Start();
  if (QScreen* screen = QGuiApplication::primaryScreen()) {
    window.resize(drenik::DesignerWindow::InitialSize(screen->availableGeometry()));
  }
  window.show();
  if (app.Ended()) return 0;
  return QApplication::exec();
}
