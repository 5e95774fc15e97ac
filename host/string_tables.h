// Host string tables: a module's texts in the user's language.
#pragma once

#include <memory>
#include <string>

// Configured by one thread, then read by any.
class FacSTDictionary {
 public:
  // `folder` holds the host's string tables.
  explicit FacSTDictionary(const std::string& folder);
  ~FacSTDictionary();
  FacSTDictionary(const FacSTDictionary&) = delete;
  FacSTDictionary& operator=(const FacSTDictionary&) = delete;

  // Adds the table of one procedure. A missing table leaves the dictionary as it is.
  void SetProcedure(const std::string& procedure);
  // Adds the texts that all procedures share.
  void SetGlobalStringTable(const std::string& folder);
  // The text for a key, or the key itself. The procedure's own table comes first.
  std::string LookUp(const std::string& key) const;

 private:
  struct Contents;
  std::unique_ptr<Contents> contents_;
};
