// The host's string tables over text files. A dictionary says nothing about faulty lines: it is
// made on a module's thread, and the session has shown them when it started.
#include "host/string_tables.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "platform/path_text.h"
#include "standalone/language/language.h"
#include "standalone/services/host_folders.h"
#include "standalone/services/string_table_file.h"

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

}  // namespace

struct FacSTDictionary::Contents {
  // Of one folder.
  struct Tables {
    std::filesystem::path folder;
    Texts procedure = {};
    Texts global = {};
  };
  std::vector<Tables> tables;
};

FacSTDictionary::FacSTDictionary(const std::string& folder) : contents_(std::make_unique<Contents>()) {
  for (const std::filesystem::path& below : standalone::stringTableFolders(tableFolder(folder))) {
    contents_->tables.push_back({below});
  }
}

FacSTDictionary::~FacSTDictionary() = default;

void FacSTDictionary::SetProcedure(const std::string& procedure) {
  for (Contents::Tables& tables : contents_->tables) {
    tables.procedure =
        standalone::readStringTable(standalone::stringTableFile(tables.folder, procedure)).texts;
  }
}

void FacSTDictionary::SetGlobalStringTable(const std::string& folder) {
  const std::vector<std::filesystem::path> folders = standalone::stringTableFolders(tableFolder(folder));
  // Another folder may stand for fewer or more than the first one.
  const std::size_t count = std::min(folders.size(), contents_->tables.size());
  for (std::size_t i = 0; i < count; ++i) {
    contents_->tables[i].global =
        standalone::readStringTable(standalone::stringTableFile(folders[i], standalone::kGlobalTable)).texts;
  }
}

std::string FacSTDictionary::LookUp(const std::string& key) const {
  for (const Contents::Tables& tables : contents_->tables) {
    if (const std::string* text = find(tables.procedure, key)) return *text;
    if (const std::string* text = find(tables.global, key)) return *text;
  }
  const standalone::Language& language = standalone::language();
  return language.substitute ? language.substitute(key) : key;
}
