#pragma once
// Writes a drawn page (12000 x 9000 page units) to a PNG, SVG or PDF file,
// chosen by the file's extension. Returns false with a message in `error`.

#include <string>

#include "plot/recording_canvas.h"

namespace drenik {

bool RenderPageToFile(const RecordingCanvas& page, const std::string& path, int widthPx,
                      int heightPx, std::string& error);

}  // namespace drenik
