#include "qt/render.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <string>
#include <vector>

#include "core/formatters.h"
#include "pages/schematic.h"
#include "plot/response_plot.h"
#include "qt/canvas_widget.h"
#include "qt/painter_canvas.h"

namespace drenik {
namespace {

// A five-element C-input lowpass with a made-up response, drawn in the
// exact and the 5% C rows.
DesignRecord DrawnDesign(RecordingCanvas& page) {
  DesignRecord d;
  d.Pi = 3.14159265f;
  d.TwoPi = 6.28318531f;
  d.Rsource = 50;
  d.Rload = 50;
  d.Stages = 5;
  const int16_t types[6] = {0, 4, 1, 4, 1, 4};
  for (int j = 1; j <= 5; ++j) {
    d.ElementType[j] = types[j];
    d.L[j] = types[j] == 1 ? 2.2e-6f * static_cast<float>(j) : 0;
    d.C[j] = types[j] == 4 ? 4.7e-10f * static_cast<float>(j) : 0;
  }
  d.Width = 4.2e6f;
  d.Fstart = 0.84e6f;
  d.Fstop = 21e6f;
  d.NrIntervals = 1000;
  for (int i = 0; i <= 1000; ++i) {
    double f = 0.84e6 * std::pow(25.0, i / 1000.0);
    d.Freq[i] = static_cast<float>(f);
    d.Transmission[i] = static_cast<float>(f < 4.2e6 ? 0 : -100 * std::log10(f / 4.2e6));
    d.Reflection[i] = -20;
  }
  for (int16_t mode : {1, 2}) {
    d.ValueMode = mode;
    DrawMainPlot(d, page);
    DrawDisplaySchematic(d, page);
    for (int j = 1; j <= 5; ++j) d.C[j] = 4.7e-10f;  // the 5% row differs
  }
  return d;
}

class Render : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { PrepareQtDrawing(); }
  QTemporaryDir dir_;
  std::string Path(const char* name) { return dir_.filePath(name).toStdString(); }
};

// The SVG keeps the page's texts as text: every value the schematic shows and
// every frequency label under the plot can be found in it.
TEST_F(Render, SvgKeepsSchematicValuesAndFrequencyLabels) {
  RecordingCanvas page;
  DrawnDesign(page);
  std::string error;
  ASSERT_TRUE(RenderPageToFile(page, Path("page.svg"), 1600, 1200, error)) << error;
  QFile file(QString::fromStdString(Path("page.svg")));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  QString svg = QString::fromUtf8(file.readAll());
  int values = 0, labels = 0;
  for (const DrawOp& op : page.Ops()) {
    if (op.kind != DrawOp::Kind::Text) continue;
    bool value = op.y1<3800, label = op.y1> 8000;
    if (!value && !label) continue;
    values += value;
    labels += label;
    EXPECT_TRUE(svg.contains(">" + QString::fromStdString(op.text).toHtmlEscaped() + "<"))
        << op.text;
  }
  EXPECT_GE(values, 2 * 5 + 2);  // two rows of five values, source and load
  EXPECT_GE(labels, 5);
  // The values in the SVG are those of the formatters.
  EXPECT_TRUE(svg.contains(QString::fromStdString(FormatInductance(4.4e-6))));
  EXPECT_TRUE(svg.contains(QString::fromStdString(FormatCapacitance(4.7e-10))));
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
