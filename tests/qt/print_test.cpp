// The printed display page: a PDF from QPrinter holds the title line, the
// axis labels and the footer; a printer that cannot be drawn on reports it.
#include "qt/print_page.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "display_fixture.h"
#include "qt/painter_canvas.h"
#include "support/recording_platform.h"

namespace drenik::testing {
namespace {

TEST(PrintPage, TitleByFamilyAndPrinterError) {
  EXPECT_EQ(PrintTitle(FirstStartDesign(kCauer)),
            "Cauer filter, order 5, cutoff 4.2MHz, ripple 0.044 dB, stopband 40 dB");
  EXPECT_EQ(PrintTitle(FirstStartDesign(kChebyshev, 7)),
            "Chebyshev filter, order 7, cutoff 4.2MHz, ripple 0.044 dB");
  EXPECT_EQ(PrintTitle(FirstStartDesign(kButterworth, 3)),
            "Butterworth filter, order 3, cutoff 4.2MHz");

  PrepareQtDrawing();
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName("/nonexistent-folder/page.pdf");
  RecordingPlatform platform;
  EXPECT_FALSE(
      PrintDisplayPage(FirstStartDesign(kChebyshev), RecordingCanvas(), printer, platform));
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "Printer Error");
}

TEST(PrintPage, PdfHoldsTitleAxisLabelsAndFooter) {
  PrepareQtDrawing();
  DesignRecord d = FirstStartDesign(kCauer);
  d.ShowVSWR = 1;
  RecordingCanvas page;
  DrawDisplayPageLoad(d, page);

  QTemporaryDir folder;
  const QString path = folder.filePath("page.pdf");
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(path);
  RecordingPlatform platform;
  ASSERT_TRUE(PrintDisplayPage(d, page, printer, platform));
  EXPECT_TRUE(platform.messages.empty());
  QFile pdf(path);
  ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
  EXPECT_TRUE(pdf.read(5).startsWith("%PDF"));

  const QString tool = QStandardPaths::findExecutable("pdftotext");
  if (tool.isEmpty()) GTEST_SKIP() << "pdftotext (poppler-utils) is not installed";
  QProcess process;
  process.start(tool, {path, "-"});
  ASSERT_TRUE(process.waitForFinished(30000));
  const QString text = QString::fromUtf8(process.readAllStandardOutput());
  for (const std::string& expected :
       {PrintTitle(d), std::string("Transmission, dB"), std::string("Return, dB"),
        std::string("VSWR"), std::string("Drenik Filter Designer 2.12")}) {
    EXPECT_TRUE(text.contains(QString::fromStdString(expected))) << expected;
  }
}

}  // namespace
}  // namespace drenik::testing
