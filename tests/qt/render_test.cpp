#include "qt/render.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <string>
#include <vector>

#include "core/formatters.h"
#include "plot/response_plot.h"
#include "qt/canvas_widget.h"
#include "qt/display_fixture.h"
#include "qt/painter_canvas.h"

namespace drenik {
namespace {

class Render : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { PrepareQtDrawing(); }
  QTemporaryDir dir_;
  std::string Path(const char* name) { return dir_.filePath(name).toStdString(); }
};

// The SVG keeps the page's texts as text: every value the schematic shows and
// every frequency label under the plot can be found in it.
TEST_F(Render, SvgKeepsSchematicValuesAndFrequencyLabels) {
  DesignRecord d = testing::FirstStartDesign(kChebyshev);
  RecordingCanvas page;
  testing::DrawDisplayPageLoad(d, page);
  std::string error;
  ASSERT_TRUE(RenderPageToFile(page, Path("page.svg"), 1600, 1200, error)) << error;
  QFile file(QString::fromStdString(Path("page.svg")));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  QString svg = QString::fromUtf8(file.readAll());
  auto has = [&](const std::string& text) {
    return svg.contains(">" + QString::fromStdString(text).toHtmlEscaped() + "<");
  };
  for (int j = 1; j <= d.Stages; ++j) {
    std::string value =
        d.ElementType[j] == 1 ? FormatInductance(d.L[j]) : FormatCapacitance(d.C[j]);
    EXPECT_TRUE(has(value)) << value;
  }
  int labels = 0;
  for (const DrawOp& op : page.Ops()) {
    if (op.kind != DrawOp::Kind::Text || op.y1 < kPlotBottom) continue;
    EXPECT_TRUE(has(op.text)) << op.text;
    labels += op.x1 < kPlotRight;
  }
  EXPECT_GE(labels, 5);
  EXPECT_TRUE(has("1MHz") && has("10MHz"));
}

// PNG: the page fills the image on white, lines land where the page puts
// them, arcs run counter-clockwise as seen, and a wider image centres the
// page between white margins.
TEST_F(Render, PngGeometryArcsAndAspect) {
  RecordingCanvas page;
  page.SetForeColor(kBlack);
  page.Line(3000, 4000, 3000, 8000);
  page.SetForeColor(kBlue);
  page.SetDrawWidth(2);
  page.Arc(6000, 4500, 1000, 0, 3.14159265f);  // upper half
  std::string error;
  ASSERT_TRUE(RenderPageToFile(page, Path("a.png"), 1600, 1200, error)) << error;
  QImage image(QString::fromStdString(Path("a.png")));
  ASSERT_EQ(image.size(), QSize(1600, 1200));
  auto dark = [&](int x, int y) { return qGray(image.pixel(x, y)) < 160; };
  EXPECT_EQ(image.pixel(5, 5), qRgb(255, 255, 255));
  EXPECT_TRUE(dark(400, 800));  // the vertical line at x = 3000
  EXPECT_FALSE(dark(410, 800));
  EXPECT_TRUE(dark(800, 467));   // top of the arc: (6000, 3500)
  EXPECT_FALSE(dark(800, 733));  // its bottom half is not drawn
  QRgb top = image.pixel(800, 467);
  EXPECT_GT(qBlue(top), qRed(top));

  ASSERT_TRUE(RenderPageToFile(page, Path("wide.png"), 1600, 900, error)) << error;
  QImage wide(QString::fromStdString(Path("wide.png")));
  // 900 / 9000 scale: the page is 1200 wide, centred from x = 200.
  EXPECT_EQ(wide.pixel(150, 450), qRgb(255, 255, 255));
  EXPECT_LT(qGray(wide.pixel(500, 600)), 160);  // (3000, 6000) -> (500, 600)
}

// Drawing straight onto a painter (printing) gives the picture the replay of
// the recorded page gives.
TEST_F(Render, PainterCanvasMatchesTheReplay) {
  QImage direct(800, 600, QImage::Format_RGB32), replayed(800, 600, QImage::Format_RGB32);
  direct.fill(Qt::white);
  replayed.fill(Qt::white);
  RecordingCanvas page;
  DesignRecord d = testing::FirstStartDesign(kCauer);
  testing::DrawDisplayPageLoad(d, page);
  {
    QPainter painter(&direct);
    PainterCanvas canvas(painter, QRectF(0, 0, 800, 600));
    DesignRecord again = testing::FirstStartDesign(kCauer);
    testing::DrawDisplayPageLoad(again, canvas);
  }
  {
    QPainter painter(&replayed);
    ReplayPage(painter, page, QRectF(0, 0, 800, 600));
  }
  int differing = 0;
  for (int y = 0; y < 600; ++y)
    for (int x = 0; x < 800; ++x)
      differing += std::abs(qGray(direct.pixel(x, y)) - qGray(replayed.pixel(x, y))) > 96;
  EXPECT_LT(differing, 800 * 600 / 200);
}

TEST_F(Render, PdfAndFailures) {
  RecordingCanvas page;
  page.SetTextPosition(1000, 1000);
  page.Print("Bandwidth:  4.2MHz ");
  std::string error;
  ASSERT_TRUE(RenderPageToFile(page, Path("p.PDF"), 0, 0, error)) << error;
  QFile pdf(QString::fromStdString(Path("p.PDF")));
  ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
  EXPECT_TRUE(pdf.read(5).startsWith("%PDF"));

  for (const char* bad :
       {"/nonexistent-dir/x.png", "/nonexistent-dir/x.svg", "/nonexistent-dir/x.pdf"}) {
    error.clear();
    EXPECT_FALSE(RenderPageToFile(page, bad, 1600, 1200, error)) << bad;
    EXPECT_FALSE(error.empty()) << bad;
  }
  EXPECT_FALSE(RenderPageToFile(page, Path("x.bmp"), 1600, 1200, error));
  EXPECT_NE(error.find("x.bmp"), std::string::npos);
  EXPECT_FALSE(RenderPageToFile(page, Path("x.png"), 0, 1200, error));
}

// Page fonts resolve to the metric twins, and the recording canvas measures
// with them, so right-aligned texts line up on the rendered page.
TEST_F(Render, FontsResolveToTwinsAndMeasureAlike) {
  EXPECT_EQ(QFontInfo(PageFont("Arial", 8, false)).family(), "Liberation Sans");
  EXPECT_EQ(QFontInfo(PageFont("Times New Roman", 12, true)).family(), "Liberation Serif");
  RecordingCanvas page;
  page.SetFont("Arial", 8, false);
  QFontMetricsF metrics(PageFont("Arial", 8, false));
  EXPECT_NEAR(page.TextWidth("-70"), metrics.horizontalAdvance("-70"), 0.01);
  EXPECT_GT(page.TextWidth("-70"), page.TextWidth("0"));
  // Without a font at hand the estimate follows the same metrics.
  for (bool bold : {false, true}) {
    const char* text = "Bandwidth:  4.2MHz 1.5483uH (Even-ordered";
    double real = QFontMetricsF(PageFont("Arial", 12, bold)).horizontalAdvance(text);
    EXPECT_NEAR(EstimateTextWidth(text, 12, bold), real, real * 0.005) << bold;
  }
}

TEST_F(Render, WidgetRepaintsAndMapsThePointerToPageUnits) {
  CanvasWidget widget;
  widget.resize(800, 600);
  widget.show();
  widget.Page().SetForeColor(kBlack);
  widget.Page().SetDrawWidth(2);
  widget.Page().Line(6000, 0, 6000, 9000);
  QImage shot = widget.grab().toImage();
  EXPECT_LT(qGray(shot.pixel(shot.width() / 2, 300 * shot.height() / 600)), 128);
  QPointF page = widget.ToPage(QPointF(400, 300));
  EXPECT_NEAR(page.x(), 6000, 1);
  EXPECT_NEAR(page.y(), 4500, 1);
  EXPECT_NEAR(widget.FromPage(QPointF(3000, 4000)).x(), 200, 0.01);

  QSignalSpy moved(&widget, &CanvasWidget::PageMouseMoved);
  QTest::mouseMove(&widget, QPoint(200, 300));
  ASSERT_GE(moved.count(), 1);
  EXPECT_NEAR(moved.last().at(0).toFloat(), 3000, 1);
  EXPECT_NEAR(moved.last().at(1).toFloat(), 4500, 1);
}

}  // namespace
}  // namespace drenik
