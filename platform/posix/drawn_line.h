// The line that a person types, as the library libedit has drawn it on the terminal.
#pragma once

#include <histedit.h>
#include <sys/ioctl.h>

#include <string_view>

namespace genostat::platform {

// The row below the prompt's on which the cursor stands after `text`, which follows a prompt of so many
// columns. The locale says how wide characters are.
int rowAfter(std::wstring_view text, int promptColumns, int terminalColumns);

// The library knows nothing of what else is written to the terminal. So whoever wants to write has the line
// erased first and drawn again after: where it stands is worked out from its text, as the library does it.
class DrawnLine {
 public:
  DrawnLine();

  // A new line begins, after a prompt of so many columns.
  void begin(EditLine* editor, int promptColumns);

  int columns() const { return size_.ws_col; }

  void erase() const { eraseAt(size_.ws_col); }
  void redraw() const { el_set(editor_, EL_REFRESH); }

  // Leaves the line where it is and goes to the row below it. `text` is written after it, or, where the
  // cursor is inside the line, below.
  void goBelow(const char* text) const;

  // Draws the line again when the terminal has become narrower or wider, since it then breaks its rows anew.
  void followTerminal() { takeSize(true); }

 private:
  void takeSize(bool isDrawn);
  int rowOf(const wchar_t* place, int columns) const;
  void eraseAt(int columns) const;

  EditLine* editor_ = nullptr;
  int promptColumns_ = 0;
  winsize size_;
};

}  // namespace genostat::platform
