#include "entry/genostat.h"

#include <memory>
#include <new>
#include <string>
#include <utility>

#include "entry/genostat_command.h"
#include "entry/record/geno_job_settings.h"
#include "entry/record/texts.h"
#include "host/language.h"
#include "host/procedure.h"
#include "jobs/geno_stat_algo_manager.h"

namespace {

// The host's number for procedures that live in modules.
constexpr int kProcedureKind = 10;

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
