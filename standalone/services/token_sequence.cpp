#include "standalone/services/token_sequence.h"

#include "standalone/services/current.h"

ZORV_TokenSequence::ZORV_TokenSequence(bool current)
    : contents_(
          std::make_unique<Contents>(Contents{current ? genostat::standalone::currentCommand() : nullptr})) {}

ZORV_TokenSequence::~ZORV_TokenSequence() = default;
