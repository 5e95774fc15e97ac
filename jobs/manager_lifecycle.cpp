// The manager's creation and end, and its texts.
#include <new>
#include <system_error>

#include "entry/record/geno_job_settings.h"
#include "host/string_tables.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/process.h"

std::once_flag GenoStatAlgoManager::m_initFlag;
std::atomic<GenoStatAlgoManager*> GenoStatAlgoManager::m_pAlgoMgr = nullptr;

GenoStatAlgoManager* GenoStatAlgoManager::getManagerInstance() {
  // On the heap and never destroyed with the statics: a static object that owns a thread
  // hangs when the process ends or the library is unloaded.
  std::call_once(m_initFlag, [] { m_pAlgoMgr = new (std::nothrow) GenoStatAlgoManager; });
  return m_pAlgoMgr;
}

GenoStatAlgoManager* getGenoManagerInstance() {
  return GenoStatAlgoManager::getManagerInstance();
}

// Here, where the types of the owned members are complete.
GenoStatAlgoManager::GenoStatAlgoManager() = default;

GenoStatAlgoManager::~GenoStatAlgoManager() {
  GenoStatAlgoManager* self = this;
  m_pAlgoMgr.compare_exchange_strong(self, nullptr);
  {
    const std::lock_guard lock(queueMutex_);
    stop_ = true;
    queueChanged_.notify_all();
  }
  joinWorker();
}

void GenoStatAlgoManager::joinWorker() {
  if (!worker_.joinable()) return;
  if (worker_.get_id() == std::this_thread::get_id()) {
    throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
  }
  worker_.join();
}

std::string GenoStatAlgoManager::getLocalizedString(const std::string& key) const {
  const FacSTDictionary* table = stringTable_.load();
  return table != nullptr ? table->LookUp(key) : key;
}
