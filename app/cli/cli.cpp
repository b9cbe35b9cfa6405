#include "cli/cli.h"

#include "cli/json_output.h"
#include "cli/options.h"
#include "cli/run_design.h"
#include "cli/table_output.h"
#include "cli/tolerance_command.h"
#include "export/writers.h"
#include "pages/opening_page.h"

#if DRENIK_WITH_QT
#include "qt/render.h"
#endif

namespace drenik::cli {

namespace {

const char* ValuesTitle(Values v) {
  switch (v) {
    case Values::Exact:
      return "exact";
    case Values::FiveC:
      return "5% C";
    case Values::FiveL:
      return "5% L";
  }
  return "";
}

int Render(const CliOptions& o, const DesignResult& r, std::ostream& err) {
#if DRENIK_WITH_QT
  std::string error;
  if (!RenderPageToFile(r.page, o.renderFile, o.widthPx, o.heightPx, error)) {
    err << "drenik: " << (error.empty() ? "could not write " + o.renderFile : error) << "\n";
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
  DesignRecord& d = r.chosen;
  using Writer = bool (*)(DesignRecord&, const std::string&, Platform&);
  const std::pair<const std::string*, Writer> files[] = {
      {&o.lct,
       [](DesignRecord& d, const std::string& f, Platform& p) { return WritePallisFile(d, f, p); }},
      {&o.asc, [](DesignRecord& d, const std::string& f,
                  Platform& p) { return WriteLtspiceFile(d, f, p); }},
      {&o.cir, [](DesignRecord& d, const std::string& f,
                  Platform& p) { return WriteSpiceNetlist(d, f, p); }},
      {&o.s2p,
       [](DesignRecord& d, const std::string& f, Platform& p) { return WriteTouchstone(d, f, p); }},
      {&o.csv,
       [](DesignRecord& d, const std::string& f, Platform& p) { return WriteSweepCsv(d, f, p); }},
  };
  int status = 0;
  for (const auto& [file, writer] : files) {
    if (file->empty()) continue;
    platform.messages.clear();
    if (writer(d, *file, platform)) continue;
    status = 1;
    err << "drenik: could not write " << *file;
    for (const std::string& m : platform.messages) err << ": " << m;
    err << "\n";
  }
  return status;
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  CliOptions o;
  try {
    o = ParseCommandLine(args);
  } catch (const UsageError& e) {
    err << "drenik: " << e.what() << " (see drenik --help)\n";
    return 2;
  }
  if (o.command == Command::Help) {
    out << UsageText();
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
  } catch (const UsageError& e) {
    err << "drenik: " << e.what() << "\n";
    return 2;
  } catch (const std::exception& e) {
    err << "drenik: " << e.what() << "\n";
    return 2;
  }

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
    case Command::Tolerance:
      return RunToleranceCommand(o, *result, ValuesTitle(o.values), out, err);
    default:
      return 0;
  }
}

}  // namespace drenik::cli
