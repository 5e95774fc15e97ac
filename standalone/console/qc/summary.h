// The results of a job, sample by sample, as genostat qc shows them.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "standalone/console/qc/checks.h"
#include "standalone/console/qc/request.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

using common::Verdict;

struct QcSample {
  std::string name;   // without what a sequencer adds to it
  int read = 0;       // 1 or 2 of a pair
  bool first = true;  // false: the other read of the sample before it
  bool paired = false;
  std::string length;  // "151" or "35-151"
  // Not-a-number where there is none.
  double reads = 0;
  double bases = 0;
  double gc = 0;          // in per cent, as is the next
  double duplicates = 0;  // what would be lost if each sequence were kept once
  double quality = 0;     // mean Phred
  double score = 0;
  std::string unread;                           // why there is nothing; empty for a sample that was read
  bool measured = true;                         // by the job
  std::array<Verdict, kCheckCount> verdicts{};  // in the order of qcChecks()

  bool isUnread() const { return !unread.empty(); }
  std::size_t count(Verdict verdict) const;
  // The name, and the read where it is one of two.
  std::string label() const;
};

// What the sample of a file that was left out would be called.
std::string sampleNameOf(const QcLeftOut& file);

// In the file's order, then those left out, but the reads of a pair together. Throws ImportError when the
// file cannot be read.
std::vector<QcSample> readQcSamples(const std::filesystem::path& csv,
                                    const std::vector<QcLeftOut>& leftOut = {});

// The indices of samples with failures or warnings: most failures first, then most warnings.
std::vector<std::size_t> worstFirst(const std::vector<QcSample>& samples);

PivotTable qcTable(const std::vector<QcSample>& samples);
// Without rows when all could be read.
PivotTable qcUnreadTable(const std::vector<QcSample>& samples);

// What is to be said about one check.
struct QcFinding {
  const QcCheck* check = nullptr;
  std::vector<std::string> samples;  // worst first
};
// The checks with this verdict somewhere, in the order in which the worst samples have them.
std::vector<QcFinding> findingsOf(const std::vector<QcSample>& samples, Verdict verdict);

}  // namespace genostat::standalone
