// The host's string tables over text files. A dictionary says nothing about faulty lines: it is
// made on a module's thread, and the session has shown them when it started.
#include "host/string_tables.h"

#include <map>
#include <string>

#include "platform/program.h"
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

}  // namespace

struct FacSTDictionary::Contents {
  std::filesystem::path folder;
  Texts procedure;
  Texts global;
};

FacSTDictionary::FacSTDictionary(const std::string& folder)
    : contents_(std::make_unique<Contents>(Contents{tableFolder(folder), {}, {}})) {}

FacSTDictionary::~FacSTDictionary() = default;

void FacSTDictionary::SetProcedure(const std::string& procedure) {
  contents_->procedure =
      standalone::readStringTable(standalone::procedureTableFile(contents_->folder, procedure)).texts;
}

void FacSTDictionary::SetGlobalStringTable(const std::string& folder) {
  contents_->global = standalone::readStringTable(standalone::globalTableFile(tableFolder(folder))).texts;
}

std::string FacSTDictionary::LookUp(const std::string& key) const {
  if (const std::string* text = find(contents_->procedure, key)) return *text;
  if (const std::string* text = find(contents_->global, key)) return *text;
  return key;
}
