// The rpc-error of a refusal, whole, and the line that stands beside it.
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using RpcError = CliTest;

// The message of the line on standard error, which is the one of the rpc-error too.
std::string message_of(const Outcome& outcome, const std::string& path) {
  const std::string start = "ocvlan: refused: " + path + ": ";
  EXPECT_EQ(outcome.err.rfind(start, 0), 0U) << outcome;
  return outcome.err.size() > start.size() ? outcome.err.substr(start.size(), outcome.err.size() - start.size() - 1)
                                           : "";
}

const std::string kPath = std::string(kMatchPath) + "/single-tagged-list/config";

std::string ten() {
  std::string ids;
  for (int i = 1; i <= 10; ++i) ids += "<vlan-ids>" + std::to_string(i) + "</vlan-ids>";
  return form("single-tagged-list", ids);
}

TEST_F(RpcError, InXml) {
  const Outcome outcome = run({"translate", "-", "--l2", "--format", "xml"}, {.input = ten()});
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.err, "ocvlan: refused: " + kPath + ": Number of VLAN IDs provided more than max(9).\n");
  EXPECT_EQ(outcome.out,
            "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">\n"
            "  <error-type>application</error-type>\n"
            "  <error-tag>invalid-value</error-tag>\n"
            "  <error-severity>error</error-severity>\n"
            "  <error-path xmlns:openconfig-interfaces=\"http://openconfig.net/yang/interfaces\""
            " xmlns:openconfig-vlan=\"http://openconfig.net/yang/vlan\">" +
                kPath +
                "</error-path>\n"
                "  <error-message xml:lang=\"en\">Number of VLAN IDs provided more than max(9).</error-message>\n"
                "</rpc-error>\n");
}

TEST_F(RpcError, InJson) {
  const Outcome outcome = run({"translate", "-", "--l2", "--format", "json"}, {.input = ten()});
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.out,
            "{\n"
            "  \"ietf-restconf:errors\": {\n"
            "    \"error\": [\n"
            "      {\n"
            "        \"error-type\": \"application\",\n"
            "        \"error-tag\": \"invalid-value\",\n"
            "        \"error-severity\": \"error\",\n"
            "        \"error-path\": \"" +
                kPath +
                "\",\n"
                "        \"error-message\": \"Number of VLAN IDs provided more than max(9).\"\n"
                "      }\n"
                "    ]\n"
                "  }\n"
                "}\n");
}

TEST_F(RpcError, NamesABadElement) {
  const Outcome xml =
      run({"translate", "-", "--format", "xml"}, {.input = form("single-tagged", "<colour>1</colour>")});
  EXPECT_EQ(xml.exit_code, 1) << xml;
  EXPECT_NE(xml.out.find("  <error-info>\n    <bad-element>colour</bad-element>\n  </error-info>\n"), std::string::npos)
      << xml;
  const Outcome json =
      run({"translate", "-", "--format", "json"}, {.input = form("single-tagged", "<colour>1</colour>")});
  EXPECT_NE(json.out.find("        \"error-info\": {\n          \"bad-element\": \"colour\"\n        }\n"),
            std::string::npos)
      << json;
}

TEST_F(RpcError, NamesABadAttribute) {
  const Outcome xml = run({"translate", "-", "--format", "xml"},
                          {.input = form("single-tagged", "<vlan-id nc:operation=\"put\">1</vlan-id>")});
  EXPECT_EQ(xml.exit_code, 1) << xml;
  EXPECT_NE(xml.out.find("<bad-attribute>operation</bad-attribute>"), std::string::npos) << xml;
  EXPECT_NE(xml.out.find("<bad-element>vlan-id</bad-element>"), std::string::npos) << xml;
}

TEST_F(RpcError, NamesABadNamespace) {
  const Outcome xml = run({"translate", "-", "--format", "xml"}, {.input = "<a xmlns=\"urn:example:a\"/>"});
  EXPECT_EQ(xml.exit_code, 1) << xml;
  EXPECT_NE(xml.out.find("<bad-namespace>urn:example:a<"), std::string::npos) << xml;
}

// What a document says cannot break out of the line or of the markup.
TEST_F(RpcError, QuotesWhatTheDocumentSays) {
  const std::string request = single_tagged("&lt;b&gt;&amp;\"\\&#10;");
  const Outcome plain = run({"translate", "-"}, {.input = request});
  EXPECT_EQ(plain.exit_code, 1) << plain;
  const std::string message = message_of(plain, std::string(kMatchPath) + "/single-tagged/config/vlan-id");
  EXPECT_EQ(message.find('\n'), std::string::npos);
  const Outcome xml = run({"translate", "-", "--format", "xml"}, {.input = request});
  EXPECT_NE(xml.out.find("&lt;b&gt;&amp;\"\\"), std::string::npos) << xml;
  const Outcome json = run({"translate", "-", "--format", "json"}, {.input = request});
  EXPECT_NE(json.out.find(R"(<b>&\"\\)"), std::string::npos) << json;
}

// Without --format a refusal is for people only.
TEST_F(RpcError, OnlyWhereAFormatIsAskedFor) {
  const Outcome outcome = run({"translate", "-", "--l2"}, {.input = ten()});
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.out, "");
}

}  // namespace
}  // namespace cli_test
