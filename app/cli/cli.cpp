#include "cli/cli.h"

#include "cli/json_output.h"
#include "cli/messages.h"
#include "cli/options.h"
#include "cli/run_design.h"
#include "cli/table_output.h"
#include "cli/tolerance_command.h"
#include "cli/winding_command.h"
#include "export/formats.h"
#include "pages/opening_page.h"

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
  }
  return "";
}

int Render(const CliOptions& o, const DesignResult& r, std::ostream& err) {
#if DRENIK_WITH_QT
  std::string error;
  if (!RenderPageToFile(r.page, o.renderFile, o.widthPx, o.heightPx, error)) {
    err << "drenik: " << Printable(error.empty() ? "could not write " + o.renderFile : error)
        << "\n";
    return 1;
  }
  return 0;
#else
  (void)o;
  (void)r;
  err << "drenik: render: this build has no Qt\n";
  return 2;
#endif
}

int Export(const CliOptions& o, DesignResult& r, ConsolePlatform& platform, std::ostream& err) {
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
    result = RunDesign(o, platform);
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
    default:
      return 0;
  }
}

}  // namespace drenik::cli
