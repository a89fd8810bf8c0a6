// Running configurations that hold more than the loaded models know: what is carried along, what --models adds, and
// that the tool reads what it writes.
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

constexpr char kEntryPath[] =
    "/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration[interface-name='Ethernet0/0/1.100']";
constexpr char kEmpty[] = "<data xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"/>\n";

std::string delete_subinterface() {
  return interface(
      "<subinterfaces><subinterface nc:operation=\"delete\"><index>100</index></subinterface></subinterfaces>");
}

std::string delete_interface() {
  std::string text = interface("");
  return text.insert(text.find("<interface>") + 10, " nc:operation=\"delete\"");
}

// Sub-interface Ethernet0/0/1.100 with one VLAN and a subtree that no model has.
std::string carrying(const std::string& vlan_id, const std::string& foreign) {
  return running(
      entry("Ethernet0/0/1", "") +
      entry("Ethernet0/0/1.100", encapsulation("<outer-range1-low>" + vlan_id + "</outer-range1-low>") + foreign));
}

std::string carried(const std::string& file, const std::string& count, const std::string& namespaces) {
  return "warning: " + file + ": " + count + " carried along unread (" + namespaces + ")\n";
}

const std::string kOne = "1 subtree of models that are not loaded is";

using ForeignRunning = CliTest;

TEST_F(ForeignRunning, IsToldUnlessQuiet) {
  const std::string file = folder.file("running.xml", carrying("100", "<a xmlns=\"urn:a\"/>"));
  const Outcome outcome = run({"translate", "-", "--running", file}, {.input = single_tagged("7")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.err, carried(file, kOne, "urn:a"));
  EXPECT_EQ(run({"read", "--running", file}).err, carried(file, kOne, "urn:a"));
  EXPECT_EQ(run({"fetch", "--running", file}).err, carried(file, kOne, "urn:a"));
  EXPECT_EQ(run({"read", "--running", file, "--quiet"}).err, "");
  EXPECT_EQ(run({"read", "--running", file, "--strict"}).exit_code, 0);
}

TEST_F(ForeignRunning, IsNotWrittenInTheOtherFormat) {
  const std::string file = folder.file("running.xml", carrying("100", "<a xmlns=\"urn:a\"/>"));
  const std::string output = folder.path("after.json");
  const Outcome outcome =
      run({"apply", "-", "--running", file, "--format", "json", "-o", output}, {.input = single_tagged("7")});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_NE(
      outcome.err.find("ocvlan: refused: " + std::string(kEntryPath) +
                       "/a: 'a' is of a model that is not loaded (urn:a): it came in XML and cannot go out in JSON"),
      std::string::npos)
      << outcome;
  EXPECT_EQ(folder.names(), std::vector<std::string>{"running.xml"});
}

TEST_F(ForeignRunning, IsWrittenInJsonWhenItCameInJson) {
  const std::string file =
      folder.file("running.json", R"({"a:a": [[1]], "Vexnet-OS-interface-cfg:interface-configurations":
    {"interface-configuration": [{"interface-name": "Ethernet0/0/1", "b:b": {"c": null}}]}})");
  const Outcome outcome = run({"apply", "-", "--running", file, "--format", "json"},
                              {.input = switched("<interface-mode>ACCESS"
                                                 "</interface-mode><access-vlan>7</access-vlan>")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, R"({
  "a:a": [[1]],
  "Vexnet-OS-interface-cfg:interface-configurations": {
    "interface-configuration": [
      {
        "interface-name": "Ethernet0/0/1",
        "b:b": {"c": null},
        "Vexnet-OS-l2-eth-infra-cfg:vlan-trunk-configuration": {
          "vlan-switched": {
            "mode": "access",
            "access-vlan": 7
          }
        }
      }
    ]
  }
}
)");
}

TEST_F(ForeignRunning, IsComparedToo) {
  const std::string before = folder.file("before.xml", carrying("100", "<a xmlns=\"urn:a\">1</a><b xmlns=\"urn:b\"/>"));
  const std::string after = folder.file("after.xml", carrying("200", "<a xmlns=\"urn:a\">2</a><c xmlns=\"urn:c\"/>"));
  const std::string below = kEntryPath;
  const std::string change = "~ " + std::string(kMatchPath) + "/single-tagged/config/vlan-id: 100 -> 200\n";
  const Outcome two = run({"diff", before, after, "--quiet"});
  EXPECT_EQ(two.exit_code, 0) << two;
  EXPECT_EQ(two.out, change + "~ " + below + "/a (urn:a)\n- " + below + "/b (urn:b)\n+ " + below + "/c (urn:c)\n");
  const Outcome request = run({"diff", before, "-"}, {.input = delete_subinterface()});
  EXPECT_TRUE(request.out.ends_with("- " + below + "/a (urn:a)\n- " + below + "/b (urn:b)\n")) << request;
  EXPECT_TRUE(request.err.ends_with("warning: " + below +
                                    ": goes with it: 2 subtrees of models that are not loaded (urn:a, urn:b)\n"))
      << request;
  const Outcome tree = run({"diff", before, after, "--format", "xml"});
  EXPECT_TRUE(tree.err.ends_with("/a: 3 subtrees of models that are not loaded differ, which the tree cannot show\n"))
      << tree;
}

// Other models call their roots "interfaces" too.
TEST_F(ForeignRunning, IsNotTakenForARequest) {
  const std::string before = folder.file("before.xml", running_with_vlan("100"));
  const std::string after =
      folder.file("after.xml", "<data><interfaces xmlns=\"urn:ietf:params:xml:ns:yang:ietf-interfaces\"/>" +
                                   running_with_vlan("200") + "</data>");
  const Outcome outcome = run({"diff", before, after, "--quiet"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "~ " + std::string(kMatchPath) + "/single-tagged/config/vlan-id: 100 -> 200\n" +
                             "+ /interfaces (urn:ietf:params:xml:ns:yang:ietf-interfaces)\n");
}

struct Emptied {
  std::string name;
  std::string format;
  std::string document;
};

class EmptyConfigurations : public CliTest, public testing::WithParamInterface<Emptied> {};

TEST_P(EmptyConfigurations, AreReadAsTheyAreWritten) {
  const std::string file = folder.file("running.xml", running(entry("Ethernet0/0/1", "")));
  const std::string empty = folder.path("empty");
  const std::string& format = GetParam().format;
  const Outcome outcome =
      run({"apply", "-", "--running", file, "--format", format, "-o", empty}, {.input = delete_interface()});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(contents(empty), GetParam().document);
  const std::string request = folder.path("request");
  EXPECT_EQ(run({"read", "--running", empty, "--format", format, "-o", request}).exit_code, 0);
  EXPECT_EQ(contents(request), GetParam().document);
  const Outcome again = run({"apply", request, "--running", empty, "--format", format});
  EXPECT_EQ(again.exit_code, 0) << again;
  EXPECT_EQ(again.out, GetParam().document);
}

INSTANTIATE_TEST_SUITE_P(In, EmptyConfigurations,
                         testing::Values(Emptied{"Xml", "xml", kEmpty}, Emptied{"Json", "json", "{}\n"}),
                         [](const auto& info) { return info.param.name; });

constexpr char kModule[] = R"(module example-ip {
  yang-version 1.1;
  namespace "http://example.net/ns/ip";
  prefix ip;
  import Vexnet-OS-interface-cfg { prefix if-cfg; }
  import example-types { prefix t; }
  container hosts { list host { key "name"; leaf name { type t:name; } } }
  augment "/if-cfg:interface-configurations/if-cfg:interface-configuration" {
    container ipv4 {
      leaf mtu { type uint16; default 1500; }
      leaf host { type leafref { path "/ip:hosts/ip:host/ip:name"; } }
    }
  }
})";
constexpr char kTypes[] =
    "module example-types { namespace \"urn:t\"; prefix t; typedef name { type string { length 1..9; } } }";

class FurtherModels : public CliTest {
 protected:
  void SetUp() override {
    const std::string models = folder.path("models");
    std::filesystem::create_directory(models);
    folder.file("models/example-ip.yang", kModule);
    folder.file("models/example-types@2026-11-21.yang", kTypes);
    words_ = {"--models", models};
  }

  Outcome run_with(std::vector<std::string> words, const std::string& input) const {
    words.insert(words.end(), words_.begin(), words_.end());
    return run(words, {.input = input});
  }

  static std::string device(const std::string& vlan_id, const std::string& host) {
    return "<data>" +
           carrying(vlan_id,
                    "<ipv4 xmlns=\"http://example.net/ns/ip\"><mtu>9000</mtu><host>" + host + "</host></ipv4>") +
           "<hosts xmlns=\"http://example.net/ns/ip\"><host><name>here</name></host></hosts></data>";
  }

  std::vector<std::string> words_;
};

TEST_F(FurtherModels, AreKeptAndPrintedLikeTheNativeOnes) {
  const std::string file = folder.file("running.xml", device("100", "here"));
  for (const std::string format : {"xml", "json"}) {
    const std::string after = folder.path("after." + format);
    const Outcome outcome =
        run_with({"apply", "-", "--running", file, "--format", format, "-o", after}, single_tagged("7"));
    EXPECT_EQ(outcome.exit_code, 0) << outcome;
    EXPECT_EQ(outcome.err, "");
    const Outcome same = run_with({"apply", "-", "--running", after, "--format", "xml"}, single_tagged("100"));
    EXPECT_EQ(same.err, "");
    EXPECT_EQ(same.out, run_with({"apply", "-", "--running", file}, single_tagged("100")).out) << format;
    EXPECT_NE(same.out.find("<mtu>9000</mtu>"), std::string::npos) << same;
  }
  const Outcome read = run_with({"read", "--running", file}, "");
  EXPECT_EQ(read.err, "");
  EXPECT_EQ(read.out, run({"read", "--running", file, "--quiet"}).out);
}

// A root that holds nothing known any more is one of two roots still.
TEST_F(FurtherModels, StandBesideWhatIsForeign) {
  const std::string file = folder.file(
      "running.xml", "<data>" + running(entry("Ethernet0/0/1", "") + "<a xmlns=\"urn:a\"/>") +
                         "<hosts xmlns=\"http://example.net/ns/ip\"><host><name>here</name></host></hosts></data>");
  const std::string after = folder.path("after.xml");
  EXPECT_EQ(run_with({"apply", "-", "--running", file, "-o", after}, delete_interface()).exit_code, 0);
  EXPECT_NE(contents(after).find("<a xmlns=\"urn:a\"/>"), std::string::npos) << contents(after);
  const Outcome again = run_with({"read", "--running", after}, "");
  EXPECT_EQ(again.exit_code, 0) << again;
  EXPECT_EQ(again.err, carried(after, kOne, "urn:a"));
}

TEST_F(FurtherModels, AreValidated) {
  const Outcome value = run_with({"read", "--running", "-"}, device("100", "much too long"));
  EXPECT_EQ(value.exit_code, 3) << value;
  EXPECT_NE(value.err.find("'host' is \"much too long\""), std::string::npos) << value;
  const Outcome reference = run_with({"read", "--running", "-"}, device("100", "there"));
  EXPECT_EQ(reference.exit_code, 3) << reference;
  EXPECT_NE(reference.err.find("no target instance"), std::string::npos) << reference;
  const Outcome unknown = run_with({"read", "--running", "-"}, "<hostess xmlns=\"http://example.net/ns/ip\"/>");
  EXPECT_EQ(unknown.exit_code, 3) << unknown;
  EXPECT_NE(unknown.err.find("'hostess' is not known in the model example-ip; allowed: hosts"), std::string::npos)
      << unknown;
}

TEST_F(FurtherModels, DoNotMakeOpenConfigARunningConfiguration) {
  const Outcome outcome = run_with({"read", "--running", "-"}, interface(""));
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_NE(outcome.err.find("'openconfig-interfaces:interfaces' is not of the model"), std::string::npos) << outcome;
}

TEST_F(FurtherModels, ThatCannotBeLoadedAreNamed) {
  const std::string file = folder.file("running.xml", plain_running());
  const auto loaded = [&file](const std::string& models) {
    return run({"read", "--running", file, "--models", models});
  };
  const Outcome missing = loaded(folder.path("none"));
  EXPECT_EQ(missing.exit_code, 3) << missing;
  EXPECT_EQ(missing.err, "ocvlan: " + folder.path("none") + ": cannot be read: No such file or directory\n");
  const Outcome without = loaded(folder.path(""));
  EXPECT_EQ(without.exit_code, 3) << without;
  EXPECT_EQ(without.err, "ocvlan: " + folder.path("") + ": there is no YANG module in this folder\n");
  folder.file("models/broken.yang", "module broken { namespace \"urn:x\"; }");
  const Outcome broken = loaded(folder.path("models"));
  EXPECT_EQ(broken.exit_code, 3) << broken;
  EXPECT_TRUE(broken.err.starts_with("ocvlan: cannot load module broken: ")) << broken;
}

TEST_F(FurtherModels, MayComeFromSeveralFolders) {
  std::filesystem::create_directory(folder.path("types"));
  std::filesystem::rename(folder.path("models/example-types@2026-11-21.yang"), folder.path("types/example-types.yang"));
  const Outcome alone = run_with({"read", "--running", "-"}, device("100", "here"));
  EXPECT_EQ(alone.exit_code, 3) << alone;
  EXPECT_NE(alone.err.find("cannot load module example-ip: there is no example-types.yang in "), std::string::npos)
      << alone;
  const Outcome both = run_with({"read", "--running", "-", "--models", folder.path("types")}, device("100", "here"));
  EXPECT_EQ(both.exit_code, 0) << both;
  EXPECT_EQ(both.err, "");
}

}  // namespace
}  // namespace cli_test
