#include "platform/terminal.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <bit>
#include <cstdio>
#include <initializer_list>
#include <string_view>

namespace genostat::platform {

namespace {

constexpr std::size_t kConsoleBuffer = 1 << 16;

}  // namespace

void prepareStandardStreams() {
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  // Without a buffer the C library writes single bytes to a console, which are not whole characters.
  for (std::FILE* stream : {stdout, stderr}) {
    if (_isatty(_fileno(stream)) != 0) std::setvbuf(stream, nullptr, _IOFBF, kConsoleBuffer);
  }
}

void keepStandardOutput() {
  // The C library has kept the handle that it found when the program began.
  SetStdHandle(STD_OUTPUT_HANDLE, GetStdHandle(STD_ERROR_HANDLE));
}

namespace {

// Some consoles accept the mode for escape sequences and show the sequences all the same.
bool followsSequences(HANDLE console) {
  constexpr std::wstring_view kOrdinaryText = L"\x1B[m";
  constexpr DWORD kSize = kOrdinaryText.size();
  CONSOLE_SCREEN_BUFFER_INFO before = {};
  CONSOLE_SCREEN_BUFFER_INFO after = {};
  DWORD written = 0;
  if (GetConsoleScreenBufferInfo(console, &before) == 0) return false;
  if (WriteConsoleW(console, kOrdinaryText.data(), kSize, &written, nullptr) == 0) return false;
  if (GetConsoleScreenBufferInfo(console, &after) == 0) return false;
  const COORD place = before.dwCursorPosition;
  if (after.dwCursorPosition.X == place.X && after.dwCursorPosition.Y == place.Y) return true;
  FillConsoleOutputCharacterW(console, L' ', kSize, place, &written);
  SetConsoleCursorPosition(console, place);
  return false;
}

Terminal terminalBehind(std::FILE* stream) {
  Terminal terminal;
  HANDLE console = std::bit_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
  DWORD mode = 0;
  terminal.isTerminal = GetConsoleMode(console, &mode) != 0;
  if (terminal.isTerminal) {
    terminal.isUtf8 = true;
    terminal.isForeground = true;
    const bool accepted = SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
    static const bool follows = accepted && followsSequences(console);
    terminal.movesCursor = accepted && follows;
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (GetConsoleScreenBufferInfo(console, &info) != 0 && info.srWindow.Right >= info.srWindow.Left) {
      terminal.width = info.srWindow.Right - info.srWindow.Left + 1;
      terminal.height = info.srWindow.Bottom - info.srWindow.Top + 1;
    }
  }
  return terminal;
}

}  // namespace

Terminal standardOutputTerminal() {
  return terminalBehind(stdout);
}
Terminal standardErrorTerminal() {
  return terminalBehind(stderr);
}

}  // namespace genostat::platform
