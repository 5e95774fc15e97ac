#include "standalone/session/module.h"

#include "platform/dynamic_library.h"
#include "platform/path_text.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

constexpr const char* kModuleName = "zorvwgnm";

std::string describe(const std::filesystem::path& file) {
  return translated("the module {1}", {"\"" + platform::pathToUtf8(file) + "\""});
}

}  // namespace

template <typename Function>
Function Module::find(const char* symbol) const {
  void* address = library_->symbol(symbol);
  if (address == nullptr) throw ModuleError(translated("{1} does not export {2}", {describe(file_), symbol}));
  return reinterpret_cast<Function>(address);
}

Module::Module(const std::filesystem::path& folder)
    : file_(folder / (std::string(kModuleName) + platform::kLibrarySuffix)) {
  std::string reason;
  library_ = platform::DynamicLibrary::open(file_, reason);
  if (!library_) throw ModuleError(translated("cannot load {1}: {2}", {describe(file_), reason}));
  entry_ = find<Entry>("GENOSTAT");
  getManager_ = find<GetManager>("getGenoManagerInstance");
  cancelJob_ = find<CancelJob>("cancelGenoJob");
  isPendingOrRunning_ = find<IsPendingOrRunning>(
      "_ZN19GenoStatAlgoManager21isJobPendingOrRunningERKNSt7__cxx1112basic_stringIcSt11char_"
      "traitsIcESaIcEEE");
  isQueueFull_ = find<IsQueueFull>("_ZN19GenoStatAlgoManager11isQueueFullEv");
  cancelAllPending_ = find<CancelAllPending>("_ZN19GenoStatAlgoManager21cancellAllJobsPendingEv");
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
