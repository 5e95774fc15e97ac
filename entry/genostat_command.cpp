#include "entry/genostat_command.h"

#include <exception>
#include <string>

#include "entry/analysis_subcommands.h"
#include "entry/command_grammar.h"
#include "entry/job_subcommands.h"
#include "entry/record/genomic_parser_exception.h"
#include "entry/record/texts.h"
#include "jobs/geno_stat_algo_manager.h"

namespace {

// Both hold for every use of the command, printing and deleting included.
void checkHost() {
  const ZORV_Adapter* adapter = GetAdapter();
  if (adapter != nullptr && adapter->isInteractiveClient() == 0) {
    throw GenomicParserException(CommandErrorCode::CommandLineMode);
  }
  GenoStatAlgoManager* manager = GenoStatAlgoManager::getManagerInstance();
  if (manager != nullptr && manager->isQueueFull()) {
    throw GenomicParserException(CommandErrorCode::QueueFull,
                                 std::to_string(GenoStatAlgoManager::kMaxQueuedJobs));
  }
}

}  // namespace

GenoStatCommand::GenoStatCommand(ZORV_TokenSequence* tokens, GenoJobSettings* settings)
    : descriptor_(genostat::texts::kProcedureName), tokens_(tokens), settings_(settings) {
  message_.SetCommandName(genostat::texts::kProcedureName);
  message_.SetProcedureTitle(genostat::texts::kProcedureName);
}

void GenoStatCommand::parse() {
  try {
    genostat::describeCommand(descriptor_);
    CommandSpec spec;
    UniversalParser parser(tokens_, spec, descriptor_);
    if (parser.getCommandSpecifications() != 0) {
      // The host's parser has told the user already.
      parseFailed_ = true;
      return;
    }
    interpret(spec);
    parseFailed_ = false;
  } catch (const GenomicParserException& error) {
    reportError(error.what());
  } catch (const std::exception&) {
    reportError(commandErrorText(CommandErrorCode::UnknownError));
  }
}

void GenoStatCommand::interpret(const CommandSpec& spec) {
  checkHost();
  // PRINT and DELETE decide the mode, which decides what JOB checks.
  genostat::interpretPrint(spec, settings_);
  genostat::interpretDelete(spec, settings_);
  genostat::interpretJob(spec, settings_);
  genostat::interpretDescriptives(spec, settings_);
  genostat::interpretFrequencies(spec, settings_);
  genostat::interpretCorrelations(spec, settings_);
  genostat::interpretRegression(spec, settings_);
}

void GenoStatCommand::reportError(const char* text) {
  parseFailed_ = true;
  message_.GenericError(text, nullptr, nullptr, nullptr, nullptr, nullptr);
}
