// A sample's result in the plain-text form of FastQC 0.12.1, which the programs that put many samples into
// one report read.
//
// Modules follow each other as ">>name<tab>verdict", a heading that begins with "#", rows of fields between
// tabs,
// ">>END_MODULE". Numbers stand as FastQC writes them, with a decimal point wherever they are no counts of
// reads by definition; one that is missing is NaN. Three things differ: lengths are put into bins of another
// width, modules without a verdict are left out, and characters that could pass for the form itself are
// replaced.
#pragma once

#include <string>
#include <string_view>

#include "analysis/metrics/sample_result.h"

namespace genostat::analysis {

// `fileName` is what readers name the sample after. UTF-8, lines end in LF.
std::string fastqcData(const SampleResult& result, std::string_view fileName);

}  // namespace genostat::analysis
