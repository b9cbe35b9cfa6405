// The tolerance window: opened from the display page, a run that leaves the
// window responsive and can be cancelled, the picture it saves.
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>

#include "fixture.h"
#include "qt/print_page.h"

namespace drenik::testing {
namespace {

TEST_F(WindowTest, ToleranceWindowRunsOnAWorkerThreadCancelsAndSavesItsPicture) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  Click(Button(window->DisplayView(), "cmdTolerance"));
  ToleranceWindow* tolerance = window->Tolerance();
  ASSERT_TRUE(tolerance && tolerance->isVisible());
  ControlPageView& view = tolerance->View();
  EXPECT_EQ(Widget<QLineEdit>(view, "txtCtol")->text(), "5");

  // A long run: the window keeps handling its events (the progress is
  // drawn from its timer) until Cancel stops the worker.
  TypeInto(Widget<QLineEdit>(view, "txtTrials"), "1000000");
  Click(Button(view, "cmdRun"));
  TolerancePage& page = app->Tolerance();
  ASSERT_TRUE(page.Running());
  auto drawn = [&](const std::string& prefix) {
    for (const DrawOp& op : app->ToleranceCanvas().Ops())
      if (op.kind == DrawOp::Kind::Text && op.text.rfind(prefix, 0) == 0) return true;
    return false;
  };
  EXPECT_TRUE(QTest::qWaitFor([&] { return drawn("Running: "); }, 5000));
  EXPECT_FALSE(Button(view, "cmdRun")->isEnabled());
  Click(Button(view, "cmdCancel"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !page.Running(); }, 10000));
  EXPECT_TRUE(drawn("Cancelled") && !page.HasResult());

  TypeInto(Widget<QLineEdit>(view, "txtTrials"), "500");
  Click(Button(view, "cmdRun"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return page.HasResult(); }, 10000));
  EXPECT_TRUE(Button(view, "cmdRun")->isEnabled() && drawn("500 trials in "));

  platform->dialogAnswer = folder / "tolerance.png";
  Click(Button(view, "cmdSave"));
  QImage picture(QString::fromStdString(platform->dialogAnswer));
  EXPECT_EQ(picture.size(), QSize(1600, 1200));
  EXPECT_TRUE(platform->messages.empty());
  Click(Button(view, "cmdClose"));
  EXPECT_FALSE(tolerance->isVisible());

  // On paper the settings stand where the window has its controls.
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(QString::fromStdString(folder / "tolerance.pdf"));
  ASSERT_TRUE(PrintDrawnPage(page.PaperDrawing(), printer, *platform));
  const QString tool = QStandardPaths::findExecutable("pdftotext");
  if (tool.isEmpty()) GTEST_SKIP() << "pdftotext (poppler-utils) is not installed";
  QProcess process;
  process.start(tool, {QString::fromStdString(folder / "tolerance.pdf"), "-"});
  ASSERT_TRUE(process.waitForFinished(30000));
  const QString text = QString::fromUtf8(process.readAllStandardOutput());
  for (const char* expected : {"Yield", "Settings", "Trials: 500, seed 1", "Failures per check",
                               "Worst passband", "Least stopband"})
    EXPECT_TRUE(text.contains(expected)) << expected;
}

}  // namespace
}  // namespace drenik::testing
