// The designer window end to end: clicks and typing through the widgets,
// the pages they lead to, and the last-session file between runs.
#include <QLabel>
#include <sstream>
#include <vector>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QInputDialog>
#include <QSpinBox>
#include <QTimer>
#include "core/formatters.h"

#include "export/formats.h"
#include "fixture.h"
#include "qt/other_design_dialog.h"
#include "qt/part_models_dialog.h"
#include "qt/parts_dialog.h"
#include "qt/spice_dialog.h"
#include "qt/winding_box.h"

namespace drenik::testing {
namespace {

TEST_F(WindowTest, FirstStartDesignToDisplayAndBackKeepsTheSessionForTheNextStart) {
  Start();  // defaults, quietly; the link opens the guide
  EXPECT_TRUE(platform->messages.empty());
  for (const char* option :
       {"optChebycheff", "optOrder5", "optCinlowpass", "opt044", "optAstop40", "optZ50", "optQ1"})
    EXPECT_TRUE(Radio(option)->isChecked()) << option;
  EXPECT_FALSE(window->DesignView().WidgetFor("frmStopbandDepth")->isEnabled());
  Click(Button(window->DesignView(), "cmdZelmarSoftware"));
  EXPECT_EQ(platform->urls, std::vector<std::string>{"guide"});
  // Without a browser a message says where the guide is.
  platform->browser = false;
  Click(Button(window->DesignView(), "cmdZelmarSoftware"));
  ASSERT_EQ(platform->messages.size(), 1u);
  EXPECT_TRUE(platform->messages[0].text.ends_with("It is at guide"));
  platform->messages.clear();
  platform->browser = true;

  // Zelmar: order fixed at 5, the order, ripple and stopband groups disabled.
  Click(Radio("optZelmar"));
  EXPECT_TRUE(Radio("optOrder5")->isChecked());
  for (const char* frame : {"frmOrder", "frmRipple", "frmStopbandDepth"})
    EXPECT_FALSE(window->DesignView().WidgetFor(frame)->isEnabled()) << frame;
  EXPECT_FALSE(Radio("optOrder3")->isEnabled());

  // Every keystroke in the bandwidth box redesigns and redraws the strip.
  int redraws = app->Design().SchematicRedraws();
  TypeInto(Edit("txtBandwidth"), "7.5M");
  EXPECT_FLOAT_EQ(D().Width, 7.5e6f);
  EXPECT_GE(app->Design().SchematicRedraws(), redraws + 4);
  Click(Radio("optQ2"));
  TypeInto(Edit("txtQother"), "1");  // clamped to 2; the box keeps what was typed
  EXPECT_EQ(D().Qind, 2.0f);
  EXPECT_EQ(Edit("txtQother")->text(), "1");
  Click(Radio("optQ1"));
  EXPECT_EQ(Edit("txtQother")->text(), "1M");

  ControlPageView& display = window->DisplayView();
  Click(Button(window->DesignView(), "cmdDesign"));
  ASSERT_EQ(app->CurrentPage(), PageId::Display);
  EXPECT_EQ(window->windowTitle(), "Drenik Filter Designer - Display");
  const RecordingCanvas& page = app->DisplayCanvas();

  Click(Button(display, "cmdUp"));
  EXPECT_FLOAT_EQ(D().Width, static_cast<float>(7.5e6f * 1.01));
  EXPECT_TRUE(HasText(page, "Bandwidth: " + FormatFrequency(D().Width)));
  // Up left the 5% L values on: the first Inductors click goes back.
  for (const char* button : {"cmdVSWR", "cmdTime", "cmdInductors"}) Click(Button(display, button));
  EXPECT_TRUE(D().ShowVSWR == 1 && D().ShowDelay == 1 && D().InductorMode == 0);
  Click(Button(display, "cmdInductors"));
  EXPECT_EQ(D().ValueMode, 3);

  // The readout follows the mouse over the plot, and leaves it.
  QPointF at = display.Surface().ToPage(MoveMouse(5200, 6100));
  DataReadout expected =
      ComputeReadout(D(), static_cast<float>(at.x()), static_cast<float>(at.y()));
  ASSERT_TRUE(expected.onPlot);
  EXPECT_FALSE(HasText(page, "Cursor on plot"));
  EXPECT_TRUE(HasText(page, expected.frequency) && HasText(page, expected.transmission));
  MoveMouse(2000, 2000);
  EXPECT_TRUE(HasText(page, "Cursor on plot"));
  EXPECT_FALSE(HasText(page, expected.frequency));

  // Back on the design page the controls show the record.
  float width = D().Width;
  Click(Button(display, "cmdDesign"));
  EXPECT_TRUE(Radio("optZelmar")->isChecked() && !Radio("optOrder3")->isEnabled());
  EXPECT_EQ(Edit("txtBandwidth")->text().toStdString(), FormatFrequency(width));

  Click(Button(window->DesignView(), "cmdExit"));
  EXPECT_TRUE(platform->ended);
  EXPECT_FALSE(window->isVisible());
  std::vector<std::string> lines = CrLfLines(sessionPath), f;
  ASSERT_EQ(lines.size(), 1u);
  std::stringstream in(lines[0]);
  for (std::string field; std::getline(in, field, ',');) f.push_back(field);
  ASSERT_EQ(f.size(), 8u) << lines[0];
  EXPECT_EQ(f[0] + f[2] + f[5], "54\"Cinlowpass\"");
  EXPECT_TRUE(std::stof(f[1]) == width && std::stof(f[7]) == 1e6f) << lines[0];

  Start();
  EXPECT_TRUE(Radio("optZelmar")->isChecked());
  EXPECT_EQ(Edit("txtBandwidth")->text().toStdString(), FormatFrequency(width));
  EXPECT_TRUE(platform->messages.empty());
}

TEST_F(WindowTest, OpeningLinkOpensTheGuideAndExitKeepsTheFile) {
  const std::string odd = "3,1E+10,1,.01,30,\"Linhighpass\",75,200\r\n";
  WriteWhole(sessionPath, odd);
  Launch();
  platform->browser = false;
  emit Widget<QLabel>(window->OpeningView(), "lblVisit")->linkActivated("#");
  EXPECT_EQ(platform->urls, std::vector<std::string>{"guide"});
  ASSERT_EQ(platform->messages.size(), 1u);
  EXPECT_TRUE(platform->messages[0].text.ends_with("It is at guide"));
  Click(Button(window->OpeningView(), "cmdExit"));
  EXPECT_TRUE(platform->ended);
  EXPECT_EQ(ReadWhole(sessionPath), odd);
}

// A session the program cannot design from starts like a first start, with
// no message; Exit then writes a file the next start can use. A value that
// is plausible but no option's is kept, with no option selected.
TEST_F(WindowTest, AnUnusableSessionFileStartsFromTheDefaultsQuietly) {
  // The first-start choices, as Exit writes them (Chebyshev keeps no depth).
  const std::string defaults = "5,4200000,2,.044,0,\"Cinlowpass\",50,1000000\r\n";
  for (const char* unusable : {
           "99,4200000,2,.044,40,\"Cinlowpass\",50,1000000",  // order
           "0,4200000,2,.044,40,\"Cinlowpass\",50,1000000",
           "5,4200000,9,.044,40,\"Cinlowpass\",50,1000000",  // family
           "5,4200000,-1,.044,40,\"Cinlowpass\",50,1000000",
           "5,4200000,2,.044,40,\"Cinlowpass\",0,1000000",  // impedance
           "5,4200000,2,.044,40,\"Cinlowpass\",-50,1000000",
           "5,4200000,2,.044,40,\"Cinlowpass\",1e-30,1000000",
           "5,4200000,2,.044,40,\"Cinlowpass\",50,1e-30",  // Q
           "5,4200000,2,-1,40,\"Cinlowpass\",50,1000000",  // ripple, depth
           "5,4200000,3,.044,1e30,\"Cinlowpass\",50,1000000",
           "5,4200000,3,100,40,\"Cinlowpass\",50,1000000",
           "5,-5,3,.044,40,\"Cinlowpass\",50,1000000",     // bandwidth
           "5,4200000,2,.044,40,\"Bandpass\",50,1000000",  // topology
       }) {
    SCOPED_TRACE(unusable);
    WriteWhole(sessionPath, std::string(unusable) + "\r\n");
    Start();
    EXPECT_TRUE(platform->messages.empty()) << platform->messages[0].text;
    for (const char* option : {"optChebycheff", "optOrder5", "optCinlowpass", "opt044", "optZ50"})
      EXPECT_TRUE(Radio(option)->isChecked()) << option;
    Click(Button(window->DesignView(), "cmdExit"));
    EXPECT_EQ(ReadWhole(sessionPath), defaults);
  }

  const std::string odd = "5,4200000,2,.1,0,\"Cinlowpass\",50,1000000\r\n";
  WriteWhole(sessionPath, odd);
  Start();
  EXPECT_TRUE(platform->messages.empty());
  for (const char* option : {"opt01", "opt044", "opt200"}) EXPECT_FALSE(Radio(option)->isChecked());
  Click(Button(window->DesignView(), "cmdExit"));
  EXPECT_EQ(ReadWhole(sessionPath), odd);
}

TEST_F(WindowTest, KeyboardToTheDisplayPageThenRetunesStayBoundedAndTheSpiceDialogWorks) {
  Launch();
  Press(Button(window->OpeningView(), "cmdStart"), Qt::Key_Return);
  ASSERT_EQ(app->CurrentPage(), PageId::Design);

  // Arrow keys move the selection within a group, as a click does.
  QRadioButton* chebyshev = Radio("optChebycheff");
  Press(chebyshev, Qt::Key_Down);
  EXPECT_TRUE(D().Family == 3 && Radio("optCauer")->isChecked());
  QTest::keyClick(Radio("optCauer"), Qt::Key_Up);
  EXPECT_EQ(D().Family, 2);
  ASSERT_EQ(QApplication::focusWidget(), chebyshev);

  Press(Button(window->DesignView(), "cmdDesign"), Qt::Key_Enter);
  ASSERT_EQ(app->CurrentPage(), PageId::Display);

  // Each retune redraws the page; nothing piles up.
  Click(Button(window->DisplayView(), "cmdUp"));
  size_t drawn = app->DisplayCanvas().Ops().size();
  for (int i = 0; i < 20; ++i) Click(Button(window->DisplayView(), i % 2 ? "cmdUp" : "cmdDown"));
  EXPECT_LE(app->DisplayCanvas().Ops().size(), drawn + drawn / 10);

  // LTspice: "Draw" writes the file the save dialog names, "Cancel" closes.
  SpicePage page(D(), *platform);
  SpiceDialog dialog(page, window.get());
  dialog.show();
  platform->dialogAnswer = folder / "ladder.ASC";
  Click(dialog.DrawButton());
  ASSERT_EQ(platform->dialogs.size(), 1u);
  EXPECT_TRUE(ReadWhole(platform->dialogAnswer).starts_with("Version 4"));
  EXPECT_TRUE(platform->messages.empty());
  Click(dialog.CancelButton());
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(platform->dialogs.size(), 1u);
}

// A band the engine refuses raises no message, whether its topology is
// clicked or its resonator inductance typed a key at a time: the choice
// stays, the label under the frames and the strip say why, and Display
// responses gives the message once and stays on the design page.
TEST_F(WindowTest, ARefusedBandWaitsBesideItsBoxesWithoutAMessage) {
  Start();
  EXPECT_FALSE(Edit("txtCenter")->isEnabled());
  Click(Radio("optCauer"));
  Click(Radio("optCoupledbandpass"));  // the coupled form takes no elliptic prototype
  auto label = [&] { return Widget<QLabel>(window->DesignView(), "lblBandEdges")->text(); };
  EXPECT_TRUE(Radio("optCoupledbandpass")->isChecked() && Edit("txtResonatorL")->isEnabled());
  EXPECT_TRUE(label().startsWith("The coupled-resonator bandpass is designed from"));
  EXPECT_TRUE(HasText(app->DesignCanvas(), "No design for this band:"));
  Click(Radio("optChebycheff"));
  TypeInto(Edit("txtBandwidth"), "300k");
  TypeInto(Edit("txtResonatorL"), "2.2u");  // "2", "2." and "2.2" have no design
  EXPECT_TRUE(platform->messages.empty());
  EXPECT_TRUE(D().L[2] == 2.2e-6f && label().startsWith("f1 7.0016MHz"));
  QDir().mkpath(DRENIK_BINARY_DIR "/screenshots");
  window->grab().save(DRENIK_BINARY_DIR "/screenshots/design-band-edges.png");
  TypeInto(Edit("txtResonatorL"), "2");
  window->grab().save(DRENIK_BINARY_DIR "/screenshots/design-band-refused.png");
  Click(Button(window->DesignView(), "cmdDesign"));
  EXPECT_TRUE(platform->messages.size() == 1u && app->CurrentPage() == PageId::Design);
}

// "Sweep" is open for a band design only; its dialog shows the span as the
// page holds it, and OK sweeps the band from f0/k to k f0.
TEST_F(WindowTest, SweepDialogWidensABandsSweep) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  EXPECT_FALSE(Button(window->DisplayView(), "cmdSweep")->isEnabled());
  Click(Button(window->DisplayView(), "cmdDesign"));
  TypeInto(Edit("txtBandwidth"), "300k");
  Click(Radio("optCinbandpass"));
  Click(Button(window->DesignView(), "cmdDesign"));
  QTimer::singleShot(0, [] {
    auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->textValue().isEmpty() && dialog->labelText().contains("7.15MHz"));
    dialog->setTextValue("3");
    dialog->accept();
  });
  Click(Button(window->DisplayView(), "cmdSweep"));
  EXPECT_TRUE(D().Fstop == float(D().Center * 3) && platform->messages.empty());
}

// A refused design opens no display page: from a fresh start the coupled
// bandpass is refused at the default 4.2 MHz width (the label says so), and
// "Display responses" gives the message and stays on the design page. The writers of every export
// refuse the zero parts it leaves, with a message, and write no file.
TEST_F(WindowTest, ARefusedDesignOpensNoDisplayPageAndNoWriterTakesIt) {
  Start();
  Click(Radio("optCoupledbandpass"));
  ASSERT_TRUE(platform->messages.empty());
  Click(Button(window->DesignView(), "cmdDesign"));
  EXPECT_EQ(platform->messages.size(), 1u);
  EXPECT_EQ(app->CurrentPage(), PageId::Design);
  EXPECT_FALSE(window->DisplayView().isVisible());
  for (const ExportFormat& f : ExportFormats()) {
    const std::string file = folder / (std::string("refused") + f.extension);
    EXPECT_FALSE(f.write(D(), file, *platform)) << f.option;
    EXPECT_FALSE(std::filesystem::exists(file)) << f.option;
    EXPECT_NE(platform->messages.back().text.find(" is 0 F in this design"), std::string::npos)
        << platform->messages.back().text;
  }
}

// "Chosen parts" opens its dialog over the window: OK takes the series and
// pairs and draws the stage, Cancel changes nothing.
TEST_F(WindowTest, ChosenPartsDialogTakesTheSeriesAndDrawsTheStage) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  auto answer = [](bool ok) {
    QTimer::singleShot(0, [ok] {
      auto* dialog = qobject_cast<PartsDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(dialog->Request().capacitors, ESeries::E24);
      EXPECT_FALSE(dialog->Request().inductors || dialog->Request().pairs);
      dialog->Capacitors()->setCurrentIndex(4);
      dialog->Inductors()->setCurrentIndex(2);
      dialog->Pairs()->setChecked(true);
      ok ? dialog->accept() : dialog->reject();
    });
  };
  answer(false);
  Click(Button(window->DisplayView(), "cmdChosenParts"));
  EXPECT_TRUE(!app->Display().ChosenParts() && D().ValueMode == 2);
  answer(true);
  Click(Button(window->DisplayView(), "cmdChosenParts"));
  ASSERT_TRUE(app->Display().ChosenParts());
  const PartsRequest& r = app->Display().ChosenParts()->request;
  EXPECT_TRUE(r.capacitors == ESeries::E96 && r.inductors == ESeries::E12 && r.pairs);
  EXPECT_EQ(D().ValueMode, kChosenPartsMode);

  // E6 parts give stopband away: the dialog comes back with the line that
  // says so over its choices; "Keep these parts" keeps them.
  QTimer::singleShot(0, [this] {
    auto* dialog = qobject_cast<PartsDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(dialog->Note()->isVisible());
    dialog->Capacitors()->setCurrentIndex(0);
    dialog->Inductors()->setCurrentIndex(1);
    dialog->Pairs()->setChecked(false);
    QTimer::singleShot(0, [this] {
      auto* again = qobject_cast<PartsDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(again, nullptr);
      EXPECT_TRUE(again->Note()->isVisible());
      EXPECT_EQ(again->Note()->text().toStdString(), app->Display().ChosenParts()->note);
      again->grab().save(DRENIK_BINARY_DIR "/screenshots/parts-dialog-note.png");
      again->reject();
    });
    dialog->accept();
  });
  Click(Button(window->DisplayView(), "cmdChosenParts"));
  EXPECT_TRUE(app->Display().ChosenParts()->note.starts_with("E6 capacitors and E6 inductors"));
}

// "Other order and ripple" opens its dialog: the family's ranges, and the
// design beyond the buttons it gives reaches the display page (the user
// guide's 9th-order example and its pictures).
TEST_F(WindowTest, OtherOrderAndRippleDialogDesignsBeyondTheButtons) {
  Start();
  QDir().mkpath(DRENIK_BINARY_DIR "/screenshots");
  QTimer::singleShot(0, [] {
    auto* dialog = qobject_cast<OtherDesignDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->Order()->minimum() == 2 && dialog->Order()->maximum() == 15);
    EXPECT_FALSE(dialog->Depth()->isEnabled());  // Chebyshev: a ripple, no depth
    dialog->Order()->setValue(9);
    dialog->Ripple()->setValue(0.07);
    dialog->grab().save(DRENIK_BINARY_DIR "/screenshots/other-design-dialog.png");
    dialog->accept();
  });
  TypeInto(Edit("txtBandwidth"), "14.5M");
  Click(Button(window->DesignView(), "cmdOtherDesign"));
  EXPECT_TRUE(D().Order == 9 && D().Apass == 0.07f && D().Stages == 9);
  EXPECT_FALSE(Radio("optOrder5")->isChecked() || Radio("opt044")->isChecked());
  window->resize(1366, 768);
  window->grab().save(DRENIK_BINARY_DIR "/screenshots/design-order9.png");
  Click(Button(window->DesignView(), "cmdDesign"));
  EXPECT_TRUE(HasText(app->DisplayCanvas(), "Bandwidth:  14.5MHz "));
  window->grab().save(DRENIK_BINARY_DIR "/screenshots/display-order9.png");
}

// "Part models" opens its dialog over the window: what is typed there
// redraws the curves and lists each inductor's self-resonance; its winding is
// the chosen-parts dialog's too, which takes whole turns in place of a series.
TEST_F(WindowTest, PartModelsDialogRedrawsTheCurvesAndItsWindingReachesTheChosenParts) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  const SweepArray ideal = D().Transmission;
  QDir().mkpath(DRENIK_BINARY_DIR "/screenshots");
  QTimer::singleShot(0, [] {
    auto* dialog = qobject_cast<PartModelsDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->CapacitorQ()->text() == "inf" &&
                dialog->WindingCapacitance()->text() == "");
    dialog->Law()->setCurrentIndex(1);
    dialog->CapacitorQ()->setText("500");
    dialog->WindingCapacitance()->setText("40p");
    QComboBox* formers = dialog->Winding()->Formers();
    formers->setCurrentIndex(formers->count() - 1);  // the air-core coil
    dialog->Winding()->FormMm()->setValue(10);
    dialog->grab().save(DRENIK_BINARY_DIR "/screenshots/part-models-dialog.png");
    dialog->accept();
  });
  Click(Button(window->DisplayView(), "cmdPartModels"));
  EXPECT_TRUE(D().InductorQLaw == QLaw::Sqrt && D().CapacitorQ == 500 &&
              D().WindingCapacitance == 40e-12f);
  EXPECT_NE(D().Transmission, ideal);
  EXPECT_TRUE(HasText(app->DisplayCanvas(), "Self-resonance:"));
  window->grab().save(DRENIK_BINARY_DIR "/screenshots/display-part-models.png");

  QTimer::singleShot(0, [] {
    auto* dialog = qobject_cast<PartsDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(dialog->Inductors()->isEnabled());
    EXPECT_EQ(dialog->Request().former->air.formMm, 10);
    dialog->Winding()->Formers()->setCurrentIndex(2);  // T50-2, second in the core table
    dialog->accept();
  });
  Click(Button(window->DisplayView(), "cmdChosenParts"));
  ASSERT_TRUE(app->Display().ChosenParts());
  EXPECT_EQ(app->Display().ChosenParts()->request.former->Name(), "T50-2");
  EXPECT_GT(app->Display().ChosenParts()->positions[1].turns, 0);
}

}  // namespace
}  // namespace drenik::testing
