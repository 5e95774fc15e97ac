// The standard streams and their terminals.
#pragma once

namespace genostat::platform {

// Puts the standard streams into the state our programs expect: UTF-8 text, input taken and output given byte
// for byte. From then on a write that the system refuses, to them or to a file, fails without a signal.
void prepareStandardStreams();

// Keeps standard output for this program alone: `stdout` goes on writing to it, and what processes that it
// starts write to theirs goes to standard error. After prepareStandardStreams(), before anything is written.
void keepStandardOutput();

// What a standard stream writes to.
struct Terminal {
  bool isTerminal = false;
  int width = 80;   // columns; 80 where unknown
  int height = 24;  // rows; 24 where unknown
  bool isUtf8 = false;
  bool movesCursor = false;   // it follows escape sequences
  bool isForeground = false;  // the program's job may write to it without disturbing another
};
Terminal standardOutputTerminal();
Terminal standardErrorTerminal();

}  // namespace genostat::platform
