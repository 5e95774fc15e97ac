// The identifiers that tell a job's messages apart: which workbook and which of its
// paragraphs submitted it. Command thread only.
#pragma once

namespace genostat::standalone {

// What GetMetaDataJson answers until the module has taken it, or another command begins.
void setJobMetadata(int workbookId, int paragraphId);

}  // namespace genostat::standalone
