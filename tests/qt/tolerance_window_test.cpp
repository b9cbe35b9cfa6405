// The tolerance window: opened from the display page, a run that leaves the
// window responsive and can be cancelled, the picture it saves.
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>

#include "core/formatters.h"
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

// A band design typed into the design page reaches the schematic strip and
// the display page; the tolerance window then shows the band's mask boxes
// (a lowpass's window hides them and keeps its places) and runs that mask.
TEST_F(WindowTest, ABandTypedOnTheDesignPageReachesTheDisplayAndTheToleranceWindowRunsItsMask) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  Click(Button(window->DisplayView(), "cmdTolerance"));
  ControlPageView& view = window->Tolerance()->View();
  const QRect lowpassRun = Button(view, "cmdRun")->geometry();
  EXPECT_TRUE(view.WidgetFor("txtPassEdge2")->isHidden() &&
              view.WidgetFor("txtStopTo1")->isHidden());
  Click(Button(view, "cmdClose"));
  Click(Button(window->DisplayView(), "cmdDesign"));

  TypeInto(Edit("txtBandwidth"), "300k");
  Click(Radio("optCoupledbandpass"));
  const int redraws = app->Design().SchematicRedraws();
  TypeInto(Edit("txtCenter"), "7.1M");
  TypeInto(Edit("txtResonatorL"), "1.5u");
  EXPECT_TRUE(D().Center == 7.1e6f && D().ResonatorL == 1.5e-6f && D().L[2] == 1.5e-6f);
  EXPECT_GT(app->Design().SchematicRedraws(), redraws);
  platform->messages.clear();  // "7" and "7." on the way were bands below 0 Hz
  EXPECT_TRUE(HasText(app->DesignCanvas(), FormatInductance(1.5e-6f)));
  Click(Button(window->DesignView(), "cmdDesign"));
  ASSERT_EQ(app->CurrentPage(), PageId::Display);
  EXPECT_TRUE(HasText(app->DisplayCanvas(), "f0 7.1MHz, f1 6.9516MHz, f2 7.2516MHz"));

  Click(Button(window->DisplayView(), "cmdTolerance"));
  EXPECT_FALSE(view.WidgetFor("txtPassEdge2")->isHidden() ||
               view.WidgetFor("txtStopTo1")->isHidden());
  EXPECT_EQ(Widget<QLabel>(view, "lblPassEdge")->text(), "Passband from, Hz");
  EXPECT_GT(Button(view, "cmdRun")->geometry().top(), lowpassRun.top() + 20);  // a row lower
  EXPECT_EQ(Widget<QLineEdit>(view, "txtStopFreq1")->text(), "");  // the lower skirt: a "to"
  for (const auto& [box, text] :
       {std::pair{"txtCtol", "0.2"}, {"txtLtol", "0.2"}, {"txtTrials", "300"}})
    TypeInto(Widget<QLineEdit>(view, box), text);
  TypeInto(Widget<QLineEdit>(view, "txtStopTo1"), "7.2M");  // inside the passband: refused
  Click(Button(view, "cmdRun"));
  ASSERT_EQ(platform->messages.size(), 1u);
  EXPECT_NE(platform->messages[0].text.find("(row 1) reaches into the passband"),
            std::string::npos);
  TypeInto(Widget<QLineEdit>(view, "txtStopTo1"), "6.5M");
  Click(Button(view, "cmdRun"));
  TolerancePage& page = app->Tolerance();
  EXPECT_TRUE(QTest::qWaitFor([&] { return page.HasResult(); }, 20000));
  ASSERT_EQ(page.Result().checks.size(), 3u);
  EXPECT_EQ(page.Result().checks[1].check.name.rfind("attenuation", 0), 0u);
  EXPECT_NE(page.Result().checks[1].check.name.find("to 6.5MHz"), std::string::npos);
  EXPECT_GT(page.Result().yield, 0.5);
}

}  // namespace
}  // namespace drenik::testing
