// The measuring of one sample, by any number of threads.
//
// Each thread takes the next chunk of the file (one at a time, in order), expands it and finds its lines
// (all at once), cuts it into records when the chunks before it are cut (one at a time, in order), and
// measures the records for itself (all at once). What depends on the order of the reads happens in the
// ordered steps; the rest is counted in integers and added up at the end. So the result does not depend on
// the number of threads, nor on where chunks end.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <list>
#include <memory>
#include <mutex>
#include <optional>

#include "analysis/fastq/chunk_source.h"
#include "analysis/fastq/record_cutter.h"
#include "analysis/metrics/duplicate_table.h"
#include "analysis/metrics/sample_metrics.h"
#include "analysis/metrics/summarise.h"
#include "analysis/report/progress.h"
#include "analysis/simd/kernels.h"
#include "analysis/simd/probe_set.h"

namespace genostat::analysis {

class SampleRun {
 public:
  // `progress`, if not null, and `kernels` must outlive the run.
  SampleRun(std::unique_ptr<ChunkSource> source, const ResultOptions& options, JobProgress* progress,
            const Kernels& kernels = bestKernels());

  // Works along until nothing is left to fetch. `memory` is used for the thread's chunks and may be used
  // again for another run. Failures are kept for result().
  void work(Batch& memory);

  // Makes work() end soon; there will be no result.
  void stop();

  // Whether another thread would find nothing to do.
  bool exhausted() const;

  // When every work() has returned. Throws the FastqError that comes first in the file, or what else made the
  // run fail (std::bad_alloc).
  SampleResult result() const;

 private:
  // Both throw nothing but std::bad_alloc.
  void workOn(Batch& memory, SampleMetrics& metrics);
  bool fetch(Chunk& chunk, std::uint64_t& ticket, bool& last);
  // Waits until the chunks before this one are cut; false when the run has failed.
  bool awaitTurn(std::uint64_t ticket);
  void passTurn();
  // The ordered step. Returns how many of the batch's records were taken into the growing duplicate table.
  std::size_t cutInOrder(Batch& batch, bool last);
  void keep(const std::optional<FastqError>& error);
  void breakOff();

  const ResultOptions options_;
  const ProbeSet probes_;
  const Kernels& kernels_;
  JobProgress* const progress_;

  mutable std::mutex fetchMutex_;
  std::unique_ptr<ChunkSource> source_;  // its fetch() guarded by fetchMutex_
  std::uint64_t tickets_ = 0;            // guarded by fetchMutex_
  std::uint64_t bytesTold_ = 0;          // guarded by fetchMutex_
  bool ended_ = false;                   // guarded by fetchMutex_

  // Used by the thread whose turn it is.
  RecordCutter cutter_;
  DuplicateTable duplicates_;  // once full by all, unchanged
  TileScheme tiles_;           // once known by all, unchanged
  bool tilesKnown_ = false;
  bool cutFailed_ = false;

  std::mutex turnMutex_;
  std::condition_variable turnPassed_;
  std::uint64_t turn_ = 0;  // the ticket whose turn it is; guarded by turnMutex_
  bool broken_ = false;     // guarded by turnMutex_

  std::mutex partsMutex_;
  std::list<SampleMetrics> parts_;   // one for each work(); guarded by partsMutex_, as are the following
  std::optional<FastqError> error_;  // the first in the file
  std::exception_ptr exception_;
};

}  // namespace genostat::analysis
