// Marks what the module's dynamic library exports.
#pragma once

#ifdef _WIN32
#define GENOSTAT_EXPORT __declspec(dllexport)
#else
#define GENOSTAT_EXPORT __attribute__((visibility("default")))
#endif
