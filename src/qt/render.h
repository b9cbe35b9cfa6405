#pragma once
// Writes a drawn page (12000 x 9000 page units) to a PNG, SVG or PDF file,
// chosen by the file's extension (case ignored). PNG: widthPx x heightPx on
// white; SVG: the same size as its view box, texts kept as text; PDF: one
// page of 12000 x 9000 twips. The file is written whole or not at all
// (core/atomic_file.h). Returns false with a one-line reason in `error`.
//
// Texts are aligned by their measured widths while the page is drawn, so a
// program without a Qt application calls PrepareQtDrawing() (qt/painter_canvas.h)
// before drawing the page.

#include <string>

#include "plot/recording_canvas.h"

namespace drenik {

bool RenderPageToFile(const RecordingCanvas& page, const std::string& path, int widthPx,
                      int heightPx, std::string& error);

}  // namespace drenik
