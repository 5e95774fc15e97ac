// PRESERVE, RESTORE and SET.

#include <array>
#include <string_view>

#include "standalone/language/translation.h"
#include "standalone/procedures/commands.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

void runPreserve(CommandContext& context) {
  TokenCursor cursor(context.command);
  cursor.next();
  cursor.expectEnd();
  context.settings.preserved.push_back(context.settings);
}

void runRestore(CommandContext& context) {
  TokenCursor cursor(context.command);
  const Token& name = cursor.next();
  cursor.expectEnd();
  if (context.settings.preserved.empty())
    TokenCursor::fail(translated("{1} has no {2} before it", {"RESTORE", "PRESERVE"}), name);
  static_cast<SettingValues&>(context.settings) = context.settings.preserved.back();
  context.settings.preserved.pop_back();
}

// SET DECIMAL DOT|COMMA, with or without an equals sign, a slash before each setting allowed.
void runSet(CommandContext& context) {
  static constexpr std::array<std::string_view, 1> kSettings = {"DECIMAL"};
  static constexpr std::array<std::string_view, 2> kSigns = {"DOT", "COMMA"};
  TokenCursor cursor(context.command);
  cursor.next();
  SettingValues values = context.settings;
  do {
    cursor.acceptSymbol('/');
    cursor.expectKeyword(kSettings, translated("setting"));
    cursor.acceptSymbol('=');
    values.decimal = cursor.expectKeyword(kSigns) == 0 ? '.' : ',';
  } while (!cursor.atEnd());
  static_cast<SettingValues&>(context.settings) = values;
}

}  // namespace genostat::standalone
