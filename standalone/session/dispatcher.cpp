#include "standalone/session/dispatcher.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "standalone/language/translation.h"
#include "standalone/syntax/expectation.h"
#include "standalone/syntax/keyword.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

struct Name {
  std::string_view first;
  std::string_view second;  // may be empty
};

Name split(std::string_view name) {
  const std::size_t blank = name.find(' ');
  if (blank == std::string_view::npos) return {name, {}};
  return {name.substr(0, blank), name.substr(blank + 1)};
}

// `what` is the kind of word that is looked for.
std::string_view matchOrFail(const Token& token, std::vector<std::string_view> words, std::string_view what) {
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  noteKeywords(token, words);
  if (token.kind != Token::Kind::Word) {
    TokenCursor::fail(translated("expected a {1}, found {2}", {what, describeToken(token)}), token,
                      translated("expected {1}", {joinAlternatives(words)}));
  }
  const auto index = matchKeyword(token.text, words);
  if (index) return words[*index];
  const KeywordFault fault = explainKeyword(token.text, words, what);
  TokenCursor::fail(fault.message, token, fault.hint);
}

}  // namespace

const CommandHandler& findHandler(std::span<const CommandHandler> handlers, const Command& command) {
  std::vector<std::string_view> firstWords;
  for (const CommandHandler& handler : handlers) {
    firstWords.push_back(split(handler.name).first);
  }
  const std::string_view first =
      matchOrFail(command.tokens.front(), std::move(firstWords), translated("command"));
  std::vector<std::string_view> secondWords;
  for (const CommandHandler& handler : handlers) {
    const Name name = split(handler.name);
    if (name.first != first) continue;
    if (name.second.empty()) return handler;
    secondWords.push_back(name.second);
  }
  const std::string_view second =
      matchOrFail(command.tokens[1], std::move(secondWords), translated("{1} command", {first}));
  return *std::find_if(handlers.begin(), handlers.end(), [&](const CommandHandler& handler) {
    const Name name = split(handler.name);
    return name.first == first && name.second == second;
  });
}

}  // namespace genostat::standalone
