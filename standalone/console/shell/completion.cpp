#include "standalone/console/shell/completion.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

#include "common/quality/checks.h"
#include "common/text/ascii.h"
#include "common/text/printable_text.h"
#include "common/text/utf8.h"
#include "platform/path_text.h"
#include "standalone/console/shell/help.h"
#include "standalone/console/shell/words.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/token.h"

namespace genostat::standalone {

namespace {

using platform::Completion;

// Where a quote that is still open begins; npos where none is. A quote ends with its line.
std::size_t openQuote(std::string_view text) {
  std::size_t begin = std::string_view::npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (begin == std::string_view::npos) {
      if (text[i] == '\'' || text[i] == '"') begin = i;
    } else if (text[i] == text[begin] || text[i] == '\n') {
      begin = std::string_view::npos;
    }
  }
  return begin;
}

// Gathers what begins with the text that is typed, in any case.
class Candidates {
 public:
  explicit Candidates(std::string_view typed) : typed_(typed) {}

  void addName(std::string_view name) {
    if (common::startsWithIgnoreCase(name, typed_)) candidates_.emplace_back(name);
  }
  // In the case in which the user types.
  void addKeyword(std::string_view keyword) {
    if (!common::startsWithIgnoreCase(keyword, typed_)) return;
    const bool lower = typed_ != common::upperCase(typed_) && typed_ == common::lowerCase(typed_);
    const bool upper = typed_ != common::lowerCase(typed_) && typed_ == common::upperCase(typed_);
    candidates_.push_back(lower   ? common::lowerCase(keyword)
                          : upper ? common::upperCase(keyword)
                                  : std::string(keyword));
  }
  template <typename Names>
  void addNames(const Names& names) {
    for (const auto& name : names) {
      addName(name);
    }
  }

  Completion result(std::size_t begin, std::string ending) {
    std::ranges::sort(candidates_);
    candidates_.erase(std::unique(candidates_.begin(), candidates_.end()), candidates_.end());
    return {begin, std::move(candidates_), std::move(ending)};
  }

 private:
  std::string typed_;
  std::vector<std::string> candidates_;
};

std::string doubled(std::string_view text, char quote) {
  std::string result;
  for (const char c : text) {
    result += c;
    if (c == quote) result += quote;
  }
  return result;
}

std::string undoubled(std::string_view text, char quote) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    result += text[i];
    if (text[i] == quote && i + 1 < text.size() && text[i + 1] == quote) ++i;
  }
  return result;
}

// Paths that begin with `typed`; folders end with a slash.
std::vector<std::string> pathsFrom(const std::string& typed) {
  const std::size_t slash = typed.rfind('/');
  const std::string folder = slash == std::string::npos ? std::string() : typed.substr(0, slash + 1);
  const std::string beginning = typed.substr(folder.size());
  std::vector<std::string> paths;
  std::error_code error;
  std::filesystem::directory_iterator entry(platform::pathFromUtf8(folder.empty() ? "." : folder), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = platform::pathToUtf8(entry->path().filename());
    // Nothing that a line could not hold.
    if (!name.starts_with(beginning) || name.find_first_of("\r\n") != std::string::npos) continue;
    if (common::toValidUtf8(name) != name) continue;
    if (name.starts_with('.') && beginning.empty()) continue;
    std::error_code unknown;
    paths.push_back(folder + name + (entry->is_directory(unknown) ? "/" : ""));
  }
  std::ranges::sort(paths);
  return paths;
}

// After a single folder typing goes on; after a single file the word is complete.
std::string endingFor(const std::vector<std::string>& paths, std::string_view ending) {
  return paths.size() == 1 && paths.front().ends_with('/') ? std::string() : std::string(ending);
}

Completion completeQuotedPath(std::string_view line, std::size_t quotePlace, std::size_t cursor) {
  const char quote = line[quotePlace];
  const std::size_t begin = quotePlace + 1;
  std::vector<std::string> paths = pathsFrom(undoubled(line.substr(begin, cursor - begin), quote));
  const std::string ending = endingFor(paths, {&quote, 1});
  for (std::string& path : paths) {
    path = doubled(path, quote);
  }
  return {begin, std::move(paths), ending};
}

// An argument of a shell word, which needs quotes only where it has blanks.
Completion completeBarePath(std::string_view typed, std::size_t begin) {
  std::vector<std::string> paths = pathsFrom(std::string(typed));
  const bool quoted = std::ranges::any_of(
      paths, [](const std::string& path) { return path.find_first_of(" \t'\"") != std::string::npos; });
  if (!quoted) return {begin, paths, endingFor(paths, " ")};
  const std::string ending = endingFor(paths, "'");
  for (std::string& path : paths) {
    path = "'" + doubled(path, '\'');
  }
  return {begin, std::move(paths), ending};
}

// `typed` is the part of a shell word's line that ends at the cursor, `index` its place after the word.
Completion completeArgument(const CompletionSources& sources, ShellVerb verb, std::size_t index,
                            std::string_view typed, std::size_t begin) {
  Candidates candidates(typed);
  const bool first = index == 1;
  switch (verb) {
    case ShellVerb::Cancel:
      if (first) candidates.addNames(sources.jobs);
      if (first && !sources.jobs.empty()) candidates.addKeyword("all");
      return candidates.result(begin, "");
    case ShellVerb::Show:
      if (first) candidates.addNames(sources.datasets);
      if (first) candidates.addNames(sources.variables);
      return candidates.result(begin, " ");
    case ShellVerb::Help:
      for (const std::string& topic : helpTopics()) {
        if (first) candidates.addKeyword(topic);
      }
      return candidates.result(begin, "");
    case ShellVerb::Output:
      if (index == 2) return completeBarePath(typed, begin);
      for (const std::string_view form : {"html", "json", "text"}) {
        if (first) candidates.addKeyword(form);
      }
      return candidates.result(begin, " ");
    case ShellVerb::Run:
      return first ? completeBarePath(typed, begin) : Completion{};
    case ShellVerb::Jobs:
    case ShellVerb::Wait:
    case ShellVerb::Datasets:
    case ShellVerb::Quit:
      break;
  }
  return {};
}

std::size_t argumentBegin(std::string_view line) {
  const std::size_t blank = line.find_last_of(" \t");
  return blank == std::string_view::npos ? 0 : blank + 1;
}

Completion completeSyntax(const CompletionSources& sources, const std::string& before,
                          std::string_view line) {
  std::size_t begin = line.size();
  while (begin > 0 && isWordByte(line[begin - 1]))
    --begin;
  const std::string_view typed = line.substr(begin);
  const Expectation expected = sources.expectedAfter(before + std::string(line.substr(0, begin)));
  Candidates candidates(typed);
  for (const std::string& keyword : expected.keywords) {
    candidates.addKeyword(keyword);
  }
  if (expected.variable) candidates.addNames(sources.variables);
  if (expected.dataset) candidates.addNames(sources.datasets);
  if (expected.resultColumn) {
    for (const common::ResultColumn& column : common::kResultColumns) {
      candidates.addName(column.name);
    }
  }
  const bool atBegin = before.empty() && line.find_first_not_of(" \t") >= begin;
  if (atBegin) {
    for (const ShellWord& word : shellWords()) {
      candidates.addKeyword(word.name);
    }
  }
  const bool name = expected.variable || expected.resultColumn;
  return candidates.result(begin, atBegin || name ? " " : "");
}

constexpr std::size_t kMostListed = 120;
constexpr std::size_t kListGap = 2;

// A folder's slash belongs to its name.
std::string_view lastPart(std::string_view path) {
  if (path.empty()) return path;
  const std::size_t slash = path.substr(0, path.size() - 1).rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::size_t listedWidth(const std::string& text) {
  return static_cast<std::size_t>(common::displayWidth(text));
}

}  // namespace

Completion completeShellLine(const CompletionSources& sources, const std::string& before,
                             std::string_view line, std::size_t cursor) {
  line = line.substr(0, cursor);
  if (const std::size_t quote = openQuote(line); quote != std::string_view::npos) {
    return completeQuotedPath(line, quote, cursor);
  }
  if (before.empty()) {
    const FirstWord first = classifyFirstWord(line, sources.commands);
    const std::size_t begin = argumentBegin(line);
    const std::size_t index = splitShellLine(line.substr(0, begin)).size();
    if (first.kind == FirstWord::Kind::Shell && index > 0) {
      return completeArgument(sources, first.verb, index, line.substr(begin), begin);
    }
  }
  return completeSyntax(sources, before, line);
}

std::string candidateList(const std::vector<std::string>& candidates, int columns) {
  std::vector<std::string> listed;
  std::size_t widest = 0;
  for (std::size_t i = 0; i < std::min(candidates.size(), kMostListed); ++i) {
    listed.push_back(common::printableText(lastPart(candidates[i])));
    widest = std::max(widest, listedWidth(listed.back()));
  }
  const auto space = static_cast<std::size_t>(std::max(columns, 1)) + kListGap - 1;
  const std::size_t perRow = std::max<std::size_t>(1, space / (widest + kListGap));
  const std::size_t rows = (listed.size() + perRow - 1) / perRow;
  std::string list;
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t i = row; i < listed.size(); i += rows) {
      list += listed[i];
      if (i + rows < listed.size()) list.append(widest + kListGap - listedWidth(listed[i]), ' ');
    }
    list += '\n';
  }
  if (listed.size() < candidates.size()) {
    list += translated("and {1} more", {std::to_string(candidates.size() - listed.size())}) + '\n';
  }
  return list;
}

}  // namespace genostat::standalone
