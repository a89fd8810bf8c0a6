// What an edit will make of configuration that does not read back whole.
#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/read/valid.h"
#include "framework/walk/environment.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

// Nothing of it is judged yet.
Data parsed(const std::string& inside) {
  const std::string text = fmt::format("<interfaces xmlns=\"{}\">{}</interfaces>", kInterfacesNs, inside);
  Data data;
  EXPECT_EQ(lyd_parse_data_mem(compact_models().get(), text.c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0,
                               data.out()),
            LY_SUCCESS)
      << text;
  return data;
}

std::string flat(const Data& data) {
  char* text = nullptr;
  lyd_print_mem(&text, data.get(), LYD_XML, LYD_PRINT_SHRINK | LYD_PRINT_WITHSIBLINGS);
  const std::string printed = text == nullptr ? "" : text;
  std::free(text);
  return printed;
}

constexpr char kEmptyEdit[] = "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\"/>";

std::string expected(const Data& before) {
  return outcome_of([&] {
    const EditDocument edit =
        parse_edit(compact_models().get(), {kEmptyEdit, Format::xml, "request"}, Operation::merge);
    Validator validator;
    Environment around;
    around.models = compact_models().get();
    around.validator = &validator;
    std::vector<Warning> warnings;
    return flat(expect(around, edit, before, warnings).data);
  });
}

// Entries answer their names whatever the walk has left of them.
TEST(Complete, AddsWhatEveryEntryAnswers) {
  Data data = parsed(
      "<interface><name>Bundle-Ether1</name><subinterfaces><subinterface><index>7</index></subinterface>"
      "</subinterfaces></interface><interface><name>Ethernet0/0/1</name><config><name>Ethernet0/0/1</name></config>"
      "</interface>");
  const std::string before = expected(data);
  complete(data);
  const std::string once = flat(data);
  for (const char* const part :
       {"<config><name>Bundle-Ether1</name>", "<config><name>Ethernet0/0/1</name>", "<config><index>7</index></config>",
        ":ieee8023adLag</type>", ":ethernetCsmacd</type>"}) {
    EXPECT_NE(once.find(part), std::string::npos) << part << "\n" << once;
  }
  complete(data);
  EXPECT_EQ(flat(data), once) << "a second time changes nothing";
  EXPECT_EQ(before, expected(data));
}

struct Keyless {
  const char* name;
  const char* inside;
  const char* entry;  // whose key is taken
  const char* said;
};

TEST(Entries, WithoutAKeyAreRefused) {
  for (const Keyless& each : {
           Keyless{"Interface", "<interface><name>Ethernet0/0/1</name><config/></interface>",
                   "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']",
                   "refused: operation-failed\n  path: /openconfig-interfaces:interfaces/interface\n"
                   "  message: an entry of 'interface' has no key\n  bad-element: interface\n"},
           Keyless{"Subinterface",
                   "<interface><name>Ethernet0/0/1</name><subinterfaces><subinterface><index>7</index></subinterface>"
                   "</subinterfaces></interface>",
                   "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces"
                   "/subinterface[index='7']",
                   "refused: operation-failed\n  path: /openconfig-interfaces:interfaces"
                   "/interface[name='Ethernet0/0/1']/subinterfaces/subinterface\n"
                   "  message: an entry of 'subinterface' has no key\n  bad-element: subinterface\n"},
       }) {
    const Data data = parsed(each.inside);
    lyd_node* entry = nullptr;
    ASSERT_EQ(lyd_find_path(data.get(), each.entry, 0, &entry), LY_SUCCESS) << each.name;
    lyd_free_tree(lyd_child(entry));
    EXPECT_EQ(expected(data), each.said) << each.name;
  }
}

// A key refers to the leaf of its name in `config`: without it, validation complains about the key.
TEST(MakeValid, LeavesOutEntriesAndNotTheirKeys) {
  const std::string whole =
      "<interface><name>Ethernet0/0/2</name><config><name>Ethernet0/0/2</name>"
      "<type xmlns:t=\"urn:ietf:params:xml:ns:yang:iana-if-type\">t:ethernetCsmacd</type></config><subinterfaces>";
  const std::string eight = "<subinterface><index>8</index><config><index>8</index></config></subinterface>";
  const std::string end = "</subinterfaces></interface>";
  Data data = parsed("<interface><name>Ethernet0/0/1</name></interface>" + whole +
                     "<subinterface><index>7</index><config/></subinterface>" + eight + end +
                     "<interface><name>Ethernet0/0/3</name><config><name>another</name></config></interface>");
  std::vector<Warning> warnings;
  Validator validator;
  Environment around;
  around.models = compact_models().get();
  around.validator = &validator;
  make_valid(around, data, warnings);
  EXPECT_EQ(flat(data), flat(parsed(whole + eight + end)));
  std::vector<std::string> paths;
  for (const Warning& warning : warnings) paths.push_back(warning.path);
  const std::string interfaces = "/openconfig-interfaces:interfaces/interface";
  EXPECT_EQ(paths,
            (std::vector<std::string>{interfaces + "[name='Ethernet0/0/1']",
                                      interfaces + "[name='Ethernet0/0/2']/subinterfaces/subinterface[index='7']",
                                      interfaces + "[name='Ethernet0/0/3']"}));
}

}  // namespace
}  // namespace yfw::test
