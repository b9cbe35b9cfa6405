// The designer window end to end: clicks and typing through the widgets,
// the pages they lead to, and the last-session file between runs.
#include <QGroupBox>
#include <QLabel>
#include <QStackedWidget>
#include <sstream>
#include <vector>

#include "core/formatters.h"
#include "pages/display_page.h"
#include "window_fixture.h"

namespace drenik::testing {
namespace {

std::vector<std::string> SplitFields(std::string line) {
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  std::vector<std::string> fields;
  std::stringstream in(line);
  for (std::string field; std::getline(in, field, ',');) fields.push_back(field);
  return fields;
}

TEST_F(WindowTest, DesignToDisplayAndBackKeepsTheSessionForTheNextStart) {
  Launch();
  EXPECT_EQ(Window().windowTitle(), "Drenik Filter Designer - Opening");
  Click(Button(Window().OpeningView(), "cmdStart"));
  ASSERT_EQ(App().CurrentPage(), PageId::Design);
  EXPECT_EQ(Window().windowTitle(), "Drenik Filter Designer 2.12 - Design");

  // Zelmar: order fixed at 5, the order, ripple and stopband groups disabled.
  Click(Radio("optZelmar"));
  EXPECT_EQ(D().Family, 4);
  EXPECT_EQ(D().Order, 5);
  EXPECT_TRUE(Radio("optOrder5")->isChecked());
  for (const char* frame : {"frmOrder", "frmRipple", "frmStopbandDepth"}) {
    EXPECT_FALSE(Window().DesignView().WidgetFor(frame)->isEnabled()) << frame;
  }
  EXPECT_FALSE(Radio("optOrder3")->isEnabled());
  for (const char* ripple : {"opt01", "opt044", "opt200"}) {
    EXPECT_FALSE(Radio(ripple)->isChecked()) << ripple;
  }
  EXPECT_EQ(Widget<QLabel>(Window().DesignView(), "lblRipple")->text(), "(0.2 dB)");

  // Every keystroke in the bandwidth box redesigns and redraws the strip.
  int redraws = App().Design().SchematicRedraws();
  TypeInto(Edit("txtBandwidth"), "7.5M");
  EXPECT_FLOAT_EQ(D().Width, 7.5e6f);
  EXPECT_GE(App().Design().SchematicRedraws(), redraws + 4);
  EXPECT_EQ(Edit("txtBandwidth")->text(), "7.5M");
  // The box keeps what was typed even when the page clamps the value.
  TypeInto(Edit("txtQother"), "1");  // disabled while "Infinite": typing is refused
  EXPECT_EQ(Edit("txtQother")->text(), "1M");
  EXPECT_EQ(D().Qind, 1e6f);
  Click(Radio("optQ2"));
  TypeInto(Edit("txtQother"), "1");
  EXPECT_EQ(D().Qind, 2.0f);
  EXPECT_EQ(Edit("txtQother")->text(), "1");
  Click(Radio("optQ1"));
  EXPECT_EQ(Edit("txtQother")->text(), "1M");
  EXPECT_FALSE(Edit("txtQother")->isEnabled());

  ControlPageView& display = Window().DisplayView();
  Click(Button(Window().DesignView(), "cmdDesign"));
  ASSERT_EQ(App().CurrentPage(), PageId::Display);
  EXPECT_EQ(Window().windowTitle(), "Drenik Filter Designer - Display");
  EXPECT_EQ(D().Rload, D().Rsource);
  const RecordingCanvas& page = App().DisplayCanvas();
  EXPECT_TRUE(HasText(page, "Cursor on plot"));

  Click(Button(display, "cmdUp"));
  EXPECT_FLOAT_EQ(D().Width, static_cast<float>(7.5e6f * 1.01));
  EXPECT_TRUE(HasText(page, "Bandwidth: " + FormatFrequency(D().Width)));
  Click(Button(display, "cmdVSWR"));
  EXPECT_EQ(D().ShowVSWR, 1);
  Click(Button(display, "cmdTime"));
  EXPECT_EQ(D().ShowDelay, 1);
  Click(Button(display, "cmdInductors"));  // Up left it at 1: back to exact and 5% C
  EXPECT_EQ(D().InductorMode, 0);
  Click(Button(display, "cmdInductors"));
  EXPECT_EQ(D().InductorMode, 1);
  EXPECT_EQ(D().ValueMode, 3);

  // The readout follows the mouse over the plot, and leaves it.
  QPoint onPlot = DisplayPixel(5200, 6100);
  MoveMouse(onPlot);
  QPointF pagePos = display.Surface().ToPage(onPlot);
  DataReadout expected =
      ComputeReadout(D(), static_cast<float>(pagePos.x()), static_cast<float>(pagePos.y()));
  ASSERT_TRUE(expected.onPlot);
  EXPECT_FALSE(HasText(page, "Cursor on plot"));
  for (const std::string& value : {expected.frequency, expected.transmission, expected.reflection,
                                   expected.vswr, expected.delay}) {
    EXPECT_TRUE(HasText(page, value)) << value;
  }
  MoveMouse(DisplayPixel(2000, 2000));
  EXPECT_TRUE(HasText(page, "Cursor on plot"));
  EXPECT_FALSE(HasText(page, expected.frequency));

  // Back on the design page the controls show the record.
  float width = D().Width;
  Click(Button(display, "cmdDesign"));
  ASSERT_EQ(App().CurrentPage(), PageId::Design);
  EXPECT_TRUE(Radio("optZelmar")->isChecked());
  EXPECT_FALSE(Radio("optOrder3")->isEnabled());
  EXPECT_EQ(Edit("txtBandwidth")->text().toStdString(), FormatFrequency(width));

  Click(Button(Window().DesignView(), "cmdExit"));
  EXPECT_TRUE(platform->ended);
  EXPECT_FALSE(Window().isVisible());
  std::vector<std::string> fields = SplitFields(SessionFile());
  ASSERT_EQ(fields.size(), 8u) << SessionFile();
  EXPECT_EQ(fields[0], "5");
  EXPECT_EQ(std::stof(fields[1]), width);
  EXPECT_EQ(fields[2], "4");
  EXPECT_EQ(fields[5], "\"Cinlowpass\"");
  EXPECT_EQ(std::stof(fields[7]), 1e6f);

  Launch();
  Click(Button(Window().OpeningView(), "cmdStart"));
  EXPECT_TRUE(Radio("optZelmar")->isChecked());
  EXPECT_TRUE(Radio("optOrder5")->isChecked());
  EXPECT_TRUE(Radio("optQ1")->isChecked());
  EXPECT_EQ(Edit("txtBandwidth")->text().toStdString(), FormatFrequency(width));
  EXPECT_EQ(D().Width, width);
  EXPECT_TRUE(platform->messages.empty());
}

TEST_F(WindowTest, FirstStartShowsDefaultsAndOpeningExitKeepsTheFile) {
  Launch();
  Click(Button(Window().OpeningView(), "cmdStart"));
  EXPECT_TRUE(platform->messages.empty());
  for (const char* option :
       {"optChebycheff", "optOrder5", "optCinlowpass", "opt044", "optAstop40", "optZ50", "optQ1"}) {
    EXPECT_TRUE(Radio(option)->isChecked()) << option;
  }
  EXPECT_EQ(Edit("txtBandwidth")->text().toStdString(), FormatFrequency(4.2e6));
  EXPECT_FALSE(Edit("txtZother")->isEnabled());
  EXPECT_FALSE(Window().DesignView().WidgetFor("frmStopbandDepth")->isEnabled());
  EXPECT_EQ(Widget<QLabel>(Window().DesignView(), "lblRipple")->text(), "(ripple)");

  const std::string odd = "3,1E+10,1,.01,30,\"Linhighpass\",75,200\r\n";
  WriteSessionFile(odd);
  Launch();
  auto* heading = Widget<QLabel>(Window().OpeningView(), "lblHeading1");
  EXPECT_EQ(heading->text(), "Drenik Filter Designer");
  EXPECT_EQ(heading->font().family(), "Times New Roman");
  EXPECT_EQ(Widget<QLabel>(Window().OpeningView(), "lblVersion")->text(), "Version 2.12");
  Click(Button(Window().OpeningView(), "cmdExit"));
  EXPECT_TRUE(platform->ended);
  EXPECT_EQ(SessionFile(), odd);
}

TEST_F(WindowTest, KeyboardMovesThroughOptionsAndPressesButtons) {
  Launch();
  QPushButton* start = Button(Window().OpeningView(), "cmdStart");
  start->setFocus();
  QTest::keyClick(start, Qt::Key_Return);
  ASSERT_EQ(App().CurrentPage(), PageId::Design);

  // Arrow keys move the selection within a group, as a click does.
  QRadioButton* chebyshev = Radio("optChebycheff");
  chebyshev->setFocus();
  QTest::keyClick(chebyshev, Qt::Key_Down);
  EXPECT_EQ(D().Family, 3);
  EXPECT_TRUE(Radio("optCauer")->isChecked());
  EXPECT_TRUE(Window().DesignView().WidgetFor("frmStopbandDepth")->isEnabled());
  QTest::keyClick(Radio("optCauer"), Qt::Key_Up);
  EXPECT_EQ(D().Family, 2);
  ASSERT_EQ(QApplication::focusWidget(), chebyshev);

  // Tab leaves the family group for the order group.
  std::vector<QWidget*> chain;
  QWidget* w = Radio("optBessel");
  for (int i = 0; i < 3; ++i) chain.push_back(w = w->nextInFocusChain());
  bool reachesOrder = false;
  for (QWidget* next : chain)
    reachesOrder |= next->parentWidget() == Window().DesignView().WidgetFor("frmOrder");
  EXPECT_TRUE(reachesOrder);

  QPushButton* show = Button(Window().DesignView(), "cmdDesign");
  show->setFocus();
  QTest::keyClick(show, Qt::Key_Enter);
  EXPECT_EQ(App().CurrentPage(), PageId::Display);
}

TEST_F(WindowTest, LinksOpenTheUserGuide) {
  Launch();
  auto* visit = Widget<QLabel>(Window().OpeningView(), "lblVisit");
  EXPECT_TRUE(visit->text().contains("User guide"));
  emit visit->linkActivated("#");
  Click(Button(Window().OpeningView(), "cmdStart"));
  Click(Button(Window().DesignView(), "cmdZelmarSoftware"));
  EXPECT_EQ(platform->urls, (std::vector<std::string>{"guide", "guide"}));
  EXPECT_EQ(App().CurrentPage(), PageId::Design);
}

}  // namespace
}  // namespace drenik::testing
