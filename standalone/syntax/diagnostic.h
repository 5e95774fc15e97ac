// What the standalone host says about command syntax: a sentence, the place it
// speaks of, and a hint.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "common/text/printable_text.h"

namespace genostat::standalone {

// A text of commands: a file, standard input, or the syntax of an end message.
struct SourceText {
  std::string name;  // shown in diagnostics: a path, "<stdin>", "<job run_1>"
  std::string text;  // UTF-8
};

using SourcePtr = std::shared_ptr<const SourceText>;

// Byte offsets [begin, end) into a source text. An empty range is a place between characters.
struct SourceRange {
  SourcePtr source;
  std::size_t begin = 0;
  std::size_t end = 0;
  // Line of `begin`, counted from 1; 0 when unknown, then a diagnostic counts it. The scanner
  // fills it in, so that many errors in one long text do not count its lines again and again.
  std::size_t line = 0;
};

struct Diagnostic {
  enum class Severity { Error, Warning };

  Severity severity = Severity::Error;
  std::string message;               // one sentence, without a final period
  std::optional<SourceRange> range;  // none when no text is to blame
  std::string hint;                  // what was expected, the nearest keyword; may be empty
};

// "FILE:LINE:COLUMN: error: MESSAGE", the line, a caret below the range, and the hint.
// Lines and columns count from 1; columns count characters, not bytes. A long line is shown
// cut around the place. Characters that would steer a terminal are written visibly. No final line feed.
std::string renderDiagnostic(const Diagnostic& diagnostic);

// Its parts, for whoever breaks lines: the first line, the line with its caret (two lines, or nothing
// without a place) and the hint, not indented. The excerpt is cut to so many columns, 20 or more.
struct DiagnosticParts {
  std::string message;
  std::string excerpt;
  std::string hint;
};
DiagnosticParts describeDiagnostic(const Diagnostic& diagnostic, std::size_t columns);

using common::quotedName;
using common::quoteForMessage;

// Ends the command that throws it; the session shows the diagnostic and goes on.
class CommandError : public std::runtime_error {
 public:
  explicit CommandError(Diagnostic diagnostic)
      : std::runtime_error(diagnostic.message), diagnostic_(std::move(diagnostic)) {}
  explicit CommandError(const std::string& message) : CommandError(Diagnostic{{}, message, {}, {}}) {}

  const Diagnostic& diagnostic() const { return diagnostic_; }

 private:
  Diagnostic diagnostic_;
};

}  // namespace genostat::standalone
