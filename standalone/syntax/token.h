#pragma once

#include <string>

#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

// One token of a command. The final period is not a token.
struct Token {
  enum class Kind {
    Word,    // a name or keyword: letters, digits, _ . @ # $ and bytes above 0x7F; as typed
    Number,  // as typed in `text`, its value in `number`; a sign belongs to it where a value may stand
    String,  // a quoted literal, without its quotes, doubled quotes undone
    Symbol,  // one of / = ( ) , * and any other single character
    End      // after the last token; its range is the command's end
  };

  Kind kind = Kind::End;
  std::string text;
  double number = 0;
  SourceRange range;

  bool isSymbol(char c) const { return kind == Kind::Symbol && text.size() == 1 && text[0] == c; }
};

// Whether the byte may be part of a word.
bool isWordByte(char c);

}  // namespace genostat::standalone
