#include "standalone/console/session_options.h"

#include <CLI/CLI.hpp>

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "common/text/nearest_word.h"
#include "standalone/console/language_choice.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

const char* const kExitStatusHelp = marked(
    "Exit status:\n"
    "  0    everything succeeded\n"
    "  1    a command or a job failed, or output could not be written\n"
    "  2    wrong usage, or a syntax file that cannot be read\n"
    "  130  interrupted; all jobs were cancelled\n");

namespace {

std::optional<OutputFormat> formatNamed(std::string_view name) {
  if (name == "text") return OutputFormat::Text;
  if (name == "json") return OutputFormat::Json;
  if (name == "html") return OutputFormat::Html;
  return std::nullopt;
}

const CLI::Validator& formatName() {
  static const CLI::Validator validator(
      [](std::string& value) {
        if (formatNamed(value)) return std::string();
        constexpr std::array<std::string_view, 3> kForms = {"text", "json", "html"};
        return describeChoice(translated("text, json or html"), value, kForms);
      },
      "", "text, json or html");
  return validator;
}

const CLI::Validator& languageName() {
  static const CLI::Validator validator([](std::string& value) { return missingLanguage(value); }, "",
                                        "a language");
  return validator;
}

}  // namespace

std::string describeChoice(std::string_view choices, std::string_view found,
                           std::span<const std::string_view> words) {
  const std::string quoted = quoteForMessage(found);
  const auto meant = common::nearestWord(found, words);
  return meant ? translated("expected {1}, found {2}; did you mean {3}?", {choices, quoted, *meant})
               : translated("expected {1}, found {2}", {choices, quoted});
}

std::string examplesHelp(const char* lines) {
  return translated("Examples:") + '\n' + lines;
}

const CLI::Validator& notEmpty() {
  static const CLI::Validator validator(
      [](std::string& value) { return value.empty() ? translated("the value is empty") : std::string(); }, "",
      "not empty");
  return validator;
}

CLI::Option* addTextOption(CLI::App& command, const char* name, std::string& value, const char* type,
                           const std::string& description) {
  return command.add_option(name, value, description)->type_name(type)->take_last()->check(notEmpty());
}

void addSessionOptions(CLI::App& command, RunOptions& options) {
  const auto add = [&command](const char* name, std::string& value, const char* type,
                              const std::string& description) {
    addTextOption(command, name, value, type, description);
  };
  add("--temp", options.temporaryFolder, "DIR",
      translated("folder for temporary files; default: the system's"));
  add("--home", options.homeFolder, "DIR",
      translated("folder that holds the launcher; default: the program's"));
  add("--strings", options.stringsFolder, "DIR",
      translated("folder of string tables; default: strings in the home folder"));
  command
      .add_option("--language", options.language,
                  translated("language of what the program says, such as de; default: the system's"))
      ->type_name("CODE")
      ->take_last()
      ->check(languageName());
  add("--events", options.eventsFile, "FILE",
      translated("append each client message to this file as a line of JSON"));
  command
      .add_option_function<std::string>(
          "--output",
          [&options](const std::string& value) {
            options.output = formatNamed(value).value_or(OutputFormat::Text);
          },
          translated("form of the results; default: text"))
      ->type_name("text|json|html")
      ->take_last()
      ->check(formatName());
  add("--to", options.outputFile, "FILE", translated("write the results to this file, at the end"));
  add("--html", options.htmlFile, "FILE",
      translated("write a report with charts as well: one page, at the end"));
}

}  // namespace genostat::standalone
