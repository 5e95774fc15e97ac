// Host path service: the folders a module may use. Any thread may call.
#pragma once

#include <string>

// Computes one folder.
class PathFinder {
 public:
  virtual ~PathFinder() = default;
  // The folder, in the system's narrow encoding, ending in a separator.
  virtual const std::string& path() = 0;
};

class PathFactory {
 public:
  // Kind 3 is the installation folder, which holds the launcher and the scripts.
  // Null for an unknown kind; owned by the host.
  static PathFinder* getPathInstance(int kind);
};

// The folder for temporary files, in the system's narrow encoding; owned by the host.
// May be null.
const char* GetZorvTempPath();
