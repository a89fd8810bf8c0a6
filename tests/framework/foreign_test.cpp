// Foreign subtrees: what of a running configuration is in no loaded model comes out as it came in, where it was.
#include "framework/tree/foreign.h"

#include <gtest/gtest.h>

#include "models_of_tests.h"
#include "yfw-host/compare.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

#define ROOT "/Vexnet-OS-interface-cfg:interface-configurations"
#define ENTRY ROOT "/interface-configuration[interface-name='Ethernet0/0/1.100']"

Host host() {
  Host made({.yang_dir = OC_VLAN_SOURCE_DIR "/yang"});
  made.load_plugin(OC_VLAN_PLUGIN_FILE);
  return made;
}

std::string told(const std::vector<Warning>& warnings) {
  std::string text;
  for (const Warning& each : warnings) text += fmt::format("{}: {}\n", each.path, each.message);
  return text;
}

std::string printed(const std::string& running) {
  return outcome_of([&] {
    Host made = host();
    made.set_running({running, format_of(running), "running"});
    return made.print_running(format_of(running));
  });
}

struct Whole {
  const char* name;
  const char* text;
};
void PrintTo(const Whole& whole, std::ostream* out) {
  *out << whole.name;
}

class PrintedForm : public testing::TestWithParam<Whole> {};

TEST_P(PrintedForm, ComesOutAsItCameIn) {
  EXPECT_EQ(printed(GetParam().text), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Places, PrintedForm,
    testing::Values(Whole{"NothingAtAll", "<data xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"/>\n"},
                    Whole{"NothingAtAllInJson", "{}\n"},
                    Whole{"Alone",
                          "<data xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">\n  <a "
                          "xmlns=\"urn:a\">\n<b>1</b>\n</a>\n</data>\n"},
                    Whole{"AtTheTop", R"(<data xmlns="urn:ietf:params:xml:ns:netconf:base:1.0">
  <a xmlns="urn:a"/>
  <b xmlns="urn:b">
    <c>1</c>
  </b>
  <interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg">
    <interface-configuration>
      <interface-name>Ethernet0/0/1.100</interface-name>
    </interface-configuration>
  </interface-configurations>
  <a xmlns="urn:a">again</a>
</data>
)"},
                    Whole{"BetweenEntries",
                          R"(<interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg">
  <a xmlns="urn:a"/>
  <b xmlns="urn:a"/>
  <interface-configuration>
    <interface-name>Ethernet0/0/1</interface-name>
  </interface-configuration>
  <c xmlns="urn:a"/>
  <interface-configuration>
    <interface-name>Ethernet0/0/2</interface-name>
  </interface-configuration>
  <d xmlns="urn:a"/>
  <e xmlns="urn:a"/>
</interface-configurations>
)"},
                    Whole{"WithoutAnEntry",
                          "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">\n"
                          "  <a xmlns=\"urn:a\"/>\n"
                          "</interface-configurations>\n"},
                    Whole{"InAnEntry",
                          R"(<interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg">
  <interface-configuration>
    <interface-name>Ethernet0/0/1.100</interface-name>
    <a xmlns="urn:a"/>
    <l2-transport>
      <b xmlns="urn:a"/>
      <l2-protocols xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
        <c xmlns="urn:a"/>
        <l2-protocol>
          <l2-protocol-name>both ' and "</l2-protocol-name>
          <d xmlns="urn:a"/>
          <action>drop</action>
        </l2-protocol>
        <l2-protocol>
          <l2-protocol-name>cdp</l2-protocol-name>
          <e xmlns="urn:a"/>
        </l2-protocol>
        <f xmlns="urn:a"/>
      </l2-protocols>
    </l2-transport>
    <g xmlns="urn:a"/>
    <mtu>1500</mtu>
    <h xmlns="urn:a"/>
    <h xmlns="urn:a"/>
    <ethernet-service xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <i xmlns="urn:a"/>
      <encapsulation>
        <outer-tag-type>match-dot1q</outer-tag-type>
        <j xmlns="urn:a"/>
        <outer-range1-low>100</outer-range1-low>
        <k xmlns="urn:a"/>
      </encapsulation>
      <rewrite>
        <l xmlns="urn:a"/>
      </rewrite>
    </ethernet-service>
    <m xmlns="urn:a"/>
  </interface-configuration>
</interface-configurations>
)"},
                    Whole{"InJson", R"({
  "a:a": {"any": [[1, 2], {"a:b": null}]},
  "Vexnet-OS-interface-cfg:interface-configurations": {
    "a:b": [],
    "interface-configuration": [
      {
        "interface-name": "Ethernet0/0/1.100",
        "a:c": "\u00e9 \"a:?0\": {",
        "l2-transport": {
          "a:d": [null]
        },
        "mtu": 1500,
        "a:e": -1.5e3, "@a:e": {"o:origin": ["any", {"thing": 1}]},
        "Vexnet-OS-l2-eth-infra-cfg:ethernet-service": {
          "encapsulation": {
            "outer-tag-type": "match-dot1q",
            "@a:f": [null, {"o:origin": "x"}]
          }
        }
      },
      {
        "interface-name": "Ethernet0/0/2",
        "description": "\"?:?0\": \"\""
      }
    ],
    "b:a": false
  },
  "b:b": ""
}
)"}),
    [](const auto& info) { return info.param.name; });

// One element in an entry, and what it comes out as.
struct OneElement {
  const char* name;
  const char* around;  // declarations of the elements around it
  const char* in;
  const char* out;
};
void PrintTo(const OneElement& element, std::ostream* out) {
  *out << element.name;
}

class ForeignElement : public testing::TestWithParam<OneElement> {};

TEST_P(ForeignElement, StandsForItself) {
  const auto document = [](const std::string& around, const std::string& element) {
    return fmt::format(
        "<n:interface-configurations xmlns:n=\"{}\" {}><n:interface-configuration><n:interface-name>a"
        "</n:interface-name>{}</n:interface-configuration></n:interface-configurations>",
        kNativeNs, around, element);
  };
  const std::string wanted = fmt::format(
      "<interface-configurations xmlns=\"{}\">\n  <interface-configuration>\n    <interface-name>a</interface-name>\n"
      "    {}\n  </interface-configuration>\n</interface-configurations>\n",
      kNativeNs, GetParam().out);
  EXPECT_EQ(printed(document(GetParam().around, GetParam().in)), wanted);
  EXPECT_EQ(printed(wanted), wanted);
}

#define NATIVE "http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg"

INSTANTIATE_TEST_SUITE_P(
    Texts, ForeignElement,
    testing::Values(
        OneElement{"MixedContent", "", "<a xmlns='urn:a'> one <b/>two<c>3</c>\n</a>",
                   "<a xmlns=\"urn:a\"> one <b/>two<c>3</c>\n</a>"},
        OneElement{"Escapes", "",
                   "<a xmlns='urn:a' b='&lt;&amp;&quot;&apos;&#9;&#10;&#13;>'>&lt;&amp;>\"'&#13;&#x20AC;</a>",
                   "<a xmlns=\"urn:a\" b=\"&lt;&amp;&quot;'&#9;&#10;&#13;>\">&lt;&amp;&gt;\"'&#13;\xE2\x82\xAC</a>"},
        OneElement{"Sections", "", "<a xmlns='urn:a'><![CDATA[<b> & ]]><!-- c --><?d e?><?f?></a>",
                   "<a xmlns=\"urn:a\"><![CDATA[<b> & ]]><!-- c --><?d e?><?f?></a>"},
        OneElement{"BlanksThatCount", "", "<a xmlns='urn:a' xml:space='preserve'> <b> </b> </a>",
                   "<a xmlns=\"urn:a\" xml:space=\"preserve\"> <b> </b> </a>"},
        OneElement{"ElementsOfLoadedModels", "",
                   "<a xmlns='urn:a'><mtu xmlns='" NATIVE "'>no number</mtu><config xmlns=''/></a>",
                   "<a xmlns=\"urn:a\"><mtu xmlns=\"" NATIVE "\">no number</mtu><config xmlns=\"\"/></a>"},
        OneElement{"WhatLooksLikeAMark", "", "<a xmlns='urn:a'>&lt;?0 xmlns=\"?\"/><?x0 xmlns=\"?\"/?></a>",
                   "<a xmlns=\"urn:a\">&lt;?0 xmlns=\"?\"/&gt;<?x0 xmlns=\"?\"/?></a>"},
        OneElement{"PrefixOfTheElement", "xmlns:a='urn:a' xmlns:b='urn:b' xmlns='" NATIVE "'", "<a:a/>",
                   "<a:a xmlns:a=\"urn:a\"/>"},
        OneElement{"PrefixesOfNamesInside", "xmlns:a='urn:a' xmlns:b='urn:b' xmlns:c='urn:c' xmlns='" NATIVE "'",
                   "<a:a><b:b c:d='1'/></a:a>",
                   "<a:a xmlns:a=\"urn:a\" xmlns:b=\"urn:b\" xmlns:c=\"urn:c\"><b:b c:d=\"1\"/></a:a>"},
        OneElement{"PrefixesInValues",
                   "xmlns:a='urn:a' xmlns:b='urn:b' xmlns:c='urn:c' xmlns:d='urn:d' xmlns:e='urn:e' xmlns='" NATIVE "'",
                   "<a:a><b>b:one</b><c d='/c:x/y'/>x<![CDATA[ d:]]></a:a>",
                   "<a:a xmlns:a=\"urn:a\" xmlns:b=\"urn:b\" xmlns:c=\"urn:c\" xmlns:d=\"urn:d\"><b>b:one</b><c "
                   "d=\"/c:x/y\"/>x<![CDATA[ d:]]></a:a>"},
        OneElement{"APrefixInAValueInPieces", "xmlns:ab='urn:ab' xmlns='urn:a'", "<a>a&#98;:c</a>",
                   "<a xmlns=\"urn:a\" xmlns:ab=\"urn:ab\">ab:c</a>"},
        OneElement{"APrefixBoundAgain", "xmlns:b='urn:b' xmlns='urn:a'", "<a xmlns:b='urn:c'><b:b/></a>",
                   "<a xmlns=\"urn:a\" xmlns:b=\"urn:c\"><b:b/></a>"},
        OneElement{"TheDefaultNamespace", "xmlns='urn:a'", "<a><b/></a>", "<a xmlns=\"urn:a\"><b/></a>"},
        OneElement{"AnotherDefaultNamespace", "xmlns:a='urn:a' xmlns='urn:b'", "<a:a><b/></a:a>",
                   "<a:a xmlns=\"urn:b\" xmlns:a=\"urn:a\"><b/></a:a>"},
        OneElement{"NoDefaultNamespace", "xmlns:a='urn:a'", "<a:a><b/></a:a>",
                   "<a:a xmlns=\"\" xmlns:a=\"urn:a\"><b/></a:a>"}),
    [](const auto& info) { return info.param.name; });

TEST(ForeignSubtrees, AreWrittenInUtf8WhateverTheyCameIn) {
  const std::string body = "\"?><data><a xmlns='urn:a'>";
  EXPECT_EQ(
      printed("<?xml version='1.0' encoding=\"ISO-8859-1" + body + "caf\xE9</a></data>"),
      "<data xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">\n  <a xmlns=\"urn:a\">caf\xC3\xA9</a>\n</data>\n");
}

struct Bad {
  const char* name;
  std::string text;
  const char* said;
};
void PrintTo(const Bad& bad, std::ostream* out) {
  *out << bad.name;
}

std::string repeated(std::string_view text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

class BadForeign : public testing::TestWithParam<Bad> {};

TEST_P(BadForeign, IsUnreadable) {
  EXPECT_EQ(printed(GetParam().text), fmt::format("unreadable: running: {}\n", GetParam().said));
}

INSTANTIATE_TEST_SUITE_P(
    Limits, BadForeign,
    testing::Values(
        Bad{"Deep", "<a xmlns='urn:a'>" + repeated("<b>", 200) + repeated("</b>", 200) + "</a>",
            "line 1: elements are nested more than 200 deep"},
        Bad{"LongText", "<a xmlns='urn:a'>" + std::string((1U << 20) + 1, 'x') + "</a>",
            "line 1: a text is longer than 1048576 bytes"},
        Bad{"LongAttribute", "<a xmlns='urn:a'><b c='" + std::string((1U << 16) + 1, 'x') + "'/></a>",
            "line 1: attribute 'c' of 'b' is longer than 65536 bytes"},
        Bad{"NotWellFormed", "<a xmlns='urn:a'><b></a>", "line 1: Opening and ending tag mismatch: b line 1 and a"},
        Bad{"UndeclaredPrefix", "<a xmlns='urn:a'><b:b/></a>", "line 1: Namespace prefix b on b is not defined"},
        Bad{"UndeclaredEntity", "<a xmlns='urn:a'>&b;</a>", "line 1: Entity 'b' not defined"},
        Bad{"DeepJson", "{\"a:a\": " + repeated("[", 200) + repeated("]", 200) + "}",
            "line 1: values are nested more than 200 deep"},
        Bad{"LongTextInJson", "{\"a:a\": \"" + std::string((1U << 20) + 1, 'x') + "\"}",
            "line 1: a text is longer than 1048576 bytes"},
        Bad{"NotWellFormedJson", "{\"a:a\": {\"b\": 01}}", "line 1: a value is expected here, not '01'"},
        Bad{"Utf8", "{\"a:a\": \"\xC0\x80\"}", "line 1: a text is not UTF-8"},
        Bad{"MemberTwice", "{\"a:a\": 1, \"a:a\": 2}", "line 1: the member 'a:a' stands here twice"},
        Bad{"AnnotatedTwice", "{\"@a:a\": 1, \"@a:a\": 2}", "line 1: 'a' is annotated twice"}),
    [](const auto& info) { return info.param.name; });

TEST(ForeignSubtrees, AreToldOnceWhenTheyAreRead) {
  Host made = host();
  EXPECT_EQ(told(made.set_running({"<data><a xmlns='urn:a'><b xmlns='urn:b'/></a></data>", Format::xml, "file"})),
            ": file: 1 subtree of models that are not loaded is carried along unread (urn:a)\n");
  EXPECT_EQ(told(made.set_running({"<data><a xmlns='urn:a'/><a xmlns='urn:b'/><a xmlns='urn:a'/><a xmlns='urn:c'/>"
                                   "<a xmlns='urn:d'/><a xmlns='urn:e'/></data>",
                                   Format::xml, "file"})),
            ": file: 6 subtrees of models that are not loaded are carried along unread (urn:a, urn:b, urn:c and 2 "
            "more)\n");
  EXPECT_EQ(told(made.set_running({"{\"a:a\": 1, \"@a:a\": {}, \"b:a\": 2}", Format::json, "file"})),
            ": file: 2 subtrees of models that are not loaded are carried along unread (a, b)\n");
  EXPECT_EQ(told(made.set_running({"<data/>", Format::xml, "file"})), "");
}

constexpr char kDevice[] = R"(<data xmlns="urn:ietf:params:xml:ns:netconf:base:1.0">
  <interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg">
    <interface-configuration>
      <interface-name>Ethernet0/0/0</interface-name>
    </interface-configuration>
    <interface-configuration>
      <interface-name>Ethernet0/0/1</interface-name>
      <a xmlns="urn:a"/>
    </interface-configuration>
    <between xmlns="urn:a">1</between>
    <interface-configuration>
      <interface-name>Ethernet0/0/1.100</interface-name>
      <l2-transport/>
      <b xmlns="urn:a"/>
      <ethernet-service xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
        <encapsulation>
          <outer-tag-type>match-dot1q</outer-tag-type>
          <c xmlns="urn:c"/>
          <outer-range1-low>100</outer-range1-low>
        </encapsulation>
      </ethernet-service>
    </interface-configuration>
    <between xmlns="urn:a">2</between>
    <interface-configuration>
      <interface-name>Ethernet0/0/2</interface-name>
    </interface-configuration>
  </interface-configurations>
  <top xmlns="urn:a"/>
</data>
)";

std::string without(std::string text, std::string_view part, std::string_view instead = "") {
  const std::size_t at = text.find(part);
  return at == std::string::npos ? "there is no " + std::string(part) : text.replace(at, part.size(), instead);
}

std::string inside(const std::string& text, std::string_view from, std::string_view to) {
  const std::size_t begin = text.find(from);
  return text.substr(begin, text.find(to, begin) + to.size() - begin);
}

struct Edit {
  const char* name;
  std::string request;
  std::string after;
  const char* told;
  std::vector<std::string> gone;
};
void PrintTo(const Edit& edit, std::ostream* out) {
  *out << edit.name;
}

std::string sub(std::string_view attributes, std::string_view inside) {
  return on_interface(fmt::format("<subinterfaces><subinterface {}><index>100</index>{}</subinterface></subinterfaces>",
                                  attributes, inside));
}

std::string vlan(std::string_view attributes, std::string_view inside = "") {
  return sub("", fmt::format("<vlan xmlns=\"{}\" {}>{}</vlan>", kVlanNs, attributes, inside));
}

constexpr char kEntry100[] =
    "    <interface-configuration>\n      <interface-name>Ethernet0/0/1.100</interface-name>\n";
constexpr char kEntry1[] = "    <interface-configuration>\n      <interface-name>Ethernet0/0/1</interface-name>\n";
constexpr char kEntryEnd[] = "</ethernet-service>\n    </interface-configuration>\n";

class ForeignBesideEdits : public testing::TestWithParam<Edit> {};

TEST_P(ForeignBesideEdits, StaysUnlessItsEntryGoes) {
  Host made = host();
  made.set_running({kDevice, Format::xml, "running"});
  const EditResult result = made.apply({GetParam().request, Format::xml, "request"});
  EXPECT_EQ(made.print_running(Format::xml), GetParam().after);
  EXPECT_EQ(told(result.warnings), GetParam().told);
  std::vector<std::string> gone;
  for (const Foreign& each : result.gone) gone.push_back(each.path + " " + each.ns);
  EXPECT_EQ(gone, GetParam().gone);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, ForeignBesideEdits,
    testing::Values(
        Edit{"Change",
             vlan("", "<match><single-tagged><config><vlan-id>200</vlan-id></config></single-tagged></match>"),
             without(kDevice, "low>100", "low>200"),
             "",
             {}},
        Edit{"EmptiedContainer",
             vlan("nc:operation='delete'"),
             without(without(kDevice, "          <outer-tag-type>match-dot1q</outer-tag-type>\n"),
                     "          <outer-range1-low>100</outer-range1-low>\n"),
             "",
             {}},
        Edit{"ReplacedEntry",
             sub("nc:operation='replace'", ""),
             without(without(kDevice, "          <outer-tag-type>match-dot1q</outer-tag-type>\n"),
                     "          <outer-range1-low>100</outer-range1-low>\n"),
             "",
             {}},
        Edit{"DeletedEntry",
             sub("nc:operation='delete'", ""),
             without(kDevice, inside(kDevice, kEntry100, kEntryEnd)),
             ENTRY ": goes with it: 2 subtrees of models that are not loaded (urn:a, urn:c)\n",
             {ENTRY "/b urn:a", ENTRY "/Vexnet-OS-l2-eth-infra-cfg:ethernet-service/encapsulation/c urn:c"}},
        Edit{"DeletedInterface",
             fmt::format("<interfaces xmlns='{}' xmlns:nc='{}'><interface nc:operation='delete'><name>Ethernet0/0/1"
                         "</name></interface></interfaces>",
                         kInterfacesNs, kNetconf),
             without(kDevice, inside(kDevice, kEntry1, kEntryEnd), "    <between xmlns=\"urn:a\">1</between>\n"),
             ROOT "/interface-configuration[interface-name='Ethernet0/0/1']: goes with it: 1 subtree of models that "
                  "are not loaded (urn:a)\n" ENTRY
                  ": goes with it: 2 subtrees of models that are not loaded (urn:a, urn:c)\n",
             {ROOT "/interface-configuration[interface-name='Ethernet0/0/1']/a urn:a", ENTRY "/b urn:a",
              ENTRY "/Vexnet-OS-l2-eth-infra-cfg:ethernet-service/encapsulation/c urn:c"}}),
    [](const auto& info) { return info.param.name; });

// What a device would take along with the container goes without it.
TEST(ForeignSubtrees, AreSparedByTheNativeEdit) {
  Host made = host();
  made.set_running({kDevice, Format::xml, "running"});
  const auto native = [&made](const std::string& request) {
    return made.edit({request, Format::xml, "request"}).native.print(Format::xml);
  };
  const std::string around = R"(<interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg">
  <interface-configuration>
    <interface-name>Ethernet0/0/1.100</interface-name>
    <ethernet-service xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <encapsulation>
{}      </encapsulation>
    </ethernet-service>
  </interface-configuration>
</interface-configurations>
)";
  const std::string removed =
      "        <{} xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" nc:operation=\"remove\"/>\n";
  EXPECT_EQ(native(vlan("", "<match nc:operation='delete'/>")),
            fmt::format(fmt::runtime(around), fmt::format(fmt::runtime(removed), "outer-tag-type") +
                                                  fmt::format(fmt::runtime(removed), "outer-range1-low")));
  EXPECT_EQ(native(vlan("",
                        "<match nc:operation='replace'><single-tagged-list><config><vlan-ids>7</vlan-ids><vlan-ids>8"
                        "</vlan-ids></config></single-tagged-list></match>")),
            fmt::format(fmt::runtime(around),
                        "        <outer-tag-type>match-dot1q</outer-tag-type>\n"
                        "        <outer-range1-low>7</outer-range1-low>\n"
                        "        <outer-range1-high>4097</outer-range1-high>\n"
                        "        <additional-range1-low>8</additional-range1-low>\n"));
}

TEST(ForeignSubtrees, OfAnEntryThatGoesAreToldBeforeAnythingIsApplied) {
  Host made = host();
  made.set_running({kDevice, Format::xml, "running"});
  EXPECT_EQ(made.edit({sub("nc:operation='delete'", ""), Format::xml, "request"}).gone.size(), 2U);
  EXPECT_EQ(made.print_running(Format::xml), kDevice);
}

TEST(ForeignSubtrees, KeepTheirPlaceInAnArrayThatGrows) {
  const std::string before = R"({"Vexnet-OS-interface-cfg:interface-configurations": {"interface-configuration": [
      {"interface-name": "Ethernet0/0/1"}], "a:a": 1}})";
  Host made = host();
  made.set_running({before, Format::json, "running"});
  made.apply({sub("", vlan("").empty() ? "" : "<config><index>100</index></config>"), Format::xml, "request"});
  made.apply({vlan("", "<match><single-tagged><config><vlan-id>7</vlan-id></config></single-tagged></match>"),
              Format::xml, "request"});
  const std::string after = made.print_running(Format::json);
  EXPECT_NE(after.find("Ethernet0/0/1.100"), std::string::npos) << after;
  EXPECT_EQ(printed(after), after);
}

TEST(ForeignSubtrees, AreRefusedInTheOtherFormat) {
  Host made = host();
  made.set_running({kDevice, Format::xml, "running"});
  EXPECT_EQ(outcome_of([&] { return made.print_running(Format::json); }),
            "refused: operation-not-supported\n  path: " ROOT
            "/interface-configuration[interface-name='Ethernet0/0/1']/a\n  message: 'a' is of a model that is not "
            "loaded (urn:a): it came in XML and cannot go out in JSON\n  bad-element: a\n");
  made.set_running({"{\"a:a\": 1}", Format::json, "running"});
  EXPECT_EQ(outcome_of([&] { return made.print_running(Format::xml); }),
            "refused: operation-not-supported\n  path: /a:a\n  message: 'a' is of a model that is not loaded (a): it "
            "came in JSON and cannot go out in XML\n  bad-element: a\n");
}

TEST(ForeignSubtrees, MayBeMany) {
  constexpr int kMany = 10000;
  std::string text = "<interface-configurations xmlns=\"" NATIVE "\">\n";
  for (int i = 0; i < kMany; ++i) {
    text += fmt::format(
        "  <interface-configuration>\n    <interface-name>Ethernet0/0/1.{0}</interface-name>\n"
        "    <a xmlns=\"urn:a\">{0}</a>\n  </interface-configuration>\n  <b xmlns=\"urn:a\">{0}</b>\n",
        i);
  }
  text += repeated("  <c xmlns=\"urn:a\"/>\n", kMany) + "</interface-configurations>\n";
  EXPECT_TRUE(printed(text) == text);
}

std::string compared(const std::string& before, const std::string& after) {
  return outcome_of([&] {
    Host made = host();
    const auto foreign = [&made](const std::string& text) {
      const std::string document = format_of(text) == Format::xml ? "<data>" + text + "</data>" : text;
      made.set_running({document, format_of(text), "running"});
      return made.foreign();
    };
    const std::vector<Foreign> first = foreign(before);
    std::string text;
    for (const ForeignDelta& each : compare_foreign(first, foreign(after))) {
      const std::string_view signs = "-+~";
      text += fmt::format("{} {} {}\n", signs[static_cast<std::size_t>(each.kind)], each.path, each.ns);
    }
    return text;
  });
}

struct Pair {
  const char* name;
  const char* before;
  const char* after;
  const char* delta;
};
void PrintTo(const Pair& pair, std::ostream* out) {
  *out << pair.name;
}

class ForeignCompared : public testing::TestWithParam<Pair> {};

TEST_P(ForeignCompared, SaysWhatIsNotTheSame) {
  EXPECT_EQ(compared(GetParam().before, GetParam().after), GetParam().delta);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, ForeignCompared,
    testing::Values(
        Pair{"Same", "<a xmlns='urn:a' b='1' c=\"2\"><d/></a>",
             "<a c='2' b='1' xmlns=\"urn:a\">\n  <!-- laid out -->\n  <d></d>\n</a>", ""},
        Pair{"Changed", "<a xmlns='urn:a'>1</a>", "<a xmlns='urn:a'>2</a>", "~ /a urn:a\n"},
        Pair{"Added", "", "<a xmlns='urn:a'>2</a>", "+ /a urn:a\n"},
        Pair{"Removed", "<a xmlns='urn:a'>2</a>", "", "- /a urn:a\n"},
        Pair{"AnotherNamespace", "<a xmlns='urn:a'/>", "<a xmlns='urn:b'/>", "- /a urn:a\n+ /a urn:b\n"},
        Pair{"AnotherMeaningOfAPrefix", "<a xmlns='urn:a' xmlns:b='urn:b'>b:c</a>",
             "<a xmlns='urn:a' xmlns:b='urn:c'>b:c</a>", "~ /a urn:a\n"},
        Pair{"BlanksThatCount", "<a xmlns='urn:a'> </a>", "<a xmlns='urn:a'/>", "~ /a urn:a\n"},
        Pair{"OneOfSeveral", "<a xmlns='urn:a'>1</a><a xmlns='urn:a'>2</a><a xmlns='urn:a'>2</a>",
             "<a xmlns='urn:a'>2</a><a xmlns='urn:a'>1</a>", "- /a urn:a\n"},
        Pair{"ChangedAndAdded", "<a xmlns='urn:a'>1</a><a xmlns='urn:a'>2</a>",
             "<a xmlns='urn:a'>2</a><a xmlns='urn:a'>3</a><a xmlns='urn:a'>4</a>", "~ /a urn:a\n+ /a urn:a\n"},
        Pair{"SameInJson", R"({"a:a": {"b": [1, {"c": "x, ]\" y"}], "d": null}})",
             R"({"a:a":{"d" :null,"b":[ 1,{"c":"x, ]\" y"} ] } })", ""},
        Pair{"ChangedOrderOfAnArray", R"({"a:a": [1, 2]})", R"({"a:a": [2, 1]})", "~ /a:a a\n"},
        Pair{"ChangedAnnotation", R"({"a:a": 1, "@a:a": {"o:o": 1}})", R"({"a:a": 1, "@a:a": {"o:o": 2}})",
             "~ /a:a a\n"},
        Pair{"BothFormats", "<a xmlns='urn:a'>2</a>", R"({"a:a": [1, 2]})",
             "refused: operation-not-supported\n  path: /a\n  message: 'a' is of a model that is not loaded (urn:a): "
             "what came in XML cannot be compared with what came in JSON\n  bad-element: a\n"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace yfw::test
