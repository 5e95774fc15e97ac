#include "standalone/syntax/token_sequence.h"

#include "standalone/session/current.h"

ZORV_TokenSequence::ZORV_TokenSequence(bool current)
    : contents_(
          std::make_unique<Contents>(Contents{current ? genostat::standalone::currentCommand() : nullptr})) {}

ZORV_TokenSequence::~ZORV_TokenSequence() = default;
