// The time and Smith chart window: opened from the display page, its
// readout under the mouse, the picture it saves.
#include <QImage>

#include "fixture.h"

namespace drenik::testing {
namespace {

TEST_F(WindowTest, TimeWindowOpensFromTheDisplayPageReadsTheSmithChartAndSaves) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  Click(Button(window->DisplayView(), "cmdTimeSmith"));
  TimeWindow* time = window->Time();
  ASSERT_TRUE(time && time->isVisible());
  EXPECT_EQ(app->Time().Data().stages.size(), 2u);  // exact and 5% C, as the display page shows

  // The pointer on the chart's centre: the matched point of the passband.
  PageSurface& s = time->Surface();
  s.resize(1200, 900);
  const SmithPlace p = SmithPlaceOf(TimeCharts::All);
  const QPoint pixel(static_cast<int>(p.cx / kPageWidth * s.width()),
                     static_cast<int>(p.cy / kPageHeight * s.height()));
  QMouseEvent move(QEvent::MouseMove, QPointF(pixel), s.mapToGlobal(QPointF(pixel)), Qt::NoButton,
                   Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(&s, &move);
  EXPECT_NE(app->Time().Readout().find("Hz  Z = "), std::string::npos) << app->Time().Readout();

  platform->dialogAnswer = folder / "time.svg";
  EXPECT_TRUE(time->SavePicture());
  EXPECT_NE(ReadWhole(platform->dialogAnswer).find("<svg"), std::string::npos);
  platform->dialogAnswer = folder / "missing/time.png";
  EXPECT_FALSE(time->SavePicture());
  EXPECT_EQ(platform->messages.size(), 1u);
}

}  // namespace
}  // namespace drenik::testing
