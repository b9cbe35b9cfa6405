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

// A band typed into the design page reaches the strip and the display page;
// the tolerance window then shows the band's mask boxes (a lowpass's window
// hides them) and runs its mask.
TEST_F(WindowTest, ABandTypedOnTheDesignPageReachesTheDisplayAndTheToleranceWindowRunsItsMask) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  Click(Button(window->DisplayView(), "cmdTolerance"));
  window->Tolerance()->resize(1200, 900);
  ControlPageView& view = window->Tolerance()->View();
  const int lowpassRun = Button(view, "cmdRun")->geometry().top();
  EXPECT_TRUE(view.WidgetFor("txtPassEdge2")->isHidden() &&
              view.WidgetFor("txtStopTo1")->isHidden());
  Click(Button(view, "cmdClose"));
  Click(Button(window->DisplayView(), "cmdDesign"));

  TypeInto(Edit("txtBandwidth"), "300k");
  Click(Radio("optCoupledbandpass"));
  const int redraws = app->Design().SchematicRedraws();
  TypeInto(Edit("txtCenter"), "7.1M");
  TypeInto(Edit("txtResonatorL"), "1.5u");
  EXPECT_TRUE(D().Center == 7.1e6f && D().L[2] == 1.5e-6f);
  EXPECT_GT(app->Design().SchematicRedraws(), redraws);
  EXPECT_TRUE(HasText(app->DesignCanvas(), FormatInductance(1.5e-6f)));
  Click(Button(window->DesignView(), "cmdDesign"));
  EXPECT_TRUE(HasText(app->DisplayCanvas(), "f0 7.1MHz, f1 6.9516MHz, f2 7.2516MHz"));

  Click(Button(window->DisplayView(), "cmdTolerance"));
  EXPECT_FALSE(view.WidgetFor("txtPassEdge2")->isHidden() ||
               view.WidgetFor("txtStopTo1")->isHidden());
  EXPECT_EQ(Widget<QLabel>(view, "lblPassEdge")->text(), "Passband from, Hz");
  EXPECT_GT(Button(view, "cmdRun")->geometry().top(), lowpassRun + 20);  // a row lower
  for (const auto& [box, text] : {std::pair{"txtCtol", "0.2"},
                                  {"txtLtol", "0.2"},
                                  {"txtTrials", "300"},
                                  {"txtStopTo1", "6.5M"}})
    TypeInto(Widget<QLineEdit>(view, box), text);
  Click(Button(view, "cmdRun"));
  TolerancePage& page = app->Tolerance();
  EXPECT_TRUE(QTest::qWaitFor([&] { return page.HasResult(); }, 20000));
  ASSERT_EQ(page.Result().checks.size(), 3u);
  EXPECT_TRUE(page.Result().checks[1].check.name.ends_with(" to 6.5MHz"));
  EXPECT_GT(page.Result().yield, 0.5);
}

// The side windows follow the display page: after three presses of Up 1%
// the time and Smith window shows the new cutoff and the tolerance window
// marks its result out of date until Run again analyses the design shown.
// Its values take the chosen parts, which the display page then draws. A
// closed window no longer follows.
TEST_F(WindowTest, SideWindowsFollowTheDisplayPageAndTestTheChosenParts) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  ControlPageView& display = window->DisplayView();
  Click(Button(display, "cmdTimeSmith"));
  Click(Button(display, "cmdTolerance"));
  ControlPageView& view = window->Tolerance()->View();
  TolerancePage& page = app->Tolerance();
  TypeInto(Widget<QLineEdit>(view, "txtTrials"), "200");
  Click(Button(view, "cmdRun"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return page.HasResult(); }, 10000));

  for (int k = 0; k < 3; ++k) Click(Button(display, "cmdUp"));
  const std::string cutoff = "cutoff " + TrimBlanks(FormatFrequency(D().Width));
  EXPECT_NE(app->Time().Data().title.find(cutoff), std::string::npos) << app->Time().Data().title;
  EXPECT_TRUE(page.OutOfDate() && page.HasResult());
  QPushButton* run = Button(view, "cmdRun");
  EXPECT_EQ(run->text(), "Run again");
  Click(run);
  ASSERT_TRUE(QTest::qWaitFor([&] { return page.HasResult(); }, 10000));
  EXPECT_TRUE(!page.OutOfDate() && run->text() == "Run" && page.Stage().Width == D().Width);

  Click(Widget<QRadioButton>(view, "optChosen"));
  EXPECT_TRUE(page.CurrentStage() == ValueStage::Chosen && D().ValueMode == kChosenPartsMode);
  EXPECT_TRUE(HasText(app->DisplayCanvas(), "Chosen parts"));
  EXPECT_TRUE(platform->messages.empty());

  window->Time()->close();
  const std::string title = app->Time().Data().title;
  Click(Button(display, "cmdDown"));
  EXPECT_EQ(app->Time().Data().title, title);
}

}  // namespace
}  // namespace drenik::testing
