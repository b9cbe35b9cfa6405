// Drawing and rendering the display page at 1600 x 1200.
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <string>

#include "../tests/qt/display_fixture.h"
#include "qt/painter_canvas.h"
#include "qt/render.h"

namespace drenik {
namespace {

// The page after the display page's load (exact and 5% C analyses) and one
// press of "5% inductors" (the 5% L analysis): three analyses and all drawing.
void DrawThreeAnalyses(DesignRecord& d, RecordingCanvas& page) {
  testing::DrawDisplayPageLoad(d, page);
  NullPlatform platform;
  NearestParts(d);
  Inductors(d);
  testing::AnalyzeAndDraw(d, page, platform, 3);
  DrawInductorLegends(d, page);
}

DesignRecord Design() {
  DesignRecord d = testing::FirstStartDesign(kCauer, 7);
  d.ShowVSWR = 1;
  d.ShowDelay = 1;
  return d;
}

void ReplayToImage(const RecordingCanvas& page, QImage& image) {
  image.fill(Qt::white);
  QPainter painter(&image);
  ReplayPage(painter, page, QRectF(0, 0, image.width(), image.height()));
}

// Analyses, drawing and the replay into a 1600 x 1200 image.
void BM_DisplayPageTo1600x1200Image(benchmark::State& state) {
  PrepareQtDrawing();
  QImage image(1600, 1200, QImage::Format_RGB32);
  for (auto _ : state) {
    DesignRecord d = Design();
    RecordingCanvas page;
    DrawThreeAnalyses(d, page);
    ReplayToImage(page, image);
    benchmark::DoNotOptimize(image.constBits());
  }
}
BENCHMARK(BM_DisplayPageTo1600x1200Image)->Unit(benchmark::kMillisecond);

// The same written as a PNG file, as "drenik render" does.
void BM_DisplayPageToPngFile(benchmark::State& state) {
  PrepareQtDrawing();
  QTemporaryDir dir;
  std::string path = dir.filePath("page.png").toStdString();
  for (auto _ : state) {
    DesignRecord d = Design();
    RecordingCanvas page;
    DrawThreeAnalyses(d, page);
    std::string error;
    if (!RenderPageToFile(page, path, 1600, 1200, error)) state.SkipWithError(error.c_str());
  }
}
BENCHMARK(BM_DisplayPageToPngFile)->Unit(benchmark::kMillisecond);

// Drawing alone, on an analysed record (main plot in three modes, side
// plots, schematic rows, legends).
void BM_DrawAnalysedPage(benchmark::State& state) {
  PrepareQtDrawing();
  DesignRecord analysed = Design();
  {
    RecordingCanvas scratch;
    DrawThreeAnalyses(analysed, scratch);
  }
  for (auto _ : state) {
    DesignRecord d = analysed;
    RecordingCanvas page;
    for (int16_t mode : {1, 2, 3}) {
      d.ValueMode = mode;
      DrawMainPlot(d, page);
      DrawDisplaySchematic(d, page);
    }
    DrawVswrPlot(d, page);
    DrawDelayPlot(d, page);
    DrawDisplayLegends(d, page);
    DrawBandwidthLabel(d, page);
    benchmark::DoNotOptimize(page.Ops().size());
  }
}
BENCHMARK(BM_DrawAnalysedPage)->Unit(benchmark::kMillisecond);

// A hundred Up 1% presses on one page: the display list stays bounded and
// each redraw sequence costs the same.
void BM_RetuneSequenceOnLongLivedPage(benchmark::State& state) {
  PrepareQtDrawing();
  DesignRecord d = Design();
  RecordingCanvas page;
  DrawThreeAnalyses(d, page);
  NullPlatform platform;
  for (auto _ : state) {
    d.Width = static_cast<float>(d.Width * 1.01);
    DrawBandwidthLabel(d, page, 11770);
    Denormalize(d);
    testing::AnalyzeAndDraw(d, page, platform, 1);
    Denormalize(d);
    NearestParts(d);
    CapsRetuneInductors(d);
    testing::AnalyzeAndDraw(d, page, platform, 2);
    NearestParts(d);
    Inductors(d);
    testing::AnalyzeAndDraw(d, page, platform, 3);
    DrawVswrPlot(d, page);
    DrawDelayPlot(d, page);
  }
  state.counters["ops"] = static_cast<double>(page.Ops().size());
}
BENCHMARK(BM_RetuneSequenceOnLongLivedPage)->Unit(benchmark::kMillisecond)->Iterations(100);

}  // namespace
}  // namespace drenik

// The replay alone of a finished page into a 1600 x 1200 image.
namespace drenik {
namespace {
void BM_ReplayOnly(benchmark::State& state) {
  PrepareQtDrawing();
  DesignRecord d = Design();
  RecordingCanvas page;
  DrawThreeAnalyses(d, page);
  QImage image(1600, 1200, QImage::Format_RGB32);
  for (auto _ : state) ReplayToImage(page, image);
}
BENCHMARK(BM_ReplayOnly)->Unit(benchmark::kMillisecond);
}  // namespace
}  // namespace drenik
