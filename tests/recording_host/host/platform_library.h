#pragma once

#include "tests/recording_host/record.h"

namespace recording {
int compareIgnoringCase(const std::string& a, const std::string& b);
}

inline int ZORVMBstricmp_A(const char* a, const char* b) {
  if (recording::state().takenNames > 0) return --recording::state().takenNames, 0;
  return recording::answer(recording::compareIgnoringCase(a, b), "ZORVMBstricmp_A", a, b);
}
