#include "entry/genostat.h"

#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "entry/analysis_subcommands.h"
#include "entry/command_grammar.h"
#include "entry/job_subcommands.h"
#include "entry/record/geno_job_settings.h"
#include "entry/record/genomic_parser_exception.h"
#include "entry/record/texts.h"
#include "host/language.h"
#include "host/procedure.h"
#include "host/syntax_parser.h"
#include "jobs/geno_stat_algo_manager.h"

namespace {

// The host's number for procedures that live in modules.
constexpr int kProcedureKind = 10;

// One command: its description for the host's parser, its checks, and its reading. Borrows the tokens and the
// record, which may be null.
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
      // The host's parser has shown the error.
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

void dispatch(std::unique_ptr<GenoJobSettings> settings, BpProcedure& procedure) {
  GenoStatAlgoManager* manager = GenoStatAlgoManager::getManagerInstance();
  if (manager == nullptr) return;
  switch (settings->mode()) {
    case JobMode::PRINT:
      manager->postOutputToDisplay(settings.get(), &procedure);
      break;
    case JobMode::DELETE:
      manager->cleanUpCSVFileCreated(settings.get());
      break;
    case JobMode::SUBMIT:
    default:
      // The manager owns the record from here on.
      manager->addJobToQueue(settings.release());
      break;
  }
}

}  // namespace

void GENOSTAT() {
  const std::string procedureName = genostat::texts::kProcedureName;
  BpProcedure procedure(procedureName, kProcedureKind);
  [[maybe_unused]] const ProcedureDataSource dataSource;
  ZORV_TokenSequence tokens(true);
  // Without memory for a record the command is still checked, so that the user sees its errors.
  std::unique_ptr<GenoJobSettings> settings(new (std::nothrow) GenoJobSettings);
  GenoStatCommand command(&tokens, settings.get());
  command.parse();
  if (settings && !command.parseFailed()) dispatch(std::move(settings), procedure);
}
