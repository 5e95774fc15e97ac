// What a module asks the session for: texts, metadata, folders, the adapter.
#include <gtest/gtest.h>

#include <thread>

#include "host/control.h"
#include "host/message_bus.h"
#include "host/path_service.h"
#include "host/platform_library.h"
#include "host/string_tables.h"
#include "standalone/language/language.h"
#include "standalone/services/current.h"
#include "standalone/services/host_folders.h"
#include "standalone/services/session_adapter.h"
#include "standalone/services/string_table_file.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

using namespace genostat::standalone;
using namespace std::chrono_literals;

TEST(StringTables, LooksInTheProceduresTableThenInTheSharedOneThenAnswersTheKey) {
  const TemporaryFolder home;
  const TemporaryFolder chosen;
  std::filesystem::create_directory(home.path() / "strings");
  writeWholeFile(
      home.path() / "strings" / "GENOSTAT.txt",
      "\xEF\xBB\xBFSummary\tZusammenfassung\r\n\r\n# note\twithout effect\n  \nDetails\tEinzel\theiten\n"
      "Error:\t\nno tab here\nCount\tAnzahl");
  writeWholeFile(home.path() / "strings" / "global.txt", "Summary\tnot this one\nSamples\tProben\n");
  writeWholeFile(chosen.path() / "global.txt",
                 "Samples\t\xC3\x89"
                 "chantillons\n");

  setHostFolders({{}, home.path(), {}});
  FacSTDictionary dictionary(PathFactory::getPathInstance(3)->path());
  dictionary.SetProcedure("GENOSTAT");
  dictionary.SetGlobalStringTable(home.narrow());
  const std::map<std::string, std::string> expected = {
      {"Summary", "Zusammenfassung"}, {"Details", "Einzel\theiten"}, {"Error:", ""},  {"Count", "Anzahl"},
      {"Samples", "Proben"},          {"# note", "# note"},          {"None", "None"}};
  for (const auto& [key, text] : expected) {
    EXPECT_EQ(dictionary.LookUp(key), text) << key;
  }

  setHostFolders({{}, home.path(), chosen.path()});
  FacSTDictionary overridden(home.narrow());
  overridden.SetProcedure("GENOSTAT");
  overridden.SetGlobalStringTable(home.narrow());
  EXPECT_EQ(overridden.LookUp("Samples"),
            "\xC3\x89"
            "chantillons");
  EXPECT_EQ(overridden.LookUp("Summary"), "Summary");

  // What is shipped comes last, and in the language only.
  const TemporaryFolder shipped;
  std::filesystem::create_directories(shipped.path() / "de");
  writeWholeFile(shipped.path() / "GENOSTAT.txt", "Samples\tsamples\nDetails\tdetails\n");
  writeWholeFile(shipped.path() / "de" / "GENOSTAT.txt", "Samples\tProben\nDetails\tDetails\nNone\tKeine\n");
  std::filesystem::create_directory(chosen.path() / "de");
  writeWholeFile(chosen.path() / "de" / "global.txt", "Details\tEinzelheiten\n");
  setHostFolders({{}, home.path(), chosen.path(), shipped.path()});
  setLanguage({"de", {}, {}});
  FacSTDictionary german(home.narrow());
  german.SetProcedure("GENOSTAT");
  german.SetGlobalStringTable(home.narrow());
  EXPECT_EQ(german.LookUp("Samples"),
            "\xC3\x89"
            "chantillons");
  EXPECT_EQ(german.LookUp("Details"), "Einzelheiten");
  EXPECT_EQ(german.LookUp("None"), "Keine");
  EXPECT_EQ(german.LookUp("Count"), "Count");
  setLanguage({});

  const std::filesystem::path file = home.path() / "strings" / "GENOSTAT.txt";
  const StringTableFile table = readStringTable(file);
  ASSERT_EQ(table.warnings.size(), 1U);
  EXPECT_EQ(renderDiagnostic(table.warnings[0]),
            platform::pathToUtf8(file) +
                ":7:1: warning: a line of a string table needs a tab between key and text; it is skipped\n"
                "  no tab here\n"
                "  ^~~~~~~~~~~");
  // A folder in the file's place.
  EXPECT_EQ(readStringTable(home.path() / "strings").warnings.size(), 1U);
  EXPECT_TRUE(readStringTable(home.path() / "missing.txt").warnings.empty());
}

TEST(HostServices, AnswerMetadataAndFolders) {
  setJobMetadata(2, 17);
  EXPECT_EQ(GetMetaDataJson(), R"({"job_metadata":{"workbook_id":"2","paragraph_id":"17"}})");
  resetMetadataJson();
  EXPECT_EQ(GetMetaDataJson(), "");

  const TemporaryFolder folder;
  setHostFolders({folder.path() / "temp", folder.path(), {}});
  EXPECT_EQ(GetZorvTempPath(), folder.narrow("temp"));
  EXPECT_EQ(PathFactory::getPathInstance(3)->path(), folder.narrow(""));
  EXPECT_EQ(PathFactory::getPathInstance(2), nullptr);

  EXPECT_EQ(ZORVMBstricmp_A("Run_1", "rUN_1"), 0);
  EXPECT_EQ(ZORVMBstricmp_A("run", "run_1"), -1);
  EXPECT_EQ(ZORVMBstricmp_A("\xE4", "z"), 1);
}

TEST(SessionAdapter, QueuesAndLogsMessagesInOneOrder) {
  const TemporaryFolder folder;
  const std::filesystem::path events = folder.path() / "events.jsonl";
  SessionAdapter adapter(true, events, {});
  ASSERT_EQ(GetAdapter(), &adapter);
  EXPECT_NE(adapter.isInteractiveClient(), 0);
  {
    std::vector<std::jthread> senders;
    for (int sender = 0; sender < 4; ++sender) {
      senders.emplace_back([&adapter, sender] {
        for (int i = 0; i < 25; ++i) {
          const ZorvwMsgStartGenomicProcessing message(std::to_string(sender * 100 + i), false);
          adapter.postClientMessage(ZorvwMsgStartGenomicProcessing::kMessageId, &message);
        }
      });
    }
  }
  adapter.postClientMessage(7, nullptr);
  const std::string time = "2026-11-21T12:34:56.789Z";
  const std::chrono::sys_time now = std::chrono::sys_days(2026y / 11 / 21) + 12h + 34min + 56s + 789ms;
  std::string queued;
  for (int i = 0; i < 100; ++i) {
    const auto message = adapter.take(10s);
    ASSERT_TRUE(message.has_value());
    queued += eventLine(*message, now) + '\n';
  }
  EXPECT_FALSE(adapter.take(1ms).has_value());
  std::string logged;
  for (std::string text = readWholeFile(events); !text.empty(); text.erase(0, text.find('\n') + 1)) {
    const std::string line = text.substr(0, text.find('\n'));
    const std::size_t at = line.find("\"time\":\"") + 8;
    logged += line.substr(0, at) + time + line.substr(line.find('"', at)) + '\n';
  }
  EXPECT_EQ(logged, queued);
  EXPECT_EQ(eventLine({ClientMessage::Kind::Ended, "a\"\xFF", "X.\n", "", 1, -1, {}}, now),
            "{\"id\":1026,\"time\":\"" + time +
                "\",\"jobName\":\"a\\\"\xEF\xBF\xBD\",\"message\":\"X.\\n\","
                "\"csvFilePath\":\"\",\"workbookId\":1,\"paragraphId\":-1}");
  EXPECT_FALSE(adapter.eventsFailed());
  EXPECT_TRUE(SessionAdapter(true, folder.path() / "missing" / "events.jsonl", {}).eventsFailed());
}

}  // namespace
}  // namespace genostat::test
