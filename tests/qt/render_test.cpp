// Rendering a recorded page to SVG, PNG and PDF, the font twins, and printing.
#include "qt/render.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include "fixture.h"
#include "qt/print_page.h"

namespace drenik::testing {
namespace {

class Render : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { PrepareQtDrawing(); }
  TempFolder dir_;
  std::string error;
};

// PNG: lines where the page puts them, arcs counter-clockwise as seen, a wider
// image centred between white margins. Then PDF, and the failures.
TEST_F(Render, PngGeometryArcsAndMarginsPdfAndFailures) {
  RecordingCanvas page;
  page.SetForeColor(kBlack);
  page.Line(3000, 4000, 3000, 8000);
  page.SetForeColor(kBlue);
  page.SetDrawWidth(2);
  page.Arc(6000, 4500, 1000, 0, 3.14159265f);  // upper half
  ASSERT_TRUE(RenderPageToFile(page, dir_ / "a.png", 1600, 1200, error)) << error;
  QImage image(QString::fromStdString(dir_ / "a.png"));
  ASSERT_EQ(image.size(), QSize(1600, 1200));
  auto dark = [&](int x, int y) { return qGray(image.pixel(x, y)) < 160; };
  EXPECT_EQ(image.pixel(5, 5), qRgb(255, 255, 255));
  EXPECT_TRUE(dark(400, 800) && !dark(410, 800));  // the vertical line at x = 3000
  EXPECT_TRUE(dark(800, 467) && !dark(800, 733));  // (6000, 3500) is drawn, the bottom half not
  EXPECT_GT(qBlue(image.pixel(800, 467)), qRed(image.pixel(800, 467)));

  ASSERT_TRUE(RenderPageToFile(page, dir_ / "wide.png", 1600, 900, error)) << error;
  QImage wide(QString::fromStdString(dir_ / "wide.png"));
  // 900 / 9000 scale: the page is 1200 wide, centred from x = 200.
  EXPECT_EQ(wide.pixel(150, 450), qRgb(255, 255, 255));
  EXPECT_LT(qGray(wide.pixel(500, 600)), 160);  // (3000, 6000) -> (500, 600)

  ASSERT_TRUE(RenderPageToFile(page, dir_ / "p.PDF", 0, 0, error)) << error;
  EXPECT_TRUE(ReadWhole(dir_ / "p.PDF").starts_with("%PDF"));
  for (const char* bad : {"/nonexistent-dir/x.png", "/nonexistent-dir/x.svg", "/no/x.pdf"}) {
    error.clear();
    EXPECT_TRUE(!RenderPageToFile(page, bad, 1600, 1200, error) && !error.empty()) << bad;
  }
  EXPECT_TRUE(!RenderPageToFile(page, dir_ / "x.bmp", 1600, 1200, error) &&
              error.find("x.bmp") != std::string::npos);
  EXPECT_FALSE(RenderPageToFile(page, dir_ / "x.png", 0, 1200, error));
}

// Page fonts resolve to the metric twins the recording canvas measures with.
TEST_F(Render, FontsResolveToTwinsAndMeasureAlike) {
  EXPECT_EQ(QFontInfo(PageFont("Arial", 8, false)).family(), "Liberation Sans");
  EXPECT_EQ(QFontInfo(PageFont("Times New Roman", 12, true)).family(), "Liberation Serif");
  RecordingCanvas page;
  page.SetFont("Arial", 8, false);
  QFontMetricsF metrics(PageFont("Arial", 8, false));
  EXPECT_NEAR(page.TextWidth("-70"), metrics.horizontalAdvance("-70"), 0.01);
  // Without a font at hand the estimate follows the same metrics.
  for (bool bold : {false, true}) {
    const char* text = "Bandwidth:  4.2MHz 1.5483uH (Even-ordered";
    double real = QFontMetricsF(PageFont("Arial", 12, bold)).horizontalAdvance(text);
    EXPECT_NEAR(EstimateTextWidth(text, 12, bold), real, real * 0.005) << bold;
  }
}

// The display page as SVG and printed (title, axis labels, footer); a printer
// that cannot be drawn on reports "Printer Error".
TEST_F(Render, DisplayPageToSvgAndPrinter) {
  EXPECT_EQ(PrintTitle(FirstStartDesign(kCauer)),
            "Cauer filter, order 5, cutoff 4.2MHz, ripple 0.044 dB, stopband 40 dB");
  EXPECT_EQ(PrintTitle(FirstStartDesign(kChebyshev, 7)),
            "Chebyshev filter, order 7, cutoff 4.2MHz, ripple 0.044 dB");
  EXPECT_EQ(PrintTitle(FirstStartDesign(kButterworth, 3)),
            "Butterworth filter, order 3, cutoff 4.2MHz");
  QPrinter bad;
  bad.setOutputFormat(QPrinter::PdfFormat);
  bad.setOutputFileName("/nonexistent-folder/page.pdf");
  RecordingPlatform platform;
  EXPECT_FALSE(PrintDisplayPage(FirstStartDesign(kChebyshev), RecordingCanvas(), bad, platform));
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "Printer Error");
  DesignRecord d = FirstStartDesign(kCauer);
  d.ShowVSWR = 1;
  RecordingCanvas page;
  ASSERT_TRUE(DrawDisplayPageLoad(d, page));
  // The SVG keeps as text every schematic value (y < 3800) and plot label (y > 8000).
  ASSERT_TRUE(RenderPageToFile(page, dir_ / "page.svg", 1600, 1200, error)) << error;
  QString svg = QString::fromStdString(ReadWhole(dir_ / "page.svg"));
  int values = 0, labels = 0;
  for (const DrawOp& op : page.Ops()) {
    if (op.kind != DrawOp::Kind::Text || (op.y1 >= 3800 && op.y1 <= 8000)) continue;
    (op.y1 < 3800 ? values : labels)++;
    EXPECT_TRUE(svg.contains(">" + QString::fromStdString(op.text).toHtmlEscaped() + "<"))
        << op.text;
  }
  EXPECT_GE(values, 2 * 5 + 2);  // two rows of five values, source and load
  EXPECT_GE(labels, 5);

  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(QString::fromStdString(dir_ / "page.pdf"));
  platform.messages.clear();
  ASSERT_TRUE(PrintDisplayPage(d, page, printer, platform));
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_TRUE(ReadWhole(dir_ / "page.pdf").starts_with("%PDF"));
  const QString tool = QStandardPaths::findExecutable("pdftotext");
  if (tool.isEmpty()) GTEST_SKIP() << "pdftotext (poppler-utils) is not installed";
  QProcess process;
  process.start(tool, {QString::fromStdString(dir_ / "page.pdf"), "-"});
  ASSERT_TRUE(process.waitForFinished(30000));
  const QString text = QString::fromUtf8(process.readAllStandardOutput());
  for (const QString& expected :
       {QString::fromStdString(PrintTitle(d)), QString("Transmission, dB"), QString("Return, dB"),
        QString("VSWR"), QString("Drenik Filter Designer 2.12")})
    EXPECT_TRUE(text.contains(expected)) << expected.toStdString();
}

}  // namespace
}  // namespace drenik::testing
