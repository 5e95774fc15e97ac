// Which language is chosen, and what its tables say.
#include <gtest/gtest.h>

#include "standalone/language/translation.h"
#include "standalone/language/wanted_languages.h"
#include "standalone/services/installed_language.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

using namespace genostat::standalone;

TEST(WantedLanguages, FollowTheEnvironmentAndThenTheSystem) {
  using Names = std::vector<std::string>;
  struct Case {
    LanguageVariables variables;
    Names expected;
  };
  const Case cases[] = {
      {{}, {"de_CH", "de", "en_US", "en"}},
      {{"", "", "", "de_AT.UTF-8"}, {"de_AT", "de"}},
      {{"", "", "fr", "de"}, {"fr"}},
      {{"", "sv_SE@euro", "fr", "de"}, {"sv_SE", "sv"}},
      {{"fr_CA::pt-br", "", "", "de"}, {"fr_CA", "fr", "pt_BR", "pt", "de"}},
      {{"de", "", "", ""}, {"de"}},
      {{"de", "C", "", "fr"}, {"en"}},
      {{"de", "", "", "C.UTF-8"}, {"en"}},
      {{"", "", "POSIX", "de"}, {"en"}},
      {{"../de:d:de/x:de_:1e", "", "", "DE_at"}, {"de_AT", "de"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(wantedLanguages(c.variables, {"de-CH", "en-US"}), c.expected)
        << c.variables.language << " " << c.variables.all << " " << c.variables.messages << " "
        << c.variables.lang;
  }
}

TEST(InstalledLanguages, AreFoundAndMergedAndFallBackToEnglish) {
  const TemporaryFolder own;
  const TemporaryFolder shipped;
  for (const auto& folder : {own.path() / "fr", shipped.path() / "fr", shipped.path() / "pt_BR"}) {
    std::filesystem::create_directories(folder);
  }
  writeWholeFile(own.path() / "fr" / "client.txt",
                 "\\#1 of {1}\tn° 1 de {1}\na\\tb\\nc\\\\d\tA\\tB\\nC\\\\D\nempty\t\nno tab\n");
  writeWholeFile(shipped.path() / "fr" / "client.txt", "#1 of {1}\tcomment\n\\#1 of {1}\tlater\nyes\toui\n");
  const std::vector<std::filesystem::path> folders = {own.path(), shipped.path(), own.path() / "missing"};

  EXPECT_EQ(installedLanguages(folders), (std::vector<std::string>{"en", "fr", "pseudo", "pt_BR"}));
  EXPECT_FALSE(installedLanguage("de", folders));
  EXPECT_EQ(firstInstalledLanguage({"de", "pt_BR", "fr"}, folders).code, "pt_BR");
  EXPECT_EQ(firstInstalledLanguage({"de", "en", "fr"}, folders).code, "en");
  EXPECT_EQ(firstInstalledLanguage({}, folders).code, "en");

  setLanguage(*installedLanguage("fr", folders));
  EXPECT_EQ(translated("#1 of {1}", {"9"}), "n° 1 de 9");
  EXPECT_EQ(translated("a\tb\nc\\d"), "A\tB\nC\\D");
  EXPECT_EQ(translated("empty"), "empty");
  EXPECT_EQ(translated("yes"), "oui");
  EXPECT_EQ(translatedCount(1, "{1} {2}", "{1} {2}s", {"day"}), "1 day");
  EXPECT_EQ(translatedCount(2, "{1} {2}", "{1} {2}s {3} {", {"day"}), "2 days {3} {");

  setLanguage(*installedLanguage("pseudo", folders));
  EXPECT_EQ(translated("job '{1}' queued", {"run_1"}), "[ĵøƀ 'run_1' ɋúéúéđ]");
  setLanguage({});
}

}  // namespace
}  // namespace genostat::test
