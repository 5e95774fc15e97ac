#include "entry/job_subcommands.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "entry/record/genomic_parser_exception.h"
#include "jobs/geno_stat_algo_manager.h"
#include "jobs/job_names.h"
#include "platform/files.h"

namespace genostat {

namespace {

constexpr std::size_t kMaxJobNameBytes = 255;
constexpr std::array<std::string_view, 4> kReservedNames = {"*", "ALL", "LT", "WITH"};
constexpr char kAutomaticName[] = "AUTO";

void readFiles(const SubComObj& job, GenoJobSettings& settings) {
  const ParamObj* file = job.getParamObj("FILE");
  std::vector<std::string> paths;
  if (file == nullptr || !file->getLiteralList(paths)) return;
  for (const std::string& path : paths) {
    switch (platform::probeInputFile(path)) {
      case platform::InputProbe::Unreadable:
        throw GenomicParserException(CommandErrorCode::FileNotFound, path);
      case platform::InputProbe::Empty:
        throw GenomicParserException(CommandErrorCode::FastqError, path);
      case platform::InputProbe::HasData:
        break;
    }
  }
  settings.setFastqFiles(std::move(paths));
}

void readFolder(const SubComObj& job, GenoJobSettings& settings) {
  const ParamObj* folder = job.getParamObj("FOLDER");
  std::string path;
  if (folder != nullptr && folder->getLiteral(path)) settings.setFastqFolder(std::move(path));
}

void readAdapters(const SubComObj& job, GenoJobSettings& settings) {
  const ParamObj* adapters = job.getParamObj("ADAPTERS");
  ParamObj qualifier;
  if (adapters == nullptr || !adapters->getStringAndQual(qualifier)) return;
  settings.setAdapterType(adapterTypeFromKeyword(qualifier.getParamName()));
  std::string sequence;
  if (settings.adapterType() == AdapterType::CUSTOM && qualifier.getUpStringGeneric(sequence)) {
    settings.setCustomAdapterSequence(std::move(sequence));
  }
}

std::string automaticJobName() {
  try {
    return GenoStatAlgoManager::generateUniqueJobName();
  } catch (const GenomicParserException& error) {
    throw GenomicParserException(CommandErrorCode::AutomaticNameFailed, error.what());
  }
}

void readName(const SubComObj& job, GenoJobSettings& settings) {
  const ParamObj* parameter = job.getParamObj("NAME");
  std::string name;
  if (parameter == nullptr || !parameter->getLiteral(name)) return;
  if (name == kAutomaticName) {
    name = automaticJobName();
  } else if (settings.mode() == JobMode::SUBMIT) {
    checkJobName(name);
  }
  settings.setJobName(std::move(name));
}

std::int32_t integerOrZero(const SubComObj& subcommand, const char* name) {
  const ParamObj* parameter = subcommand.getParamObj(name);
  std::int32_t value = 0;
  return parameter != nullptr && parameter->getIntegerValue(value) ? value : 0;
}

}  // namespace

void interpretPrint(const CommandSpec& spec, GenoJobSettings* settings) {
  const SubComObj* print = spec.getSubComObj("PRINT");
  if (print == nullptr || settings == nullptr) return;
  settings->setSampleCount(integerOrZero(*print, "SAMPLE_COUNT"));
  settings->setVariableCount(integerOrZero(*print, "VARIABLE_COUNT"));
  settings->setMessageCode(integerOrZero(*print, "MESSAGE"));
  settings->setMode(JobMode::PRINT);
}

void interpretDelete(const CommandSpec& spec, GenoJobSettings* settings) {
  const SubComObj* remove = spec.getSubComObj("DELETE");
  if (remove == nullptr || settings == nullptr) return;
  const ParamObj* file = remove->getParamObj("FILE");
  std::string path;
  if (file != nullptr && file->getLiteral(path)) settings->setCsvFilePath(std::move(path));
  settings->setMode(JobMode::DELETE);
}

void interpretJob(const CommandSpec& spec, GenoJobSettings* settings) {
  const SubComObj* job = spec.getSubComObj("JOB");
  if (job == nullptr || settings == nullptr) return;
  if (settings->mode() == JobMode::SUBMIT) {
    readFiles(*job, *settings);
    readFolder(*job, *settings);
  }
  readAdapters(*job, *settings);
  readName(*job, *settings);
}

bool checkJobName(const std::string& name) {
  if (name.size() > kMaxJobNameBytes ||
      std::find(kReservedNames.begin(), kReservedNames.end(), name) != kReservedNames.end()) {
    throw GenomicParserException(CommandErrorCode::InvalidJobName);
  }
  GenoStatAlgoManager* manager = GenoStatAlgoManager::getManagerInstance();
  if (isDatasetName(name) || (manager != nullptr && manager->isJobPendingOrRunning(name))) {
    throw GenomicParserException(CommandErrorCode::DuplicateJobName);
  }
  return true;
}

}  // namespace genostat
