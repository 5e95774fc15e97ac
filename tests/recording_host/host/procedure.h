#pragma once

#include "tests/recording_host/record.h"

class BpProcedure : public recording::Object {
 public:
  BpProcedure(const std::string& name, int kind) : Object("BpProcedure", name, kind) {}
};

class ProcedureDataSource : public recording::Object {
 public:
  ProcedureDataSource() : Object("ProcedureDataSource") {}
};
