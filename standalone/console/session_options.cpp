#include "standalone/console/session_options.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstddef>
#include <string_view>

#include "standalone/console/language_choice.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

common::HelpSection examples(std::initializer_list<const char*> lines) {
  common::HelpSection section{translated("Examples"), {}, true};
  for (const char* line : lines) {
    section.entries.push_back({line, {}});
  }
  return section;
}

common::HelpSection exitStatusHelp() {
  return {translated("Exit status"),
          {{"0", translated("everything succeeded")},
           {"1", translated("a command or a job failed, or output could not be written")},
           {"2", translated("wrong usage, or a syntax file that cannot be read")},
           {"130", translated("interrupted; all jobs were cancelled")}}};
}

void addSessionOptions(const common::Command& command, RunOptions& options) {
  command.addText("--temp", options.temporaryFolder, "DIR",
                  translated("folder for temporary files; default: the system's"));
  command.addText("--home", options.homeFolder, "DIR",
                  translated("folder that holds the launcher; default: the program's"));
  command.addText("--strings", options.stringsFolder, "DIR",
                  translated("folder of string tables; default: strings in the home folder"));
  command
      .addText("--language", options.language, "CODE",
               translated("language of what the program says, such as de; default: the system's"))
      ->check(missingLanguage);
  command.addText("--events", options.eventsFile, "FILE",
                  translated("append each client message to this file as a line of JSON"));
  // In the order of OutputFormat.
  static constexpr std::array<std::string_view, 3> kForms = {"text", "json", "html"};
  command.addChoice("--output", kForms, translated("form of the results; default: text"),
                    [&options](std::size_t form) { options.output = static_cast<OutputFormat>(form); });
  command.addText("--to", options.outputFile, "FILE",
                  translated("write the results to this file, at the end"));
  command.addText("--html", options.htmlFile, "FILE",
                  translated("write a report with charts as well: one page, at the end"));
}

}  // namespace genostat::standalone
