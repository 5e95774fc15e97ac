// Host procedure framework: what every procedure sets up before it works.
#pragma once

#include <string>
#include <utility>

// One run of a procedure. `kind` is the host's number for procedures that live in modules.
class BpProcedure {
 public:
  BpProcedure(std::string name, int kind) : name_(std::move(name)), kind_(kind) {}

  const std::string& name() const { return name_; }
  int kind() const { return kind_; }

 private:
  std::string name_;
  int kind_;
};

// The cases a procedure may read. This module's procedure reads none.
class ProcedureDataSource {
 public:
  ProcedureDataSource() = default;
};
