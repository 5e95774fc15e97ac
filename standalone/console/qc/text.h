// The summary of genostat qc for terminals and text files.
#pragma once

#include <string>
#include <vector>

#include "standalone/console/qc/summary.h"
#include "standalone/output/text_renderer.h"

namespace genostat::standalone {

// One line for each sample, columns as the style's width allows, in several blocks if it must be, and the
// legend.
std::string renderQcTable(const std::vector<QcSample>& samples, const TextStyle& style);

// The samples that could not be read, and why; empty when all could.
std::string renderQcUnread(const std::vector<QcSample>& samples, const TextStyle& style);

// The checks that failed, and shorter those that warned.
std::string renderQcFindings(const std::vector<QcSample>& samples, const TextStyle& style);

// The same as a table; without rows when there are none.
PivotTable qcFindingsTable(const std::vector<QcSample>& samples);

// A verdict as a single sign, in its colour where the style has colours.
std::string paintedMark(Verdict verdict, const TextStyle& style);

// A printable name in at most so many columns. Names differ at both ends, so the middle goes.
std::string shortenedName(const std::string& name, int width, bool unicode);

}  // namespace genostat::standalone
