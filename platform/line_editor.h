// Reads lines of text that a person types, or that come from a pipe or a file.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::platform {

// What may stand in place of the text from `begin` up to the cursor. All UTF-8; `begin` counts bytes.
struct Completion {
  std::size_t begin = 0;
  std::vector<std::string> candidates;  // sorted; each goes on from what is typed, maybe in another case
  std::string ending;                   // follows a candidate that is the only one
};

class LineEditor {
 public:
  struct Options {
    std::filesystem::path historyFile;  // kept between runs; empty: none
    std::function<Completion(std::string_view line, std::size_t cursor)> complete;
    // Candidates as whole lines for a terminal of so many columns.
    std::function<std::string(const std::vector<std::string>& candidates, int columns)> list;
    // Called some twenty times a second while a line is waited for; what it writes comes between
    // hideLine() and its return. True ends read() with Kind::Woken.
    std::function<bool(bool lineIsEmpty)> idle;
  };

  struct Input {
    enum class Kind { Line, Interrupted, Woken, End };
    Kind kind = Kind::End;
    std::string
        text;  // of a line, without its line feed; may be of several lines when it comes from the history
  };

  // With editing where standard input and output are terminals that can do it; lines as they come elsewhere.
  // To be made before other threads start.
  static std::unique_ptr<LineEditor> create(Options options);

  virtual ~LineEditor() = default;

  // Waits for a line. The prompt, of characters that take a column each, is shown where a
  // person types.
  virtual Input read(const std::string& prompt) = 0;

  // Whether a person types.
  virtual bool isInteractive() const = 0;

  // Whether no further line can come. Where lines can be edited, Ctrl-D ends read() but not the input.
  virtual bool hasEnded() const = 0;

  // Erases what is typed so far, so that something else can be written; it is drawn again when `idle`
  // returns. For the reading thread. Without effect while no line is read.
  virtual void hideLine() {}

  // Ends read() with Kind::Interrupted; what is typed is dropped. Any thread.
  virtual void interrupt() = 0;

  // Adds to the history, in its file as well. False when the file cannot be written, the first time.
  virtual bool remember(const std::string& /*entry*/) { return true; }

  // Leaves the terminal as it was found; read() no longer returns. Any thread; to be called before the
  // program ends within read().
  virtual void restoreTerminal() {}
};

}  // namespace genostat::platform
