#include "errors/error_templates.h"

#include <array>

namespace genostat {

namespace {

// At the place of each exit code.
constexpr std::array<ErrorTemplate, 14> kTemplates = {
    {{"", ""},
     {"General error:", "{{ERROR_MESSAGE}}"},
     {"File not found:", "{{FILE_PATH}}"},
     {"Invalid JSON configuration", ""},
     {"Invalid configuration", ""},
     {"Error processing FASTQ file", "{{FILE_NAME}}"},
     {"Missing Python dependencies:", "{{DEPENDENCIES}}"},
     {"Permission denied accessing", "{{RESOURCE_PATH}}"},
     {"No FASTQ files found to process in", "{{FOLDER_PATH}}"},
     {"Error writing output to", "{{OUTPUT_PATH}}"},
     {"Invalid adapter sequence:", "{{ADAPTER_SEQUENCE}}"},
     {"Error in parallel processing", ""},
     {"Insufficient memory while processing", "{{RESOURCE_NAME}}"},
     {"Invalid command line arguments", ""}}};

}  // namespace

ErrorTemplate errorTemplate(std::int32_t exitCode) {
  const auto index = static_cast<std::uint32_t>(exitCode);
  return index < kTemplates.size() ? kTemplates[index] : ErrorTemplate{"Unknown error occurred", ""};
}

}  // namespace genostat
