#pragma once

#include "standalone/console/shell/shell.h"

namespace genostat::standalone {

class Shell::Working {
 public:
  explicit Working(Shell& shell) : shell_(shell), nested_(shell.working_) {
    if (nested_) return;
    shell_.stopped_ = false;
    shell_.working_ = true;
  }
  ~Working() {
    if (!nested_) shell_.working_ = false;
  }
  Working(const Working&) = delete;
  Working& operator=(const Working&) = delete;

 private:
  Shell& shell_;
  const bool nested_;
};

}  // namespace genostat::standalone
