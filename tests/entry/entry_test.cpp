// What no command can bring about: values outside the module's own enumerations.
#include <gtest/gtest.h>

#include "entry/record/geno_job_settings.h"
#include "entry/record/genomic_parser_exception.h"

namespace {

TEST(Record, TakesUnknownValuesForTheDefault) {
  EXPECT_STREQ(commandErrorText(CommandErrorCode::MutuallyExclusiveParameters),
               "Mutually exclusive parameters");
  EXPECT_STREQ(GenomicParserException(static_cast<CommandErrorCode>(23)).what(), "Unspecified error");
  EXPECT_STREQ(adapterKeyword(static_cast<AdapterType>(4)), "NONE");
  EXPECT_STREQ(regressionKeyword(static_cast<RegressionMethod>(4)), "ENTER");
}

}  // namespace
