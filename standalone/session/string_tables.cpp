// The host's string tables over text files. A dictionary says nothing about faulty lines: it is
// made on a module's thread, and the session has shown them when it started.
#include "host/string_tables.h"

#include <map>
#include <string>
#include <vector>

#include "platform/program.h"
#include "standalone/language/language.h"
#include "standalone/session/host_folders.h"
#include "standalone/session/string_table_file.h"

namespace standalone = genostat::standalone;
namespace platform = genostat::platform;

namespace {

using Texts = std::map<std::string, std::string>;

// The folder that the user chose goes before the one that the module names.
std::filesystem::path tableFolder(const std::string& folder) {
  const std::filesystem::path& chosen = standalone::hostFolders().strings;
  return chosen.empty() ? platform::pathFromNarrow(folder) / "strings" : chosen;
}

const std::string* find(const Texts& texts, const std::string& key) {
  const auto entry = texts.find(key);
  return entry != texts.end() ? &entry->second : nullptr;
}

// The tables of one folder.
struct Tables {
  std::filesystem::path folder;
  Texts procedure = {};
  Texts global = {};
};

std::vector<Tables> tablesBelow(const std::filesystem::path& chosen) {
  std::vector<Tables> tables;
  for (const std::filesystem::path& folder : standalone::stringTableFolders(chosen)) {
    tables.push_back({folder});
  }
  return tables;
}

}  // namespace

struct FacSTDictionary::Contents {
  std::vector<Tables> tables;
};

FacSTDictionary::FacSTDictionary(const std::string& folder)
    : contents_(std::make_unique<Contents>(Contents{tablesBelow(tableFolder(folder))})) {}

FacSTDictionary::~FacSTDictionary() = default;

void FacSTDictionary::SetProcedure(const std::string& procedure) {
  for (Tables& tables : contents_->tables) {
    tables.procedure =
        standalone::readStringTable(standalone::procedureTableFile(tables.folder, procedure)).texts;
  }
}

void FacSTDictionary::SetGlobalStringTable(const std::string& folder) {
  const std::vector<std::filesystem::path> folders = standalone::stringTableFolders(tableFolder(folder));
  for (std::size_t i = 0; i < folders.size(); ++i) {
    contents_->tables[i].global = standalone::readStringTable(standalone::globalTableFile(folders[i])).texts;
  }
}

std::string FacSTDictionary::LookUp(const std::string& key) const {
  for (const Tables& tables : contents_->tables) {
    if (const std::string* text = find(tables.procedure, key)) return *text;
    if (const std::string* text = find(tables.global, key)) return *text;
  }
  const standalone::Language& language = standalone::language();
  return language.substitute ? language.substitute(key) : key;
}
