// Drawing and rendering the display page at 1600 x 1200.
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <string>

#include "pages/application.h"
#include "qt/painter_canvas.h"
#include "qt/render.h"

namespace drenik {
namespace {

// The program at its first start, on the design page set to a seventh-order
// Cauer design with the VSWR and delay plots shown.
struct Designer {
  NullPlatform platform;
  Application app{platform, ApplicationOptions{"", ""}};
  Designer() {
    app.Start();
    app.Opening().Controls().FindButton("cmdStart")->Click();
    app.Design().Controls().FindOption("optCauer")->Click();
    app.Design().Controls().FindOption("optOrder7")->Click();
    app.Record().ShowVSWR = 1;
    app.Record().ShowDelay = 1;
  }
  // The display page's load (exact and 5% C analyses) and one press of
  // "5% inductors" (the 5% L analysis): three analyses and all drawing.
  const RecordingCanvas& DrawThreeAnalyses() {
    app.Display().Load();
    app.Display().OnInductors();
    return app.DisplayCanvas();
  }
};

void ReplayToImage(const RecordingCanvas& page, QImage& image) {
  image.fill(Qt::white);
  QPainter painter(&image);
  ReplayPage(painter, page, QRectF(0, 0, image.width(), image.height()));
}

// Analyses, drawing and the replay into a 1600 x 1200 image.
void BM_DisplayPageTo1600x1200Image(benchmark::State& state) {
  PrepareQtDrawing();
  Designer designer;
  QImage image(1600, 1200, QImage::Format_RGB32);
  for (auto _ : state) {
    ReplayToImage(designer.DrawThreeAnalyses(), image);
    benchmark::DoNotOptimize(image.constBits());
  }
}
BENCHMARK(BM_DisplayPageTo1600x1200Image)->Unit(benchmark::kMillisecond);

// The same written as a PNG file, as "drenik render" does.
void BM_DisplayPageToPngFile(benchmark::State& state) {
  PrepareQtDrawing();
  Designer designer;
  QTemporaryDir dir;
  std::string path = dir.filePath("page.png").toStdString();
  for (auto _ : state) {
    std::string error;
    if (!RenderPageToFile(designer.DrawThreeAnalyses(), path, 1600, 1200, error))
      state.SkipWithError(error.c_str());
  }
}
BENCHMARK(BM_DisplayPageToPngFile)->Unit(benchmark::kMillisecond);

// A hundred Up 1% presses on one page: the display list stays bounded and
// each retune (three analyses and their drawing) costs the same.
void BM_UpOnLongLivedPage(benchmark::State& state) {
  PrepareQtDrawing();
  Designer designer;
  const RecordingCanvas& page = designer.DrawThreeAnalyses();
  for (auto _ : state) designer.app.Display().OnUp();
  state.counters["ops"] = static_cast<double>(page.Ops().size());
}
BENCHMARK(BM_UpOnLongLivedPage)->Unit(benchmark::kMillisecond)->Iterations(100);

// The replay alone of a finished page into a 1600 x 1200 image.
void BM_ReplayOnly(benchmark::State& state) {
  PrepareQtDrawing();
  Designer designer;
  const RecordingCanvas& page = designer.DrawThreeAnalyses();
  QImage image(1600, 1200, QImage::Format_RGB32);
  for (auto _ : state) ReplayToImage(page, image);
}
BENCHMARK(BM_ReplayOnly)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace drenik
