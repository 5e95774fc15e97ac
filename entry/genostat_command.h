// One GENOSTAT command: its description for the host's parser, its checks, and its reading.
#pragma once

#include "entry/record/geno_job_settings.h"
#include "host/language.h"
#include "host/syntax_parser.h"

// Lives on the command thread for one command. Borrows the tokens and the record, which may be null.
class GenoStatCommand {
 public:
  GenoStatCommand(ZORV_TokenSequence* tokens, GenoJobSettings* settings);

  // Parses the tokens and fills the record. Errors are shown to the user and leave
  // parseFailed() true.
  void parse();

  bool parseFailed() const { return parseFailed_; }

 private:
  void interpret(const CommandSpec& spec);
  void reportError(const char* text);

  CommandDescriptor descriptor_;
  ZORV_TokenSequence* tokens_;
  ParserMessage message_;
  bool parseFailed_ = false;
  GenoJobSettings* settings_;
};
