// Layout of the three pages: every control placed on the page, nothing
// overlapping, the display page's buttons clear of its drawing, scaling by
// one factor, and screenshots at 1280 x 960 for a person to look at.
#include <QAbstractButton>
#include <QDir>
#include <QGroupBox>
#include <QPixmap>

#include "window_fixture.h"

namespace drenik::testing {
namespace {

// Widgets laid directly on the page (frames count as one, with their
// contents checked inside them).
std::vector<QWidget*> Siblings(QWidget* parent) {
  std::vector<QWidget*> out;
  for (QObject* child : parent->children()) {
    auto* w = qobject_cast<QWidget*>(child);
    if (w && !qobject_cast<PageSurface*>(w) && !w->objectName().isEmpty()) out.push_back(w);
  }
  return out;
}

void ExpectNoOverlap(QWidget* parent) {
  std::vector<QWidget*> widgets = Siblings(parent);
  for (size_t i = 0; i < widgets.size(); ++i) {
    EXPECT_TRUE(parent->rect().contains(widgets[i]->geometry()))
        << widgets[i]->objectName().toStdString() << " leaves "
        << parent->objectName().toStdString();
    for (size_t j = i + 1; j < widgets.size(); ++j) {
      EXPECT_FALSE(widgets[i]->geometry().intersects(widgets[j]->geometry()))
          << widgets[i]->objectName().toStdString() << " overlaps "
          << widgets[j]->objectName().toStdString();
    }
    if (qobject_cast<QGroupBox*>(widgets[i])) ExpectNoOverlap(widgets[i]);
  }
}

class LayoutTest : public WindowTest {
 protected:
  // Nothing drawn on the display page (texts, lines, arcs) lies under one of
  // its buttons.
  void ExpectButtonsClearOfTheDrawing() {
    ControlPageView& display = Window().DisplayView();
    double scale = display.Scale();
    QPoint origin = display.Surface().geometry().topLeft();
    for (const auto& control : App().Display().Controls().All()) {
      QRect r = display.WidgetFor(control->Name())->geometry().translated(-origin);
      QRectF button(r.x() / scale, r.y() / scale, r.width() / scale, r.height() / scale);
      for (const DrawOp& op : App().DisplayCanvas().Ops()) {
        QRectF drawn;
        switch (op.kind) {
          case DrawOp::Kind::Text:
            drawn = QRectF(op.x1, op.y1, op.textWidth, op.fontSize * 20);
            break;
          case DrawOp::Kind::Line:
            drawn = QRectF(QPointF(op.x1, op.y1), QPointF(op.x2, op.y2))
                        .normalized()
                        .adjusted(-1, -1, 1, 1);
            break;
          case DrawOp::Kind::Arc:
            drawn = QRectF(op.x1 - op.radius, op.y1 - op.radius, 2 * op.radius, 2 * op.radius);
            break;
          default:
            continue;  // white boxes erase; points belong to the plots
        }
        EXPECT_FALSE(button.intersects(drawn)) << control->Name() << " covers " << op.text;
      }
    }
  }
};

TEST_F(LayoutTest, PagesPlaceEveryControlWithoutOverlapAndScaleByOneFactor) {
  Launch();
  Click(Button(Window().OpeningView(), "cmdStart"));
  Click(Button(Window().DesignView(), "cmdDesign"));
  Click(Button(Window().DisplayView(), "cmdVSWR"));
  Click(Button(Window().DisplayView(), "cmdTime"));
  Click(Button(Window().DisplayView(), "cmdInductors"));

  struct Page {
    ControlPageView* view;
    ControlSet* controls;
  } pages[] = {{&Window().OpeningView(), &App().Opening().Controls()},
               {&Window().DesignView(), &App().Design().Controls()},
               {&Window().DisplayView(), &App().Display().Controls()}};
  for (const Page& page : pages) {
    for (const auto& control : page.controls->All()) {
      EXPECT_NE(page.view->WidgetFor(control->Name()), nullptr) << control->Name();
    }
    page.view->resize(1280, 960);
    ExpectNoOverlap(page.view);
  }

  ExpectButtonsClearOfTheDrawing();
  // The widest ladders, and the load with a note, in every topology.
  for (const char* topology :
       {"optCinlowpass", "optLinlowpass", "optCinhighpass", "optLinhighpass"}) {
    SCOPED_TRACE(topology);
    Click(Button(Window().DisplayView(), "cmdDesign"));
    Click(Radio("optCauer"));
    Click(Radio("optOrder7"));
    Click(Radio(topology));
    Click(Button(Window().DesignView(), "cmdDesign"));
    ExpectButtonsClearOfTheDrawing();
    // Even-order Chebyshev: the load carries its value and a note.
    Click(Button(Window().DisplayView(), "cmdDesign"));
    Click(Radio("optChebycheff"));
    Click(Radio("optOrder6"));
    Click(Radio(topology));
    Click(Button(Window().DesignView(), "cmdDesign"));
    Click(Button(Window().DisplayView(), "cmdInductors"));
    ExpectButtonsClearOfTheDrawing();
  }

  // Half the size: positions and fonts halve, the page stays 4:3 and centred.
  ControlPageView& display = Window().DisplayView();
  QWidget* up = display.WidgetFor("cmdUp");
  QRect big = up->geometry();
  int bigFont = up->font().pixelSize();
  display.resize(640, 480);
  EXPECT_NEAR(up->geometry().x(), big.x() / 2.0, 1.5);
  EXPECT_NEAR(up->geometry().width(), big.width() / 2.0, 1.5);
  EXPECT_NEAR(up->font().pixelSize(), bigFont / 2.0, 1);
  display.resize(1000, 480);
  EXPECT_EQ(display.Surface().geometry(), QRect(180, 0, 640, 480));
}

TEST_F(LayoutTest, ScreenshotsOfThePages) {
  Launch();
  QDir out(DRENIK_BINARY_DIR "/screenshots");
  out.mkpath(".");
  auto save = [&](const char* name) {
    QPixmap shot = Window().grab();
    EXPECT_EQ(shot.size(), QSize(1280, 960));
    EXPECT_TRUE(shot.save(out.filePath(name)));
  };
  save("opening.png");
  Click(Button(Window().OpeningView(), "cmdStart"));
  save("design.png");
  Click(Radio("optZelmar"));
  save("design-zelmar.png");
  Click(Button(Window().DesignView(), "cmdDesign"));
  Click(Button(Window().DisplayView(), "cmdVSWR"));
  Click(Button(Window().DisplayView(), "cmdTime"));
  MoveMouse(DisplayPixel(5200, 6100));
  save("display.png");
  Window().resize(1600, 900);  // wider than 4:3: margins left and right
  QPixmap wide = Window().grab();
  EXPECT_TRUE(wide.save(out.filePath("display-wide.png")));
}

}  // namespace
}  // namespace drenik::testing
