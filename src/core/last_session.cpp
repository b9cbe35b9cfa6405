#include "core/last_session.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "core/atomic_file.h"
#include "core/number_text.h"

namespace drenik {

namespace {

// The line is short: only its first bytes are read, and a file much larger
// than any session file is not one.
constexpr size_t kLongestLine = 4096;
constexpr off_t kLargestFile = 64 * 1024;

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::optional<int16_t> ReadInteger(std::string_view text) {
  text = Trim(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  int value = 0;
  auto res = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || res.ec != std::errc() || res.ptr != text.data() + text.size())
    return std::nullopt;
  if (value < std::numeric_limits<int16_t>::min() || value > std::numeric_limits<int16_t>::max())
    return std::nullopt;
  return static_cast<int16_t>(value);
}

// Decimal text with "." as the point: "4500000", ".044", "0.044", "-2",
// "1E+10". Infinities, NaN and values beyond the float range do not read.
std::optional<float> ReadReal(std::string_view text) {
  text = Trim(text);
  std::string_view body = text;
  if (!body.empty() && (body.front() == '+' || body.front() == '-')) body.remove_prefix(1);
  if (body.empty() || !((body.front() >= '0' && body.front() <= '9') || body.front() == '.'))
    return std::nullopt;
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  float value = 0;
  auto res =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::general);
  if (res.ec != std::errc() || res.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

// The topology: in double quotes, or bare.
std::optional<std::string> ReadText(std::string_view text) {
  text = Trim(text);
  if (!text.empty() && text.front() == '"') {
    if (text.size() < 2 || text.back() != '"') return std::nullopt;
    text = text.substr(1, text.size() - 2);
    if (text.find('"') != std::string_view::npos) return std::nullopt;
  } else if (text.find('"') != std::string_view::npos) {
    return std::nullopt;
  }
  return std::string(text);
}

// Splits at commas outside double quotes.
std::vector<std::string_view> SplitFields(std::string_view line) {
  std::vector<std::string_view> fields;
  size_t start = 0;
  bool quoted = false;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') quoted = !quoted;
    if (line[i] == ',' && !quoted) {
      fields.push_back(line.substr(start, i - start));
      start = i + 1;
    }
  }
  fields.push_back(line.substr(start));
  return fields;
}

}  // namespace

namespace {

bool IdealParts(const DesignRecord& d) {
  return d.InductorQLaw == QLaw::Constant && d.CapacitorQ == kInfiniteQcap &&
         d.WindingCapacitance == 0 && d.CapacitorEsl == 0;
}

using Fields = std::vector<std::string_view>;

// The band pair: a band design's centre and coupled-resonator inductance.
// Bad values make the line unreadable.
bool ReadBand(const Fields& f, size_t at, DesignRecord& d) {
  const auto center = ReadReal(f[at]), resonatorL = ReadReal(f[at + 1]);
  if (!center || !resonatorL) return false;
  d.Center = *center;
  d.ResonatorL = *resonatorL;
  return true;
}

// A lowpass or highpass writes 0,0: the resonator inductance of a band
// design left behind is not part of it.
std::string WriteBand(const DesignRecord& d) {
  return "," + ShortestText(std::max(d.Center, 0.0f)) + "," +
         ShortestText(d.Center > 0 ? d.ResonatorL : 0.0f);
}

// The part models as the display page's dialog takes them: a known law, a
// capacitor Q above 0, capacitances and inductances of 0 or more. Anything
// else leaves the ideal parts (the design itself still loads).
bool ReadPartModels(const Fields& f, size_t at, DesignRecord& d) {
  const auto law = ReadInteger(f[at]);
  const auto q = ReadReal(f[at + 1]), cp = ReadReal(f[at + 2]), esl = ReadReal(f[at + 3]);
  if (!law || *law < 0 || *law > static_cast<int16_t>(QLaw::Linear) || !q || !(*q > 0) || !cp ||
      !(*cp >= 0) || !esl || !(*esl >= 0))
    return true;
  d.InductorQLaw = static_cast<QLaw>(*law);
  d.CapacitorQ = *q;
  d.WindingCapacitance = *cp;
  d.CapacitorEsl = *esl;
  return true;
}

// Ideal parts ahead of a later group are zero-filled, which reads back as
// ideal parts.
std::string WritePartModels(const DesignRecord& d) {
  if (IdealParts(d)) return ",0,0,0,0";
  return "," + std::to_string(static_cast<int>(d.InductorQLaw)) + "," + ShortestText(d.CapacitorQ) +
         "," + ShortestText(d.WindingCapacitance) + "," + ShortestText(d.CapacitorEsl);
}

// The kept setup: the capacitor series, the inductor series, pairs, the
// winding (quoted) and the tolerance window's mask.
bool HasKeptSetup(const DesignRecord& d) {
  return d.KeptCapacitorSeries != 0 || d.KeptInductorSeries != 0 || d.KeptPairs != 0 ||
         !d.KeptWinding.empty() || d.KeptMask[0] != 0;
}

std::string WriteKeptSetup(const DesignRecord& d) {
  std::string text = "," + std::to_string(d.KeptCapacitorSeries) + "," +
                     std::to_string(d.KeptInductorSeries) + "," + std::to_string(d.KeptPairs) +
                     ",\"" + d.KeptWinding + "\"";
  for (float v : d.KeptMask) text += "," + ShortestText(v);
  return text;
}

// Series counts and pairs as whole numbers of 0 or more (which series a
// count names is the chooser's to say), the winding as text without commas
// (a 0 for none, as a zero-filled group has it), the mask's shape 0 to 3 and
// its values 0 or more. Anything else keeps none of the setup; the design
// itself still loads.
bool ReadKeptSetup(const Fields& f, size_t at, DesignRecord& d) {
  const auto cap = ReadInteger(f[at]), ind = ReadInteger(f[at + 1]), pairs = ReadInteger(f[at + 2]);
  const std::string_view windingField = Trim(f[at + 3]);
  const auto winding =
      windingField == "0" ? std::optional<std::string>("") : ReadText(windingField);
  if (!cap || *cap < 0 || !ind || *ind < 0 || !pairs || *pairs < 0 || *pairs > 1 || !winding ||
      winding->find(',') != std::string::npos)
    return true;
  std::array<float, kKeptMaskFields> mask{};
  for (size_t k = 0; k < mask.size(); ++k) {
    const auto v = ReadReal(f[at + 4 + k]);
    if (!v || !(*v >= 0)) return true;
    mask[k] = *v;
  }
  if (mask[0] != 0 && mask[0] != 1 && mask[0] != 2 && mask[0] != 3) return true;
  d.KeptCapacitorSeries = *cap;
  d.KeptInductorSeries = *ind;
  d.KeptPairs = *pairs;
  d.KeptWinding = *winding;
  d.KeptMask = mask;
  return true;
}

// The ripple and the stopband depth chosen beyond the design page's
// buttons (dB; 0 where a button holds it). Anything but two finite values
// of 0 or more makes the line unreadable.
bool ReadChosen(const Fields& f, size_t at, DesignRecord& d) {
  const auto ripple = ReadReal(f[at]), depth = ReadReal(f[at + 1]);
  if (!ripple || !(*ripple >= 0) || !std::isfinite(*ripple) || !depth || !(*depth >= 0) ||
      !std::isfinite(*depth))
    return false;
  d.ChosenRipple = *ripple;
  d.ChosenDepth = *depth;
  return true;
}

std::string WriteChosen(const DesignRecord& d) {
  return "," + ShortestText(d.ChosenRipple) + "," + ShortestText(d.ChosenDepth);
}

// The groups of fields after the eight, in the order of the line. A group is
// written when it is needed or a later one is, with its defaults then, so a
// line that needs none is the eight fields as it always was; a line may end
// after any group, and the groups it does not reach take their defaults.
struct FieldGroup {
  size_t count;
  bool (*needed)(const DesignRecord&);
  std::string (*write)(const DesignRecord&);
  // False when the fields make the whole line unreadable.
  bool (*read)(const Fields&, size_t at, DesignRecord&);
};

constexpr FieldGroup kGroups[] = {
    {.count = 2,
     .needed = [](const DesignRecord& d) { return d.Center > 0; },
     .write = &WriteBand,
     .read = &ReadBand},
    {.count = 4,
     .needed = [](const DesignRecord& d) { return !IdealParts(d); },
     .write = &WritePartModels,
     .read = &ReadPartModels},
    {.count = 4 + kKeptMaskFields,
     .needed = &HasKeptSetup,
     .write = &WriteKeptSetup,
     .read = &ReadKeptSetup},
    {.count = 2,
     .needed = [](const DesignRecord& d) { return d.ChosenRipple > 0 || d.ChosenDepth > 0; },
     .write = &WriteChosen,
     .read = &ReadChosen},
};

// Every field the groups carry, from one record to another.
void CopyGroupFields(const DesignRecord& from, DesignRecord& to) {
  to.Center = from.Center;
  to.ResonatorL = from.ResonatorL;
  to.InductorQLaw = from.InductorQLaw;
  to.CapacitorQ = from.CapacitorQ;
  to.WindingCapacitance = from.WindingCapacitance;
  to.CapacitorEsl = from.CapacitorEsl;
  to.KeptCapacitorSeries = from.KeptCapacitorSeries;
  to.KeptInductorSeries = from.KeptInductorSeries;
  to.KeptPairs = from.KeptPairs;
  to.KeptWinding = from.KeptWinding;
  to.KeptMask = from.KeptMask;
  to.ChosenRipple = from.ChosenRipple;
  to.ChosenDepth = from.ChosenDepth;
}

}  // namespace

std::string LastSessionLine(const DesignRecord& d) {
  std::string line = std::to_string(d.Order) + "," + ShortestText(d.Width) + "," +
                     std::to_string(d.Family) + "," + ShortestText(d.Apass) + "," +
                     ShortestText(d.Astop) + ",\"" + d.Topology + "\"," + ShortestText(d.Rsource) +
                     "," + ShortestText(d.Qind);
  size_t last = 0;  // groups to write
  for (size_t g = 0; g < std::size(kGroups); ++g)
    if (kGroups[g].needed(d)) last = g + 1;
  for (size_t g = 0; g < last; ++g) line += kGroups[g].write(d);
  return line;
}

bool ParseLastSession(std::string_view text, DesignRecord& d) {
  // Only the first line counts; what follows its line end is ignored.
  size_t lineEnd = text.find_first_of("\r\n");
  std::string_view line = text.substr(0, lineEnd);
  const Fields fields = SplitFields(line);
  size_t groups = 0, length = 8;
  while (length < fields.size() && groups < std::size(kGroups)) length += kGroups[groups++].count;
  if (length != fields.size()) return false;

  auto order = ReadInteger(fields[0]);
  auto width = ReadReal(fields[1]);
  auto family = ReadInteger(fields[2]);
  auto apass = ReadReal(fields[3]);
  auto astop = ReadReal(fields[4]);
  auto topology = ReadText(fields[5]);
  auto rsource = ReadReal(fields[6]);
  auto qind = ReadReal(fields[7]);
  if (!order || !width || !family || !apass || !astop || !topology || !rsource || !qind)
    return false;
  DesignRecord read;
  size_t at = 8;
  for (size_t g = 0; g < groups; at += kGroups[g++].count)
    if (!kGroups[g].read(fields, at, read)) return false;

  // Values outside the design page's choices are kept as they are; the page
  // sorts them out when it loads.
  d.Order = *order;
  d.Width = *width;
  d.Family = *family;
  d.Apass = *apass;
  d.Astop = *astop;
  d.Topology = *topology;
  d.Rsource = *rsource;
  d.Qind = *qind;
  CopyGroupFields(read, d);
  return true;
}

void SetLastSessionDefaults(DesignRecord& d) {
  d.Order = 5;
  d.Width = 4200000;
  d.Family = kFirstStartFamily;
  d.Apass = kFirstStartRipple;
  d.Astop = kFirstStartDepth;
  d.Topology = kFirstStartTopology;
  d.Rsource = 50;
  d.Qind = kInfiniteQind;
  CopyGroupFields(DesignRecord{}, d);
}

void ReadLastSession(DesignRecord& d, const std::string& path) {
  // Only a plain file of a plausible size is read: a FIFO there would wait
  // for a writer forever, and a device or a huge file is no session file.
  std::string content;
  const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  struct stat found {};
  if (fd >= 0 && fstat(fd, &found) == 0 && S_ISREG(found.st_mode) &&
      found.st_size <= kLargestFile) {
    content.resize(static_cast<size_t>(kLongestLine));
    const ssize_t n = read(fd, content.data(), content.size());
    content.resize(n > 0 ? static_cast<size_t>(n) : 0);
  }
  if (fd >= 0) close(fd);
  // A missing, unreadable or malformed file starts every choice afresh,
  // never a mixture of read and default values.
  if (!ParseLastSession(content, d)) SetLastSessionDefaults(d);
}

void WriteLastSession(const DesignRecord& d, Platform& platform, const std::string& path) {
  // The session is kept in a plain file only, as it is read from one: a
  // FIFO there would hold Exit until something read it, and a device is no
  // place for it.
  struct stat found {};
  if (stat(path.c_str(), &found) == 0 && !S_ISREG(found.st_mode)) {
    platform.ShowMessage("We did not read the last-session file.");
    return;
  }
  AtomicFile file(path);
  file.Line(LastSessionLine(d));
  if (!file.Commit()) platform.ShowMessage("We did not read the last-session file.");
}

}  // namespace drenik
