// The procedure module, loaded at run time and called through what it exports.
#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

class GenoStatAlgoManager;

namespace genostat::platform {
class DynamicLibrary;
}

namespace genostat::standalone {

// A module that cannot be used; what() is a full sentence naming its file.
struct ModuleError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Module {
 public:
  // Loads the module from a folder. Throws ModuleError.
  explicit Module(const std::filesystem::path& folder);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  // Runs the session's current command. Command thread.
  void runCommand() const { entry_(); }

  // The client's side, from any thread but one that delivers a message of the module.
  bool isJobPendingOrRunning(const std::string& name) const;
  bool cancelJob(const std::string& name) const;
  // While it is, the module refuses every command.
  bool isQueueFull() const;
  // Drops every queued job; the running one goes on.
  void cancelAllPending() const;

 private:
  // The methods of the exported class are called as the plain functions that they are to the
  // linker: the object comes first. Names and convention are the same for g++ on both systems.
  using Entry = void (*)();
  using GetManager = GenoStatAlgoManager* (*)();
  using CancelJob = bool (*)(GenoStatAlgoManager*, const char*);
  using IsPendingOrRunning = bool (*)(GenoStatAlgoManager*, const std::string&);
  using IsQueueFull = bool (*)(GenoStatAlgoManager*);
  using CancelAllPending = void (*)(GenoStatAlgoManager*);

  template <typename Function>
  Function find(const char* symbol) const;

  std::filesystem::path file_;
  std::unique_ptr<platform::DynamicLibrary> library_;
  Entry entry_ = nullptr;
  GetManager getManager_ = nullptr;
  CancelJob cancelJob_ = nullptr;
  IsPendingOrRunning isPendingOrRunning_ = nullptr;
  IsQueueFull isQueueFull_ = nullptr;
  CancelAllPending cancelAllPending_ = nullptr;
};

}  // namespace genostat::standalone
