// The standalone host around module code under test: folders of its own, a launcher that starts the
// analysis stub, and an adapter that records what the client would see.
#pragma once

#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "host/language.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {

// Records messages as text: "start NAME queued", "start NAME running", "end NAME [SYNTAX]".
class RecordingAdapter : public ZORV_Adapter {
 public:
  int isInteractiveClient() const override { return interactive ? 1 : 0; }
  void postClientMessage(std::int32_t messageId, const ZorvwMsg* message) override;

  std::vector<std::string> messages() const;
  // Waits until `count` messages of end kind were recorded; false after 30 s.
  bool waitForEnds(std::size_t count) const;
  std::size_t ends() const;
  // Waits until this message was recorded; false after 30 s.
  bool waitFor(const std::string& message) const;

  bool interactive = true;
  // Called with the text of each message after it was recorded, on the sending thread. Set it before the
  // first message.
  std::function<void(const std::string&)> onMessage;

 private:
  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  std::vector<std::string> messages_;
  std::size_t ends_ = 0;
};

class TestHost {
 public:
  TestHost();
  ~TestHost();
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  const std::filesystem::path& home() const { return home_; }
  const std::filesystem::path& temp() const { return temp_; }

  // What the next analyses do (see analysis_stub.cpp), one step per line.
  void plan(const std::string& steps);
  // Creates the file that a plan's "wait NAME" waits for.
  void signal(const std::string& name);
  void removeLauncher();
  // How many bytes the processes of a plan's "beat" and "child" have written, and by how many processes.
  std::pair<std::size_t, std::uintmax_t> beats() const;
  // True when the process tree has stopped beating (looked at for up to 10 s).
  bool beatsStop() const;
  // Files in the temporary folder.
  std::vector<std::string> temporaryFiles() const;

  RecordingAdapter adapter;

 private:
  TemporaryFolder folder_;
  std::filesystem::path home_;
  std::filesystem::path temp_;
};

}  // namespace genostat::test
