#include "platform/program.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "platform/interrupts.h"

namespace genostat::platform {

namespace {

std::wstring widen(std::string_view text, UINT codePage) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), length);
  return wide;
}

std::string narrow(std::wstring_view wide, UINT codePage) {
  if (wide.empty()) return {};
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(codePage, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(codePage, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

constexpr std::size_t kConsoleBuffer = 1 << 16;

std::string systemMessage(DWORD code) {
  return std::error_code(static_cast<int>(code), std::system_category()).message();
}

}  // namespace

const char* const kLibrarySuffix = ".dll";

std::filesystem::path pathFromUtf8(std::string_view utf8) {
  return widen(utf8, CP_UTF8);
}
std::string pathToUtf8(const std::filesystem::path& path) {
  return narrow(path.native(), CP_UTF8);
}
std::string pathToNarrow(const std::filesystem::path& path) {
  return narrow(path.native(), CP_ACP);
}
std::filesystem::path pathFromNarrow(std::string_view text) {
  return widen(text, CP_ACP);
}

std::vector<std::string> commandLineArguments(int, const char* const*) {
  // The C runtime's arguments have gone through the ANSI code page; the system's have not.
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(narrow(wide[i], CP_UTF8));
  }
  LocalFree(wide);
  return arguments;
}

void prepareStandardStreams() {
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  // Without a buffer the C library hands a console single bytes, which are no characters.
  for (std::FILE* stream : {stdout, stderr}) {
    if (_isatty(_fileno(stream)) != 0) std::setvbuf(stream, nullptr, _IOFBF, kConsoleBuffer);
  }
}

std::filesystem::path programFolder() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return std::filesystem::path(path).parent_path();
}

std::unique_ptr<DynamicLibrary> DynamicLibrary::open(const std::filesystem::path& path, std::string& error) {
  HMODULE handle = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (handle == nullptr) {
    error = systemMessage(GetLastError());
    return nullptr;
  }
  return std::unique_ptr<DynamicLibrary>(new DynamicLibrary(handle));
}

void* DynamicLibrary::symbol(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

void onInterrupt(std::function<void()> handler) {
  onEachInterrupt([handler = std::move(handler)](Interrupt) { handler(); });
}

void exitNow(int status) {
  // ExitProcess would run the libraries' destructors after it has stopped their threads anywhere.
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  ExitProcess(static_cast<UINT>(status));
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

Terminal terminalBehind(DWORD stream) {
  Terminal terminal;
  HANDLE console = GetStdHandle(stream);
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
  return terminalBehind(STD_OUTPUT_HANDLE);
}
Terminal standardErrorTerminal() {
  return terminalBehind(STD_ERROR_HANDLE);
}

std::filesystem::path environmentPath(const char* name) {
  const std::wstring wideName = std::filesystem::path(name).native();
  // As long as the longest value of all.
  std::wstring value(32768, L'\0');
  value.resize(GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return value;
}

void setEnvironmentPath(const char* name, const std::filesystem::path& value) {
  // Also for those who ask the C library.
  _wputenv_s(std::filesystem::path(name).c_str(), value.c_str());
}

std::vector<std::string> systemLanguages() {
  ULONG count = 0;
  ULONG size = 0;
  if (!GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &size)) return {};
  std::wstring names(size, L'\0');
  if (!GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &size)) return {};
  // Each ends with a null, and another one ends the list.
  std::vector<std::string> languages;
  for (std::size_t begin = 0; begin < names.size() && names[begin] != L'\0';) {
    const std::wstring name(names.c_str() + begin);
    languages.push_back(narrow(name, CP_UTF8));
    begin += name.size() + 1;
  }
  return languages;
}

int processId() {
  return static_cast<int>(GetCurrentProcessId());
}

}  // namespace genostat::platform
