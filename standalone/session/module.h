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

// What a host's client asks of the module about its jobs. From any thread but one that delivers a message of
// the module.
class JobControl {
 public:
  virtual ~JobControl() = default;

  virtual bool isJobPendingOrRunning(const std::string& name) const = 0;
  // Cancels one job of that name; false where there is none. A job cancelled before its process exists may be
  // started all the same: it is to be cancelled again.
  virtual bool cancelJob(const std::string& name) const = 0;
  // While it is, the module refuses every command.
  virtual bool isQueueFull() const = 0;
  // Drops every queued job; the running one goes on.
  virtual void cancelAllPending() const = 0;
};

class Module : public JobControl {
 public:
  // Loads the module from a folder. Throws ModuleError.
  explicit Module(const std::filesystem::path& folder);
  ~Module() override;
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  // Runs the session's current command. Command thread.
  void runCommand() const { entry_(); }

  bool isJobPendingOrRunning(const std::string& name) const override;
  bool cancelJob(const std::string& name) const override;
  bool isQueueFull() const override;
  void cancelAllPending() const override;

 private:
  template <typename Function>
  void find(Function*& function, const std::string& symbol) const;

  std::filesystem::path file_;
  std::unique_ptr<platform::DynamicLibrary> library_;
  void (*entry_)() = nullptr;
  GenoStatAlgoManager* (*getManager_)() = nullptr;
  bool (*cancelJob_)(GenoStatAlgoManager*, const char*) = nullptr;
  // The methods of the exported class are called as the plain functions that they are to the
  // linker: the object comes first. Names and convention are the same for g++ on both systems.
  bool (*isPendingOrRunning_)(GenoStatAlgoManager*, const std::string&) = nullptr;
  bool (*isQueueFull_)(GenoStatAlgoManager*) = nullptr;
  void (*cancelAllPending_)(GenoStatAlgoManager*) = nullptr;
};

}  // namespace genostat::standalone
