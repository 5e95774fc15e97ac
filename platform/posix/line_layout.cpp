#include "platform/posix/line_layout.h"

#include <cwchar>
#include <cwctype>

namespace genostat::platform {

namespace {

// The editor shows what cannot be printed as ^A, or by its number: \U+AD or longer.
int shownColumns(wchar_t character) {
  if (character < L' ' || character == L'\x7F') return 2;
  const int width = iswprint(static_cast<wint_t>(character)) != 0 ? wcwidth(character) : -1;
  if (width >= 0) return width;
  return character > 0xFFFF ? 8 : 7;
}

}  // namespace

int rowBehind(std::wstring_view text, int promptColumns, int terminalColumns) {
  int row = promptColumns / terminalColumns;
  int column = promptColumns % terminalColumns;
  const auto advance = [&](int columns) {
    column += columns;
    if (column < terminalColumns) return;
    ++row;
    column = 0;
  };
  for (const wchar_t character : text) {
    if (character == L'\n') {
      ++row;
      column = 0;
    } else if (character == L'\t') {
      do
        advance(1);
      while (column % 8 != 0);
    } else {
      const int columns = shownColumns(character);
      const bool wide = columns == 2 && character >= L' ';
      if (wide && column + columns > terminalColumns) advance(terminalColumns - column);
      // A number or ^A breaks where the row ends.
      if (wide) {
        advance(columns);
      } else {
        for (int i = 0; i < columns; ++i) {
          advance(1);
        }
      }
    }
  }
  return row;
}

}  // namespace genostat::platform
