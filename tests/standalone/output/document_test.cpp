#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <limits>
#include <string>
#include <vector>

#include "standalone/output/output_document.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {
namespace {

TEST(OutputDocument, IsValidJsonWhateverGoesIn) {
  OutputDocument document;
  std::vector<std::string> heard;
  document.onItem([&](const std::string& item) { heard.push_back(item); });
  PivotTable table;
  table.title = "\xFF \"quoted\"\n";
  table.rows = {{"r", {}}};
  table.columns = {{"a", {}}, {"b", {{"c", {}}, {"d", {}}}}, {"e", {}}};
  table.cells = {{{std::numeric_limits<double>::quiet_NaN(), {}},
                  {-std::numeric_limits<double>::infinity(), {}},
                  {0.1, {3, false}},
                  {std::string("\0x\xC3", 3), {}}}};
  document.addTable("TE\xFFST", table);
  document.addText("error", "\xE2\x82");
  ASSERT_EQ(heard.size(), 2U);
  EXPECT_EQ(
      heard[0],
      "{\"type\":\"table\",\"procedure\":\"TE\xEF\xBF\xBDST\",\"title\":\"\xEF\xBF\xBD \\\"quoted\\\"\\n\","
      "\"rows\":{\"label\":\"\",\"categories\":[{\"label\":\"r\"}]},"
      "\"columns\":{\"label\":\"\",\"categories\":[{\"label\":\"a\"},{\"label\":\"b\",\"children\":"
      "[{\"label\":\"c\"},{\"label\":\"d\"}]},{\"label\":\"e\"}]},"
      "\"cells\":[[null,null,{\"number\":0.1,\"decimals\":3,\"leadingZero\":false},"
      "\"\\u0000x\xEF\xBF\xBD\"]],\"footnotes\":[]}");
  const std::string json = document.toJson();
  rapidjson::Document parsed;
  parsed.Parse<rapidjson::kParseValidateEncodingFlag>(json.c_str());
  ASSERT_FALSE(parsed.HasParseError()) << json;
  EXPECT_STREQ(parsed["format"].GetString(), "genostat-output");
  EXPECT_EQ(parsed["version"].GetInt(), 1);
  EXPECT_EQ(parsed["items"].Size(), 2U);
}

TEST(OutputDocument, RefusesProcedureJsonThatIsNone) {
  std::string deepLabels = R"({"label":"x"})";
  for (int i = 0; i < 5000; ++i) {
    deepLabels = R"({"label":"x","children":[)" + deepLabels + "]}";
  }
  const std::string table =
      R"({"tables":[{"rows":{"categories":[]},"columns":{"categories":[ROOM]},"cells":[],"footnotes":[]}]})";
  const std::size_t room = table.find("ROOM");
  const std::vector<std::string> malformed = {
      "",
      "[]",
      "{}",
      R"({"tables":1})",
      R"({"tables":[1]})",
      R"({"tables":[{"cells":[]}]})",
      std::string(200'000, '['),
      std::string(table).replace(room, 4, deepLabels),
      R"({"tables":[{"rows":{"categories":[]},"columns":{"categories":[]},"cells":[[true]],"footnotes":[]}]})",
      R"({"tables":[{"rows":{"categories":[]},"columns":{"categories":[]},"cells":[[{"number":"1"}]],"footnotes":[]}]})",
      std::string(table).replace(room, 4,
                                 R"({"label":")"
                                 "\xFF"
                                 R"("})"),
  };
  OutputDocument document;
  document.onItem([](const std::string& item) { ADD_FAILURE() << item; });
  for (const std::string& json : malformed) {
    EXPECT_THROW(document.addProcedureJson("X", json), CommandError) << json.substr(0, 100);
  }
}

}  // namespace
}  // namespace genostat::standalone
