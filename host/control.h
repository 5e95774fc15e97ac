// Host control library: what the host says about the command that runs. Command thread only.
#pragma once

#include <string>

// JSON text: {"job_metadata":{"workbook_id":"1","paragraph_id":"2"}}, or empty.
std::string GetMetaDataJson();
// Forgets the metadata, so that it is not taken for the next command's.
void resetMetadataJson();
