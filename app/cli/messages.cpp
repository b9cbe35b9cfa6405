#include "cli/messages.h"

#include <cstdio>

#include "core/atomic_file.h"

namespace drenik::cli {

namespace {

std::string Hex(unsigned char c) {
  char text[8];
  std::snprintf(text, sizeof text, "\\x%02x", c);
  return text;
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c == '\n') {
      out += "\\n";
    } else if (c == '\t') {
      out += "\\t";
    } else if (c == '\r') {
      out += "\\r";
    } else if (c < 0x20 || c == 0x7f) {
      out += Hex(c);
    } else if (c == 0xc2 && i + 1 < text.size() &&
               static_cast<unsigned char>(text[i + 1]) >= 0x80 &&
               static_cast<unsigned char>(text[i + 1]) <= 0x9f) {
      out += Hex(c) + Hex(static_cast<unsigned char>(text[++i]));
    } else {
      out += text[i];
    }
  }
  return out;
}

void CouldNotWrite(std::ostream& err, const std::string& file,
                   const std::vector<std::string>& writerMessages) {
  err << "drenik: could not write " << Printable(file);
  if (const std::string reason = LastWriteFailure(); !reason.empty()) {
    err << ": " << reason;
  } else {
    for (const std::string& m : writerMessages) err << ": " << Printable(m);
  }
  err << "\n";
}

}  // namespace drenik::cli
