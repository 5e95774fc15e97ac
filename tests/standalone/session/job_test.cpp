// What the session makes of job messages.
#include <gtest/gtest.h>

#include <sstream>

#include "entry/record/geno_job_settings.h"
#include "standalone/session/finished_job.h"
#include "standalone/session/job_tracker.h"
#include "standalone/session/requirements.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

using namespace genostat::standalone;

// Messages: q queued, r running, e ended with syntax, c ended without (cancelled); u: the module
// does not know the name any more. Events: the same, L for lost. A name of "-" is no name.
std::string follow(const std::string& messages) {
  constexpr std::string_view kLetters = "QRECL";
  JobTracker tracker;
  std::string events;
  std::istringstream steps(messages);
  for (std::string step; steps >> step;) {
    const std::string name = step.substr(1) == "-" ? "" : step.substr(1);
    std::vector<JobEvent> told;
    if (step[0] == 'u') {
      told = tracker.onUnknown({name});
    } else {
      const auto kind = step[0] == 'q'   ? ClientMessage::Kind::Queued
                        : step[0] == 'r' ? ClientMessage::Kind::Running
                                         : ClientMessage::Kind::Ended;
      told = tracker.onMessage({kind, name, step[0] == 'e' ? "X." : "", "", -1, -1, {}});
    }
    for (const JobEvent& event : told) {
      events += kLetters[static_cast<std::size_t>(event.kind)];
      events += (event.jobName.empty() ? "-" : event.jobName) + " ";
    }
  }
  events += "open:";
  for (const std::string& name : tracker.openNames()) {
    events += name.empty() ? "-" : name;
  }
  return events;
}

TEST(JobTracker, FollowsJobsByTheirMessages) {
  const struct {
    const char* messages;
    const char* events;
  } rows[] = {
      {"qa ra qb ea rb eb", "Qa Ra Qb Ea Rb Eb open:"},
      {"qa qb ra", "Qa Qb Ra open:ab"},
      // Lost: unknown to the module while queued or running, or passed by a later job.
      {"qa ua", "Qa La open:"},
      {"qa ra ua ua", "Qa Ra La open:"},
      {"qa qb qc ra rc ec", "Qa Qb Qc Ra La Lb Rc Ec open:"},
      {"qa ra ea ua", "Qa Ra Ea open:"},
      // Names repeat: first in, first out.
      {"q- q- r- e- r-", "Q- Q- R- E- R- open:-"},
      {"q- q- r- r- e-", "Q- Q- R- L- R- E- open:"},
      {"q- q- q- r- u-", "Q- Q- Q- R- L- L- L- open:"},
      // Cancelled while queued, twice, and while running, twice.
      {"qa qb cb cb ra ea", "Qa Qb Cb Ra Ea open:"},
      {"qa ra ca ca ua", "Qa Ra Ca open:"},
      {"qa ra ca qb rb eb", "Qa Ra Ca Qb Rb Eb open:"},
      // A cancel overtakes the start of its job.
      {"qa ca ra qb rb", "Qa Ca Qb Rb open:b"},
      // Of two jobs of one name the running one is cancelled twice, then the other ends.
      {"qa qa ra ca ca ra ea", "Qa Qa Ra Ca Ca Ea open:"},
      // An end that cannot be placed still brings its syntax; a cancel brings nothing.
      {"ea ca", "Ea open:"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(follow(row.messages), row.events) << row.messages;
  }
}

TEST(FinishedJob, TellsFailureBySyntaxThatImportsNothing) {
  // As the module numbers its messages.
  const auto print = [](std::int64_t code) {
    return "GENOSTAT /PRINT MESSAGE=" + std::to_string(code) + ".";
  };
  const struct {
    std::string syntax;
    std::string failure;
  } rows[] = {
      {"GENOSTAT /PRINT SAMPLE_COUNT=1 MESSAGE=100.\nPRESERVE.\nGet Data /TYPE=TXT.", ""},
      // No sample was counted, but there is a result file.
      {"GENOSTAT /PRINT MESSAGE=0.\nGET DATA /TYPE=TXT.", ""},
      {print(message_code::kNoResults), "the analysis wrote no results"},
      {print(message_code::kFailureBase + 3), "the analysis ended with exit code 3"},
      {"GENOSTAT /PRINT MESSAGE=199.", "the analysis ended with exit code -1"},
      {"GENOSTAT /PRINT MESSAGE=-2147483449.", "the analysis ended with exit code 2147483647"},
      {"GENOSTAT /PRINT MESSAGE=1e300.", "the analysis wrote no results"},
      {"GENOSTAT /JOB NAME='GET DATA' /PRINT MESSAGE=214.", "the analysis ended with exit code 14"},
      {"'", "the analysis wrote no results"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(failureOf({ClientMessage::Kind::Ended, "a", row.syntax, "", -1, -1, {}}), row.failure)
        << row.syntax;
  }
}

TEST(FinishedJob, NamesCopiesSafelyAndOnce) {
  CopyNames names;
  const std::string longName(255, 'x');
  const struct {
    std::string job;
    std::string copy;
  } rows[] = {
      {"run", "run"},
      {"RUN", "RUN_2"},
      {"run_2", "run_2_2"},
      {"a/b\\c:\n", "a_b_c__"},
      {"..", "__"},
      {"end. ", "end._"},
      {"con", "_con"},
      {"nul.txt", "_nul.txt"},
      {"", "1795266509"},
      {"", "1795266509_2"},
      {"m\xC3\xA9", "m\xC3\xA9"},
      {longName, longName.substr(0, 200)},
      {longName.substr(0, 199) + "\xC3\xA9" + longName, longName.substr(0, 199)},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(names.next(row.job, "1795266509"), row.copy) << row.job;
  }
}

TEST(Requirements, KnowWhichCommandsSubmit) {
  const struct {
    const char* command;
    bool submits;
  } rows[] = {
      {"GENOSTAT /JOB FILE='a' NAME='PRINT'.", true},
      {"GENOSTAT.", true},
      {"GENOSTAT JOB FILE='a' /DESCRIPTIVES VARIABLES=print.", true},
      {"geno /job file='' /pri message=1.", false},
      {"GENOSTAT PRINT MESSAGE=1.", false},
      {"GENOSTAT /DELETE FILE='a'.", false},
  };
  for (const auto& row : rows) {
    const auto scanned = scanCommands(std::make_shared<const SourceText>(SourceText{"t", row.command}));
    EXPECT_EQ(submitsJob(scanned.items.at(0).command), row.submits) << row.command;
  }
}

}  // namespace
}  // namespace genostat::test
