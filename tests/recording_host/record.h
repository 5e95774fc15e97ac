// What the recording host writes down: a line for each constructor, destructor and call, with its arguments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace recording {

// How the host answers, set by the test, and what it has written down. The lines may come from any thread.
struct State {
  std::string metadata;
  std::optional<std::string> home;  // none: the path service knows no such folder
  std::optional<std::string> temp;
  bool adapter = true;
  bool interactive = true;
  bool datasetManager = true;
  std::vector<std::optional<std::string>> datasets;  // none: a null entry
  int takenNames = 0;  // so many comparisons of names find them equal, without a line
  int parseResult = 0;
  // What the parser delivers: texts by subcommand and parameter. The text "?" cannot be read.
  std::map<std::string, std::map<std::string, std::vector<std::string>>> command;
  // Gets each line after it was written down, on the calling thread. Set while the module is idle.
  std::function<void(const std::string&)> onEachLine;
  std::string trigger;  // see onLine
  std::function<void()> reaction;

  std::thread::id commandThread;
  std::vector<std::string> commandLines;
  std::vector<std::string> workerLines;
  std::map<std::string, int> objects;
};

State& state();
// Writes a line for the calling thread.
void write(const std::string& line);
// Has `reaction` done when a line that begins so is written, before it is answered; an empty line ends that.
void onLine(const std::string& start, std::function<void()> reaction);
// The lines of one of the threads so far, which are then forgotten.
std::vector<std::string> takeLines(std::vector<std::string> State::*lines);
// "Table 2" for the second table.
std::string numbered(const std::string& type);

std::string shown(const std::string& text);
std::string shown(const char* text);
std::string shown(bool value);
std::string shown(int value);
std::string shown(double value);
template <typename Value>
std::string shown(const std::vector<Value>& values) {
  std::string text;
  for (const Value& value : values) {
    text += (text.empty() ? "" : " ") + shown(value);
  }
  return "[" + text + "]";
}
template <typename Object>
std::string shown(const std::unique_ptr<Object>& object) {
  return shown(object.get());
}
template <typename Object>
std::string shown(const Object* object) {
  return object == nullptr ? "null" : object->recordedName();
}
template <typename Object>
auto shown(const Object& object) -> decltype(object.recordedName()) {
  return object.recordedName();
}

template <typename... Arguments>
std::string callText(const std::string& what, const Arguments&... arguments) {
  std::string text;
  ((text += (text.empty() ? "" : ", ") + shown(arguments)), ...);
  return what + "(" + text + ")";
}
template <typename... Arguments>
void call(const std::string& what, const Arguments&... arguments) {
  write(callText(what, arguments...));
}
template <typename Result, typename... Arguments>
Result answer(const Result& result, const std::string& what, const Arguments&... arguments) {
  write(callText(what, arguments...) + " = " + shown(result));
  return result;
}

// An object whose constructor is written down. Its copies bear its name; what becomes of them is left out.
class Value {
 public:
  template <typename... Arguments>
  explicit Value(const std::string& name, const Arguments&... arguments) : name_(name) {
    call(name, arguments...);
  }
  const std::string& recordedName() const { return name_; }

 private:
  std::string name_;
};

// An object whose destructor is written down as well.
class Object : public Value {
 public:
  using Value::Value;
  ~Object() { write("~" + recordedName()); }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
};

}  // namespace recording
