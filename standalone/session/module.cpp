#include "standalone/session/module.h"

#include <string_view>
#include <typeinfo>

#include "jobs/geno_stat_algo_manager.h"
#include "platform/dynamic_library.h"
#include "standalone/language/translation.h"
#include "standalone/session/quoted_path.h"

namespace genostat::standalone {

namespace {

constexpr const char* kModuleName = "zorvwgnm";

std::string describe(const std::filesystem::path& file) {
  return translated("the module {1}", {quotedPath(file)});
}

template <auto method>
struct Method {};

// What the linker calls a method of the module, taken out of the name of a type that is made of it:
// "N...6MethodIXadL_ZN...EEEE".
template <auto method>
std::string symbolOf() {
  const std::string_view type = typeid(Method<method>).name();
  const std::size_t begin = type.find("L_Z") + 1;
  return std::string(type.substr(begin, type.size() - begin - std::string_view("EEEE").size()));
}

}  // namespace

template <typename Function>
void Module::find(Function*& function, const std::string& symbol) const {
  void* address = library_->symbol(symbol.c_str());
  if (address == nullptr) throw ModuleError(translated("{1} does not export {2}", {describe(file_), symbol}));
  function = reinterpret_cast<Function*>(address);
}

Module::Module(const std::filesystem::path& folder)
    : file_(folder / (std::string(kModuleName) + platform::kLibrarySuffix)) {
  std::string reason;
  library_ = platform::DynamicLibrary::open(file_, reason);
  if (!library_) throw ModuleError(translated("cannot load {1}: {2}", {describe(file_), reason}));
  find(entry_, "GENOSTAT");
  find(getManager_, "getGenoManagerInstance");
  find(cancelJob_, "cancelGenoJob");
  find(isPendingOrRunning_, symbolOf<&GenoStatAlgoManager::isJobPendingOrRunning>());
  find(isQueueFull_, symbolOf<&GenoStatAlgoManager::isQueueFull>());
  find(cancelAllPending_, symbolOf<&GenoStatAlgoManager::cancellAllJobsPending>());
}

Module::~Module() = default;

bool Module::isJobPendingOrRunning(const std::string& name) const {
  GenoStatAlgoManager* manager = getManager_();
  return manager != nullptr && isPendingOrRunning_(manager, name);
}

bool Module::cancelJob(const std::string& name) const {
  return cancelJob_(getManager_(), name.c_str());
}

bool Module::isQueueFull() const {
  GenoStatAlgoManager* manager = getManager_();
  return manager != nullptr && isQueueFull_(manager);
}

void Module::cancelAllPending() const {
  if (GenoStatAlgoManager* manager = getManager_()) cancelAllPending_(manager);
}

}  // namespace genostat::standalone
