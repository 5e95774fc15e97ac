// Runs commands as a user types them and collects what they show, warn and refuse.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/output/output_document.h"
#include "standalone/output/text_renderer.h"
#include "standalone/procedures/commands.h"
#include "standalone/session/dispatcher.h"
#include "tests/support/temporary_folder.h"

namespace genostat::standalone {

class Commands : public testing::Test {
 protected:
  Commands() {
    output_.onItem([this](const std::string& item) {
      items_.push_back(item);
      shown_ += renderItemAsText(item, {false, false, 130});
    });
  }

  // The path with slashes, which every system takes.
  std::string write(const std::string& name, const std::string& content) {
    std::ofstream(folder_.path() / platform::pathFromUtf8(name), std::ios::binary) << content;
    const std::u8string path = (folder_.path() / platform::pathFromUtf8(name)).generic_u8string();
    return std::string(path.begin(), path.end());
  }

  // Makes a text of comma-separated values, with variable names in its first line, the active dataset.
  void useData(const std::string& csv) {
    std::string variables = csv.substr(0, csv.find('\n')) + ",";
    for (std::size_t comma = 0; (comma = variables.find(',', comma)) != std::string::npos;) {
      variables.replace(comma, 1, " AUTO ");
    }
    run("GET DATA /TYPE=TXT /FILE='" + write("data.csv", csv) +
        "' /DELIMITERS=',' /FIRSTCASE=2 /VARIABLES=" + variables + ".");
    items_.clear();
  }

  // What the commands show, diagnostics in between, with FOLDER for the test's folder.
  std::string run(const std::string& text) {
    shown_.clear();
    const auto source = std::make_shared<const SourceText>(SourceText{"test", text});
    for (const ScanResult::Item& item : scanCommands(source).items) {
      try {
        if (item.error) throw CommandError(*item.error);
        CommandContext context{item.command, datasets_, output_, settings_,
                               [this](const Diagnostic& diagnostic) { say(diagnostic); }};
        findHandler(procedureCommands(), item.command).run(context);
      } catch (const CommandError& error) {
        say(error.diagnostic());
      }
    }
    return shown_;
  }

  void say(const Diagnostic& diagnostic) {
    shown_ += diagnostic.severity == Diagnostic::Severity::Error ? "error" : "warning";
    if (diagnostic.range) {
      const SourceRange& range = *diagnostic.range;
      shown_ += " at [" + range.source->text.substr(range.begin, range.end - range.begin) + "]";
    }
    shown_ +=
        ": " + diagnostic.message + (diagnostic.hint.empty() ? "" : " (" + diagnostic.hint + ")") + "\n";
  }

  std::string activeName() { return datasets_.active() != nullptr ? datasets_.active()->name : "(none)"; }

  test::TemporaryFolder folder_;
  DatasetStore datasets_;
  OutputDocument output_;
  Settings settings_;
  std::string shown_;
  std::vector<std::string> items_;  // the output as JSON, item by item
};

}  // namespace genostat::standalone
