#pragma once

#include "host/language.h"
#include "standalone/syntax/command.h"

struct ZORV_TokenSequence::Contents {
  // Borrowed from the session for the run of the command; null in an empty sequence.
  const genostat::standalone::Command* command = nullptr;
};
