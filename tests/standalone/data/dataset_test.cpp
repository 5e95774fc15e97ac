#include "standalone/data/dataset.h"

#include <gtest/gtest.h>

#include "host/dataset_manager.h"
#include "standalone/services/current.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {
namespace {

std::string listedNames() {
  std::list<SvrDMDataset*> datasets(1, nullptr);
  ServerDataManager::GetInstance()->GetAllDatasets(datasets);
  std::string names;
  for (const SvrDMDataset* dataset : datasets) {
    std::string name;
    dataset->GetHandle(name);
    names += name + " ";
  }
  return names;
}

TEST(DatasetStore, NamesActivatesAndCloses) {
  DatasetStore store;
  const SessionScope scope({&store, nullptr, {}});
  EXPECT_THROW(store.nameActive("one"), CommandError);
  store.add({});
  store.add({});
  EXPECT_EQ(store.all().size(), 1U) << "a dataset without a name is replaced";
  EXPECT_EQ(listedNames(), "");
  store.nameActive("one");
  store.add({});
  store.nameActive("two");
  EXPECT_EQ(listedNames(), "one two ");
  store.add({}).caseCount = 7;
  store.nameActive("ONE");
  EXPECT_EQ(listedNames(), "two ONE ") << "the older dataset of that name is closed";
  store.activate("Two");
  EXPECT_EQ(store.active()->name, "two");
  store.add({});
  store.activate("one");
  EXPECT_EQ(store.active()->caseCount, 7U);
  EXPECT_EQ(store.all().size(), 2U) << "a dataset without a name is gone with another one active";
  store.close("TWO");
  EXPECT_NE(store.active(), nullptr);
  EXPECT_THROW(store.close("two"), CommandError);
  store.close("one");
  EXPECT_EQ(store.active(), nullptr);
  EXPECT_THROW(store.activate(""), CommandError);
}

TEST(ServerDataManager, IsEmptyWithoutASession) {
  EXPECT_EQ(listedNames(), "");
}

}  // namespace
}  // namespace genostat::standalone
