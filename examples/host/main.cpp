// A host in few lines: loads the module, runs commands, waits for their jobs and shows the results.
#include <exception>
#include <iostream>

#include "standalone/output/text_renderer.h"
#include "standalone/procedures/commands.h"
#include "standalone/session/session.h"

namespace host = genostat::standalone;

struct View : host::SessionView {
  void showNotice(const std::string& text) override { std::cout << text << '\n'; }
  void showDiagnostic(const host::Diagnostic& diagnostic) override {
    std::cerr << diagnostic.message << '\n';
  }
};

bool run(const std::filesystem::path& folder, const std::string& commands) {
  View view;
  host::OutputDocument output;
  output.onItem([](const std::string& item) { std::cout << host::renderItemAsText(item, {}); });
  host::HostFolders folders{std::filesystem::temp_directory_path(), folder, {}};
  host::Session session({folders, true, folder, {}}, host::procedureCommands(), view, output);
  session.run(std::make_shared<const host::SourceText>(host::SourceText{"arguments", commands}));
  session.jobs().finish();
  return session.close();
}

int main(int argumentCount, char** arguments) {
  if (argumentCount != 3) {
    std::cerr << "example_host: a folder and commands are needed.\n"
                 "Usage: example_host FOLDER COMMANDS\n"
                 "FOLDER holds the module and the launcher; COMMANDS is one argument, such as "
                 "\"GENOSTAT /JOB NAME='a' FILE='a.fastq'.\"\n";
    return 2;
  }
  try {
    return run(arguments[1], arguments[2]) ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << "example_host: " << error.what() << '\n';
    return 1;
  }
}
