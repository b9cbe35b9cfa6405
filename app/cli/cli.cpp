#include "cli/cli.h"

#include <algorithm>

#include "cli/json_output.h"
#include "cli/messages.h"
#include "cli/options.h"
#include "cli/progress_line.h"
#include "cli/run_design.h"
#include "cli/stress_command.h"
#include "cli/synth_command.h"
#include "cli/table_output.h"
#include "cli/time_command.h"
#include "cli/tolerance_command.h"
#include "cli/winding_command.h"
#include "export/formats.h"
#include "pages/opening_page.h"
#include "pages/time_page.h"

#if DRENIK_WITH_QT
#include "qt/render.h"
#endif

namespace drenik::cli {

namespace {

const char* ValuesTitle(ValueStage v) {
  switch (v) {
    case ValueStage::Exact:
      return "exact";
    case ValueStage::FiveC:
      return "5% C";
    case ValueStage::FiveL:
      return "5% L";
    case ValueStage::Chosen:
      return "chosen";
  }
  return "";
}

int Render(const CliOptions& o, const DesignResult& r, std::ostream& err) {
#if DRENIK_WITH_QT
  auto write = [&](const RecordingCanvas& page, const std::string& file) {
    std::string error;
    if (RenderPageToFile(page, file, o.widthPx, o.heightPx, error)) return 0;
    err << "drenik: " << Printable(error.empty() ? "could not write " + file : error) << "\n";
    return 1;
  };
  // Every page is made before any file is written: a refusal leaves none.
  const bool timePages = !o.smithFile.empty() || !o.stepFile.empty();
  TimePageData data;
  if (timePages) data = MakeTimePageData(r.chosen, o.values);
  if (!data.fault.empty()) {
    err << "drenik: " << Printable(data.fault) << "\n";
    return 2;
  }
  int status = o.renderFile.empty() ? 0 : write(r.page, o.renderFile);
  for (const auto& [file, charts] :
       {std::pair{o.smithFile, TimeCharts::Smith}, std::pair{o.stepFile, TimeCharts::Step}}) {
    if (file.empty()) continue;
    RecordingCanvas page;
    DrawTimePage(page, data, charts);
    status = std::max(status, write(page, file));
  }
  return status;
#else
  (void)o;
  (void)r;
  err << "drenik: render: this build has no Qt\n";
  return 2;
#endif
}

int Export(const CliOptions& o, DesignResult& r, ConsolePlatform& platform, std::ostream& err) {
  // A format that cannot hold the design is bad usage, and nothing is
  // written.
  for (const auto& [option, file] : o.exports) {
    const ExportFormat* format = FindExportFormat(option);
    if (!format || !format->cannotHold) continue;
    if (const std::string why = format->cannotHold(r.chosen); !why.empty()) {
      err << "drenik: --" << option << ": " << why << "\n";
      return 2;
    }
  }
  int status = 0;
  for (const ExportFormat& format : ExportFormats()) {
    for (const auto& [option, file] : o.exports) {
      if (option != format.option) continue;
      platform.messages.clear();
      if (format.write(r.chosen, file, platform)) continue;
      status = 1;
      CouldNotWrite(err, file, platform.messages);
    }
  }
  return status;
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
                   bool errIsTerminal) {
  CliOptions o;
  try {
    o = ParseCommandLine(args);
  } catch (const UsageError& e) {
    err << "drenik: " << Printable(e.what()) << " (see drenik --help)\n";
    return 2;
  }
  for (const std::string& notice : o.notices) err << "drenik: " << Printable(notice) << "\n";
  if (o.command == Command::Help) {
    out << o.helpText;
    return 0;
  }
  if (o.command == Command::Version) {
    out << kProgramVersion << "\n";
    return 0;
  }

  ConsolePlatform platform;
  std::unique_ptr<DesignResult> result;
  try {
    // The stock-part chooser shows its progress as a tolerance run does.
    ProgressLine line(err, errIsTerminal && !o.quiet && o.command == Command::Parts, "parts");
    result = RunDesign(o, platform, [&line](double done) { line.Update(done); });
  } catch (const std::exception& e) {
    err << "drenik: " << Printable(e.what()) << "\n";
    return 2;
  }
  for (const std::string& notice : result->notices) err << "drenik: " << Printable(notice) << "\n";

  switch (o.command) {
    case Command::Design:
      if (o.json) {
        WriteDesignJson(result->chosen, out);
      } else {
        WriteDesignTable(result->exact, result->chosen, ValuesTitle(o.values), out);
      }
      return 0;
    case Command::Render:
      return Render(o, *result, err);
    case Command::Export:
      return Export(o, *result, platform, err);
    case Command::Parts:
      return WriteParts(o, *result, platform, out, err);
    case Command::Winding:
      return WriteWindings(o, *result, out);
    case Command::Tolerance:
      return RunToleranceCommand(o, *result, ValuesTitle(o.values), out, err,
                                 errIsTerminal && !o.quiet);
    case Command::Time:
      return RunTimeCommand(o, *result, ValuesTitle(o.values), out, err);
    case Command::Stress:
      return RunStressCommand(o, *result, ValuesTitle(o.values), out, err);
    case Command::Synth:
      return RunSynthCommand(o, *result, out, err, errIsTerminal && !o.quiet);
    default:
      return 0;
  }
}

}  // namespace drenik::cli
