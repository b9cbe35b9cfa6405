// The part-stress window: opened from the display page with the design it
// shows, following its power and VSWR boxes keystroke by keystroke and the
// design when it is active again, the worst of each column in red, printed
// after the display page, a box it cannot use named instead of a table.
#include <regex>

#include "fixture.h"
#include "qt/print_page.h"

namespace drenik::testing {
namespace {

int RedTexts(const RecordingCanvas& page) {
  int red = 0;
  for (const DrawOp& op : page.Ops()) red += op.kind == DrawOp::Kind::Text && op.color == kRed;
  return red;
}

TEST_F(WindowTest, StressWindowFollowsItsBoxesAndMarksTheWorst) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  Click(Button(window->DisplayView(), "cmdStress"));
  StressWindow* stress = window->Stress();
  ASSERT_TRUE(stress && stress->isVisible());
  const StressPage& page = app->Stress();
  ASSERT_EQ(page.Result().parts.size(), 5u);  // the default Chebyshev 5, in the strip's order
  EXPECT_EQ(page.Result().parts[1].name, "L2");
  EXPECT_GE(RedTexts(app->StressCanvas()), 3);  // the largest voltage, current and dissipation
  const double matched = page.Result().parts[2].v.value;

  // 400 W is twice the voltage; a 3:1 load raises it further.
  TypeInto(Widget<QLineEdit>(stress->View(), "txtPower"), "400");
  EXPECT_NEAR(page.Result().parts[2].v.value, 2 * matched, 1e-6 * matched);
  TypeInto(Widget<QLineEdit>(stress->View(), "txtVswr"), "3");
  EXPECT_GT(page.Result().parts[2].v.value, 2.2 * matched);
  // Up 1% behind it: the window takes the new design when it is active again.
  Click(Button(window->DisplayView(), "cmdUp"));
  window->activateWindow();
  stress->activateWindow();
  QApplication::processEvents();
  EXPECT_EQ(page.Result().parts[1].part.value, app->Record().L[2]);
  // Printed after the display page, on a sheet of its own.
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(QString::fromStdString(folder / "stress.pdf"));
  const RecordingCanvas paper = page.PaperDrawing();
  ASSERT_TRUE(PrintDisplayPage(app->Record(), app->DisplayCanvas(), printer, *platform, &paper));
  const std::string pdf = ReadWhole(folder / "stress.pdf");
  const std::regex sheet("/Type\\s*/Page[^s]");
  EXPECT_EQ(std::distance(std::sregex_iterator(pdf.begin(), pdf.end(), sheet), {}), 2);

  TypeInto(Widget<QLineEdit>(stress->View(), "txtVswr"), "0.5");
  EXPECT_NE(page.Problem().find("VSWR"), std::string::npos);
  EXPECT_TRUE(page.Result().parts.empty());
  EXPECT_TRUE(platform->messages.empty());
}

}  // namespace
}  // namespace drenik::testing
