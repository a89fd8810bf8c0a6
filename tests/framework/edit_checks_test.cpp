// What is refused before a plug-in sees it, and what nobody has to map because it asks for nothing.
#include <gtest/gtest.h>

#include "framework/tree/models.h"
#include "framework/tree/schema.h"
#include "framework/walk/interfaces_walker.h"
#include "models_of_tests.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kRunning[] =
    "<interface-configurations xmlns='http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg'>"
    "<interface-configuration><interface-name>Ethernet0/0/1</interface-name></interface-configuration>"
    "<interface-configuration><interface-name>Ethernet0/0/1.100</interface-name></interface-configuration>"
    "<interface-configuration><interface-name>Bundle-Ether5</interface-name></interface-configuration>"
    "<interface-configuration><interface-name>Bundle-Ether5.100</interface-name></interface-configuration>"
    "</interface-configurations>";

// A container of the OpenConfig tree, asked for with an operation ("" for none) on an interface.
struct Empty {
  const lysc_node* container;
  std::string interface;
  std::string operation;
};

bool named(const lysc_node* node, const char* name) {
  return std::string_view(node->name) == name;
}

std::string key_value(const Empty& empty, const lysc_node* list) {
  return named(list, "interface") ? empty.interface : "100";
}

std::string in_xml(const Empty& empty) {
  const std::string attribute = empty.operation.empty() ? "" : fmt::format(" nc:operation='{}'", empty.operation);
  std::string text;
  for (const lysc_node* node = empty.container; node != nullptr; node = node->parent) {
    std::string key;
    if (node->nodetype == LYS_LIST) key = fmt::format("<{0}>{1}</{0}>", key_of(node)->name, key_value(empty, node));
    text = fmt::format("<{0} xmlns='{1}' xmlns:nc='{2}'{3}>{4}{5}</{0}>", node->name, node->module->ns, kNetconf,
                       node == empty.container ? attribute : "", key, text);
  }
  return text;
}

std::string in_json(const Empty& empty) {
  std::string text =
      empty.operation.empty() ? "" : fmt::format(R"("@": {{"ietf-netconf:operation": "{}"}})", empty.operation);
  for (const lysc_node* node = empty.container; node != nullptr; node = node->parent) {
    const bool list = node->nodetype == LYS_LIST;
    std::string key;
    if (list) {
      const char* const quote = named(node, "interface") ? "\"" : "";
      key = fmt::format(R"("{0}": {1}{2}{1}{3})", key_of(node)->name, quote, key_value(empty, node),
                        text.empty() ? "" : ", ");
    }
    const std::string object = fmt::format("{{{}{}}}", key, text);
    text = fmt::format(R"("{}:{}": {})", node->module->name, node->name, list ? "[" + object + "]" : object);
  }
  return "{" + text + "}";
}

void collect_containers(const lysc_node* node, std::vector<const lysc_node*>& found) {
  const lysc_node* child = nullptr;
  while ((child = lys_getnext(child, node, nullptr, 0)) != nullptr) {
    if ((child->flags & LYS_CONFIG_W) == 0 || is_term(child)) continue;
    if (child->nodetype == LYS_CONTAINER) found.push_back(child);
    collect_containers(child, found);
  }
}

// The containers that are configuration, below the list of interfaces.
std::vector<const lysc_node*> containers_of(ly_ctx* models) {
  std::vector<const lysc_node*> found;
  const lys_module* const module = ly_ctx_get_module_implemented(models, kInterfacesModule);
  collect_containers(find_child(nullptr, module, "interfaces", module->ns), found);
  return found;
}

class EmptyContainers : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (GetParam() && !has_published_models()) GTEST_SKIP() << "no published modules at " << OC_VLAN_PUBLISHED_YANG;
    HostOptions options{.yang_dir = OC_VLAN_SOURCE_DIR "/yang"};
    if (GetParam()) options.openconfig_dir = OC_VLAN_PUBLISHED_YANG;
    host_ = std::make_unique<Host>(options);
    host_->load_plugin(OC_VLAN_PLUGIN_FILE);
    host_->set_running({kRunning, Format::xml, "running"});
    before_ = host_->running().print(Format::xml);
  }

  // What became of the request; empty when nothing did.
  std::string outcome(const std::string& text) {
    return outcome_of([&] {
      const EditResult result = host_->apply({text, format_of(text), "request"});
      std::string said = result.native.print(Format::xml);
      for (const Warning& each : result.warnings) said += each.path + ": " + each.message + "\n";
      for (const Difference& each : result.differences) said += each.path + " differs\n";
      if (host_->running().print(Format::xml) != before_) said += "changed\n";
      return said;
    });
  }

  static const Models& models() { return GetParam() ? published_models() : compact_models(); }

  std::unique_ptr<Host> host_;
  std::string before_;
};

TEST_P(EmptyContainers, ThatAreMergedAskForNothing) {
  const std::vector<const lysc_node*> containers = containers_of(models().get());
  EXPECT_GT(containers.size(), 30U);
  for (const lysc_node* const container : containers) {
    for (const char* const interface : {"Ethernet0/0/1", "Bundle-Ether5"}) {
      for (const char* const operation : {"", "merge"}) {
        const Empty empty{container, interface, operation};
        EXPECT_EQ(outcome(in_xml(empty)), "") << in_xml(empty);
        EXPECT_EQ(outcome(in_json(empty)), "") << in_json(empty);
      }
    }
  }
}

TEST_P(EmptyContainers, ThatNobodyMapsAreRefusedWithAnotherOperation) {
  int refused = 0;
  for (const lysc_node* const container : containers_of(models().get())) {
    if (claim_of(container) != Claim::nobody) continue;
    for (const char* const operation : {"replace", "create", "delete", "remove"}) {
      const Empty empty{container, "Ethernet0/0/1", operation};
      for (const std::string& text : {in_xml(empty), in_json(empty)}) {
        EXPECT_TRUE(outcome(text).starts_with("refused: operation-not-supported")) << outcome(text) << text;
        ++refused;
      }
    }
  }
  EXPECT_GE(refused, 6 * 4 * 2);
}

// What an unmapped container holds is judged, and one that goes with what is around it is refused.
TEST_P(EmptyContainers, AreNoWayAroundWhatNobodyMaps) {
  const char* const kEthernet = "http://openconfig.net/yang/interfaces/ethernet";
  EXPECT_TRUE(outcome(on_interface("<penalty-based-aied operation='remove'><config/></penalty-based-aied>"))
                  .starts_with("refused: operation-not-supported"));
  EXPECT_TRUE(outcome(on_interface("<penalty-based-aied><config operation='remove'/></penalty-based-aied>"))
                  .starts_with("refused: operation-not-supported"));
  EXPECT_TRUE(outcome(on_interface("<penalty-based-aied><config><flap-penalty>5</flap-penalty></config>"
                                   "</penalty-based-aied>"))
                  .starts_with("refused: operation-not-supported"));
  EXPECT_TRUE(
      outcome(on_interface(fmt::format("<ethernet xmlns='{}' operation='remove'><config/></ethernet>", kEthernet)))
          .starts_with("refused: operation-not-supported"));
  EXPECT_EQ(outcome(on_interface("<penalty-based-aied><config/></penalty-based-aied>")), "");
}

INSTANTIATE_TEST_SUITE_P(Of, EmptyContainers, testing::Bool(), [](const testing::TestParamInfo<bool>& info) {
  return std::string(info.param ? "PublishedModules" : "CompactModules");
});

}  // namespace
}  // namespace yfw::test
