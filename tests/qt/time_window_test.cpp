// The time and Smith chart window: opened from the display page, its
// readout under the mouse, the picture it saves.
#include <QImage>
#include <QScreen>

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

namespace drenik::testing {
namespace {

// A laptop's 1366 x 768 screen (the offscreen platform's screens are set
// when it starts: a run of the whole program keeps the screen it started
// with, and the test holds there too).
class SmallScreenTest : public WindowTest {
 public:
  static void SetUpTestSuite() {
    if (QCoreApplication::instance()) return;
    static TempFolder config;
    WriteWhole(config / "screen.json",
               R"({"screens": [{"name": "laptop", "x": 0, "y": 0, "width": 1366, )"
               R"("height": 768, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    qputenv("QT_QPA_PLATFORM", QByteArray("offscreen:configfile=") +
                                   QByteArray::fromStdString(config / "screen.json"));
  }
};

// The time and Smith chart window opens inside the screen, its page at 4:3
// over the button row, and every text of a band design's page (the Smith
// chart's title, which ran off the page beside the step charts) stands
// whole on the page.
TEST_F(SmallScreenTest, TimeWindowFitsTheScreenWithEveryTitleWhole) {
  Start();
  const QRect screen = window->screen()->availableGeometry();
  RecordProperty("screen", std::to_string(screen.width()) + "x" + std::to_string(screen.height()));
  TypeInto(Edit("txtBandwidth"), "300k");
  Click(Radio("optCoupledbandpass"));
  TypeInto(Edit("txtCenter"), "7.15M");
  Click(Button(window->DesignView(), "cmdDesign"));
  Click(Button(window->DisplayView(), "cmdTimeSmith"));
  TimeWindow* time = window->Time();
  ASSERT_TRUE(time && time->isVisible());
  EXPECT_TRUE(time->width() <= screen.width() && time->height() <= screen.height())
      << time->width() << "x" << time->height() << " on " << screen.width() << "x"
      << screen.height();
  EXPECT_NEAR(time->Surface().width() * 3.0 / 4, time->Surface().height(), 2);
  for (const DrawOp& op : app->Time().Drawing().Ops()) {
    if (op.kind != DrawOp::Kind::Text) continue;
    EXPECT_TRUE(op.x1 >= 0 && op.x1 + op.textWidth <= kPageWidth) << op.text;
  }
  EXPECT_TRUE(HasText(app->Time().Drawing(), "the squares mark the band edges f1, f2"));
}

}  // namespace
}  // namespace drenik::testing
