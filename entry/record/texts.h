// The words that the module shows. Keys are looked up in the host's string table; without one the
// key itself is shown.
#pragma once

namespace genostat::texts {

inline constexpr char kProcedureName[] = "GENOSTAT";

// Keys: automatic job names.
inline constexpr char kAutomaticJobName[] = "Genomic_analysis_job";

// Keys: the tables of /PRINT.
inline constexpr char kSummary[] = "Summary";
inline constexpr char kCount[] = "Count";
inline constexpr char kSamples[] = "Samples";
inline constexpr char kVariables[] = "Variables";
inline constexpr char kDetails[] = "Details";
inline constexpr char kMessage[] = "Message";
inline constexpr char kDataset[] = "Dataset";
inline constexpr char kNone[] = "None";
inline constexpr char kValid[] = "Valid:";
inline constexpr char kFilesDetected[] = "fastQ file(s) detected.";
inline constexpr char kError[] = "Error:";
inline constexpr char kGenericError[] = "Generic Error.";

// Diagnostics on the process's standard streams.
inline constexpr char kErrorFileNotFound[] = "\n Error file not found";
inline constexpr char kErrorFileContent[] = "\n  file :";
inline constexpr char kFileDeletionFailed[] = "File deletion failed";

}  // namespace genostat::texts
