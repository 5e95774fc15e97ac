// A session of the recording host: a text whose lines "> ..." say what the test does, each followed by what
// came of it.
//
//   > metadata JSON            what the host says of the next command
//   > datasets A, -, B         the open datasets, "-" for a null entry; "none": a host without datasets
//   > taken N                  the next N names that are compared with them are taken
//   > adapter none|mute|there  no adapter, one without an interactive client, one with
//   > home none|there          the folder of the launcher and the script; <home> in texts
//   > temp none|gone|there     the folder of the results; <temp> in texts
//   > refuse N                 what the host's parser answers
//   > throw LINE               the host throws when it has written a line that begins so; without LINE no
//   more > cancel at NAME LINE      the same, but it cancels the job > plan STEP; STEP          what the next
//   analyses do (tests/support/analysis_stub.cpp) > file NAME TEXT           a file below <home> > remove
//   NAME              removes it > command                  runs GENOSTAT; lines ">   SUBCOMMAND PARAMETER:
//   TEXT | TEXT" below say how it was parsed > fill N                   queues the jobs f1 to fN > started
//   waits until the analysis has written its arguments > signal NAME              ends a plan's "wait NAME"
//   > hold                     the result cannot be removed until the next "> ended"
//   > ended NAME               waits until no job of that name waits or runs; shows what the worker has done
//   > cancel NAME, > cancel all, > find NAME, > full
//   > nothing                  gives null pointers to all that a client may call
//   > texts                    all texts of errors and all keywords, and what stands for values beyond
//   > load                     what loading the module does
//   > end                      deletes the manager
//   > only LINE | LINE         shows only lines that begin so from here on; without LINE all
//   > describe                 shows how commands are described, which is otherwise left out: it is always
//   the same
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/recording_host/held_file.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {

class Session {
 public:
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // The text again, with what came of each action now.
  std::string play(const std::string& text);

 private:
  using Words = const std::string&;
  // Does what one line says; `below` are the lines that belong to it. What it has to show goes to out_.
  void act(Words action, Words rest, const std::vector<std::string>& below);
  bool prepare(Words action, Words rest);
  void command(const std::vector<std::string>& below);
  void fill(int jobs);
  void waitFor(const std::string& what, const std::function<bool()>& done);
  void showWorker();
  void showLines(const std::vector<std::string>& lines, const std::string& prefix);
  std::string inPlace(std::string text) const;
  std::string withoutPlaces(std::string text) const;

  TemporaryFolder folder_;
  std::filesystem::path home_;
  std::filesystem::path temp_;
  std::size_t shownArguments_ = 0;
  std::optional<HeldFile> held_;
  std::vector<std::string> only_;
  bool described_ = false;
  std::string out_;
};

}  // namespace genostat::test
