#pragma once

#include "tests/recording_host/record.h"

inline std::string GetMetaDataJson() {
  return recording::answer(recording::state().metadata, "GetMetaDataJson");
}
inline void resetMetadataJson() {
  recording::call("resetMetadataJson");
  recording::state().metadata.clear();
}
