#include "platform/posix/drawn_line.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <cwctype>

namespace genostat::platform {

namespace {

winsize terminalSize() {
  winsize size = {};
  if (ioctl(fileno(stdout), TIOCGWINSZ, &size) != 0 || size.ws_col == 0) size.ws_col = 80;
  return size;
}

// The editor shows what cannot be printed as ^A, or by its number: \U+AD or longer.
int shownColumns(wchar_t character) {
  if (character < L' ' || character == L'\x7F') return 2;
  const int width = iswprint(static_cast<wint_t>(character)) != 0 ? wcwidth(character) : -1;
  if (width >= 0) return width;
  return character > 0xFFFF ? 8 : 7;
}

}  // namespace

int rowAfter(std::wstring_view text, int promptColumns, int terminalColumns) {
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

DrawnLine::DrawnLine() : size_(terminalSize()) {}

void DrawnLine::begin(EditLine* editor, int promptColumns) {
  editor_ = editor;
  promptColumns_ = promptColumns;
  takeSize(false);
}

void DrawnLine::takeSize(bool isDrawn) {
  const winsize size = terminalSize();
  const bool columnsChanged = size.ws_col != size_.ws_col;
  if (!columnsChanged && size.ws_row == size_.ws_row) return;
  if (isDrawn && columnsChanged) eraseAt(size.ws_col);
  size_ = size;
  el_resize(editor_);
  if (isDrawn && columnsChanged) redraw();
}

int DrawnLine::rowOf(const wchar_t* place, int columns) const {
  const LineInfoW* line = el_wline(editor_);
  return rowAfter({line->buffer, static_cast<std::size_t>(place - line->buffer)}, promptColumns_, columns);
}

void DrawnLine::eraseAt(int columns) const {
  // The library scrolls what is higher than the terminal.
  const int row =
      std::min(rowOf(el_wline(editor_)->cursor, columns), std::max(1, static_cast<int>(size_.ws_row)) - 1);
  if (row > 0) std::printf("\r\x1B[%dA\x1B[J", row);
  if (row == 0) std::fputs("\r\x1B[J", stdout);
  std::fflush(stdout);
}

void DrawnLine::goBelow(const char* text) const {
  const LineInfoW* line = el_wline(editor_);
  const int down = rowOf(line->lastchar, columns()) - rowOf(line->cursor, columns());
  if (down > 0) std::printf("\x1B[%dB", down);
  if (line->cursor != line->lastchar) std::fputc('\n', stdout);
  std::fputs(text, stdout);
  std::fflush(stdout);
}

}  // namespace genostat::platform
