// The walker of the OpenConfig interfaces tree, as the sibling plug-in of a device has it: lists, the leaves that map
// one to one, and the entry walkers of the plug-ins that augment the tree.
#include "framework/walk/interfaces_walker.h"

#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "framework/datastore/running.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/walk/abi.h"
#include "framework/walk/environment.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/host.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

constexpr char kInterfacesNs[] = YFW_OPENCONFIG_INTERFACES_NS;
constexpr char kVlanNs[] = YFW_OPENCONFIG_VLAN_NS;

enum class Kind : std::uint8_t {
  container,
  state_container,  // walked by reads with state only
  interface_list,
  subinterface_list,
  answered,  // a leaf that says what the framework knows anyway
  copied,    // a leaf with a native leaf of the same meaning
  inverted,  // "enabled", natively the empty leaf "shutdown" when false
  entry,     // an element that a plug-in's entry walker takes
};

// One element of the tree. `link` is the native leaf of a mapped leaf, or the place that names an entry walker.
struct Row {
  const char* tag;
  const char* ns;
  Kind kind;
  std::span<const Row> children = {};
  const char* link = nullptr;
};

#define NATIVE "/interface-configurations/interface-configuration/"

constexpr Row kInterfaceConfig[] = {
    {"name", kInterfacesNs, Kind::answered},
    {"type", kInterfacesNs, Kind::answered},
    {"description", kInterfacesNs, Kind::copied, {}, NATIVE "description"},
    {"mtu", kInterfacesNs, Kind::copied, {}, NATIVE "mtu"},
    {"enabled", kInterfacesNs, Kind::inverted, {}, NATIVE "shutdown"},
    {"tpid", kVlanNs, Kind::entry, {}, "config"},
};
constexpr Row kInterfaceState[] = {
    {"tpid", kVlanNs, Kind::entry, {}, "state"},
};
constexpr Row kSubinterfaceConfig[] = {
    {"index", kInterfacesNs, Kind::answered},
    {"description", kInterfacesNs, Kind::copied, {}, NATIVE "description"},
    {"enabled", kInterfacesNs, Kind::inverted, {}, NATIVE "shutdown"},
};
constexpr Row kSubinterface[] = {
    {"index", kInterfacesNs, Kind::answered},
    {"config", kInterfacesNs, Kind::container, kSubinterfaceConfig},
    {"vlan", kVlanNs, Kind::entry, {}, "subinterface"},
};
constexpr Row kSubinterfaces[] = {
    {"subinterface", kInterfacesNs, Kind::subinterface_list, kSubinterface},
};
constexpr Row kEthernet[] = {
    {"switched-vlan", kVlanNs, Kind::entry, {}, "ethernet"},
};
constexpr Row kAggregation[] = {
    {"switched-vlan", kVlanNs, Kind::entry, {}, "aggregation"},
};
constexpr Row kInterface[] = {
    {"name", kInterfacesNs, Kind::answered},
    {"config", kInterfacesNs, Kind::container, kInterfaceConfig},
    {"state", kInterfacesNs, Kind::state_container, kInterfaceState},
    {"ethernet", YFW_OPENCONFIG_IF_ETHERNET_NS, Kind::container, kEthernet},
    {"aggregation", YFW_OPENCONFIG_IF_AGGREGATE_NS, Kind::container, kAggregation},
    {"routed-vlan", kVlanNs, Kind::entry, {}, "interface"},
    {"subinterfaces", kInterfacesNs, Kind::container, kSubinterfaces},
};
constexpr Row kInterfaces[] = {
    {"interface", kInterfacesNs, Kind::interface_list, kInterface},
};
constexpr Row kRoot = {"interfaces", kInterfacesNs, Kind::container, kInterfaces};

bool same(const char* left, const char* right) {
  return left != nullptr && right != nullptr && std::strcmp(left, right) == 0;
}

const Row* row_of(std::span<const Row> rows, const char* tag, const char* ns) {
  for (const Row& row : rows) {
    if (same(row.tag, tag) && same(row.ns, ns)) return &row;
  }
  return nullptr;
}

bool is_list_row(const Row& row) {
  return row.kind == Kind::interface_list || row.kind == Kind::subinterface_list;
}

class Walk {
 public:
  Walk(WalkState& walk_state, yfw_datatree* output)
      : walk_state_(walk_state), ctx_(walk_state.ctx()), output_(output) {}

  cerrno container(const Row& row, const yfw_datatree* node) {
    const std::string outer_name = interface_;
    const std::string outer_index = index_;
    yfw_map_add_to_node_hierarchy(ctx_, node, is_list_row(row) ? 2 : 1);
    if (is_list_row(row)) enter_entry(row, key_value(node));
    const cerrno result = passes(row, const_cast<yfw_datatree*>(node));
    if (result == 0 && is_list_row(row)) finish_entry(node);
    yfw_map_remove_from_node_hierarchy(ctx_, node);
    if (is_list_row(row)) enter(outer_name, outer_index);
    return result;
  }

 private:
  bool is_read() const { return walk_state_.request_kind() != kEdit; }

  void enter(const std::string& name, const std::string& index) {
    interface_ = name;
    index_ = index;
    walk_state_.enter_interface(name, index);
  }

  void enter_entry(const Row& row, const std::string& key) {
    if (row.kind == Kind::interface_list) {
      enter(key, "");
    } else {
      enter(std::string(interface_), key);
    }
  }

  // The key of an entry; a filter without one means every entry.
  static std::string key_value(const yfw_datatree* node) {
    for (uint32_t i = 0; i < node->subtree_count; ++i) {
      const yfw_datatree& child = node->subtrees[i];
      if (child.is_key != 0 && child.value != nullptr) return child.value;
    }
    return OutputTree::kAny;
  }

  cerrno passes(const Row& row, yfw_datatree* node) {
    if (node->operation == abi::kReplace) {
      // As every walker does it: take all of it away, then write what is to be there.
      node->operation = abi::kRemove;
      implicit(row, node);
      node->operation = abi::kMerge;
      const cerrno result = children(row, node);
      node->operation = abi::kReplace;
      return result;
    }
    if (yfw_map_is_request_delete(node) != 0) {
      if (is_list_row(row)) remove_entry(row, node);
      implicit(row, node);
      return 0;
    }
    if (is_read() && only_selects(node)) {
      implicit(row, node);
      return 0;
    }
    return children(row, node);
  }

  void remove_entry(const Row& row, const yfw_datatree* node) {
    walk_state_.output().touch_entry(kNativeEntryPath, Mark::remove);
    if (row.kind != Kind::interface_list) return;
    const Running* const running = walk_state_.environment().running;
    if (running == nullptr) {
      walk_state_.warnings().push_back({walk_state_.hierarchy_path(),
                                        "without a running configuration nobody knows its sub-interfaces; only the "
                                        "interface itself is removed"});
      return;
    }
    const std::string name = key_value(node);
    for (const std::string& sub : running->subinterfaces_of(name)) {
      enter(name, std::string(split_interface_name(sub).index));
      walk_state_.output().touch_entry(kNativeEntryPath, Mark::remove);
    }
    enter(name, "");
  }

  // True when a filter names nothing below the node but values that entries must have.
  static bool only_selects(const yfw_datatree* node) {
    for (uint32_t i = 0; i < node->subtree_count; ++i) {
      if ((node->subtrees[i].node_flags & abi::kSelecting) == 0) return false;
    }
    return true;
  }

  cerrno children(const Row& row, const yfw_datatree* node) {
    for (uint32_t i = 0; i < node->subtree_count; ++i) {
      const yfw_datatree* const child = &node->subtrees[i];
      const Row* const child_row = row_of(row.children, child->tag, child->ns);
      if (child_row == nullptr) return unsupported(child);
      const cerrno result = visit(*child_row, child);
      if (result != 0) return result;
    }
    return 0;
  }

  cerrno visit(const Row& row, const yfw_datatree* node) {
    switch (row.kind) {
      case Kind::state_container:
      case Kind::container:
      case Kind::interface_list:
      case Kind::subinterface_list:
        return container(row, node);
      case Kind::entry:
        return entry(row, node);
      case Kind::copied:
      case Kind::inverted:
        return leaf(row, node);
      case Kind::answered:
        break;
    }
    return 0;
  }

  cerrno unsupported(const yfw_datatree* node) {
    yfw_map_req_state& state = walk_state_.state();
    walk_state_.release(state.error_tag);
    state.error_tag = walk_state_.duplicate(node->tag);
    yfw_oc_error_path(ctx_);
    return CERR_UNSUPPORTED;
  }

  cerrno entry(const Row& row, const yfw_datatree* node) {
    if (same(row.link, "subinterface") && walk_state_.environment().bind_subinterface_vlan_id)
      return bound_entry(row, node);
    return call_entry(row, node);
  }

  cerrno call_entry(const Row& row, const yfw_datatree* node) {
    const yfw_map_walker_fn walker = walk_state_.environment().plugins->openconfig_entry(row.link);
    return walker == nullptr ? unsupported(node) : walker(ctx_, node, output_);
  }

  // The vlan element of a sub-interface whose config/vlan-id is bound: that leaf goes to its function, the rest to the
  // plug-in's walker.
  cerrno bound_entry(const Row& row, const yfw_datatree* node) {
    auto* const vlan = const_cast<yfw_datatree*>(node);
    yfw_datatree* config = nullptr;
    for (uint32_t i = 0; i < vlan->subtree_count; ++i) {
      if (same(vlan->subtrees[i].tag, "config")) config = &vlan->subtrees[i];
    }
    const bool whole = vlan->subtree_count == 0 || vlan->operation == abi::kReplace;
    if (config == nullptr && !whole) return call_entry(row, node);
    cerrno result = 0;
    if (config != nullptr) {
      yfw_datatree* const last = &vlan->subtrees[vlan->subtree_count - 1];
      std::swap(*config, *last);
      yfw_map_add_to_node_hierarchy(ctx_, vlan, 1);
      yfw_map_add_to_node_hierarchy(ctx_, last, 1);
      const yfw_datatree* const leaf = last->subtree_count == 0 ? last : &last->subtrees[0];
      result = bound_leaf(leaf);
      yfw_map_remove_from_node_hierarchy(ctx_, last);
      yfw_map_remove_from_node_hierarchy(ctx_, vlan);
      --vlan->subtree_count;
    } else {
      result = bound_leaf(vlan);
    }
    if (result == 0 && (whole || vlan->subtree_count > 0)) result = call_entry(row, node);
    if (config != nullptr) ++vlan->subtree_count;
    return result;
  }

  cerrno bound_leaf(const yfw_datatree* node) {
    const yfw_map_walker_fn translate = walk_state_.environment().plugins->routed_vlan().to_native;
    return translate == nullptr ? unsupported(node) : translate(ctx_, node, output_);
  }

  cerrno leaf(const Row& row, const yfw_datatree* node) {
    const char* value = node->value;
    yfw_datatree source = *node;
    if (row.kind == Kind::inverted && !is_read() && yfw_map_is_request_delete(node) == 0) {
      // Enabled is the absence of the native leaf.
      if (!same(value, "false")) source.operation = abi::kRemove;
      value = nullptr;
    }
    return yfw_map_datatree_add_path_flagged(ctx_, output_, row.link, kNativeInterfaceNs, value,
                                             is_read() ? nullptr : &source, nullptr, 0, 1);
  }

  // Every handler below the node sees the node itself; results and texts mean nothing.
  void implicit(const Row& row, yfw_datatree* node) {
    yfw_map_req_state& state = walk_state_.state();
    const bool mine = state.implicit_walk != 1;
    const yfw_datatree saved = *node;
    state.implicit_walk = 1;
    node->subtrees = nullptr;
    node->subtree_count = 0;
    node->node_flags = static_cast<uint8_t>(node->node_flags & ~abi::kHasSubtrees);
    for (const Row& child : row.children) implicit_child(child, node);
    node->subtrees = saved.subtrees;
    node->subtree_count = saved.subtree_count;
    node->node_flags = saved.node_flags;
    if (!mine) return;
    state.implicit_walk = 0;
    state.walk_bits = 0;
    walk_state_.forget_texts();
  }

  void implicit_child(const Row& row, yfw_datatree* node) {
    switch (row.kind) {
      case Kind::state_container:
        if (walk_state_.request_kind() == kReadState) implicit(row, node);
        break;
      case Kind::container:
        implicit(row, node);
        break;
      case Kind::interface_list:
      case Kind::subinterface_list:
        if (is_read()) implicit_entries(row, node);
        break;
      case Kind::entry:
        entry(row, node);
        break;
      case Kind::copied:
      case Kind::inverted:
        leaf(row, node);
        break;
      case Kind::answered:
        break;
    }
  }

  void implicit_entries(const Row& row, yfw_datatree* node) {
    const std::string outer_name = interface_;
    const std::string outer_index = index_;
    enter_entry(row, OutputTree::kAny);
    implicit(row, node);
    enter(outer_name, outer_index);
  }

  // An entry that is written exists afterwards, also when nothing in it is; a new L2 one says so.
  void finish_entry(const yfw_datatree* node) {
    if (is_read() || yfw_map_is_request_delete(node) != 0) return;
    const Environment& environment = walk_state_.environment();
    if (environment.running != nullptr && environment.running->entry(walk_state_.native_name()) != nullptr) return;
    walk_state_.enter_interface(interface_, index_);
    OutputTree& output = walk_state_.output();
    if (output.written_entry(kNativeEntryPath, walk_state_.native_name()) == nullptr) {
      // Removes of what is not there are gone by now; what is left of a new entry is there to stay.
      const bool only_removes = output.has_entry(kNativeEntryPath, walk_state_.native_name());
      if (only_removes ? environment.running == nullptr : speaks_of_subinterfaces(node)) return;
      output.touch_entry(kNativeEntryPath, Mark::inherit);
    }
    if (index_.empty() || environment.layer != Layer::l2) return;
    yfw_map_datatree_add_path_flagged(ctx_, output_, NATIVE "l2-transport", kNativeInterfaceNs, nullptr, nullptr,
                                      nullptr, 0, 0);
    output.move_last_child_first(kNativeEntryPath, walk_state_.native_name());
  }

  // An empty element asks for nothing.
  static bool speaks_of_subinterfaces(const yfw_datatree* node) {
    for (uint32_t i = 0; i < node->subtree_count; ++i) {
      const yfw_datatree* const child = &node->subtrees[i];
      if (same(child->tag, "subinterfaces")) return child->subtree_count > 0 || yfw_map_is_request_delete(child) != 0;
    }
    return false;
  }

  WalkState& walk_state_;
  yfw_map_ctx* ctx_;
  yfw_datatree* output_;
  std::string interface_;
  std::string index_;
};

#define INTERFACE_CONFIG "/interfaces/interface/config/"
#define SUBINTERFACE_CONFIG "/interfaces/interface/subinterfaces/subinterface/config/"

void add_own(WalkState& walk_state, const char* path, const char* value) {
  yfw_map_datatree_add_path_flagged(walk_state.ctx(), walk_state.output().root(), path, kInterfacesNs, value, nullptr,
                                    nullptr, 0, 0);
}

}  // namespace

Claim claim_of(const lysc_node* node) {
  std::vector<const lysc_node*> chain;
  for (const lysc_node* each = node; each != nullptr; each = each->parent) {
    if ((each->nodetype & (LYS_CHOICE | LYS_CASE)) == 0) chain.push_back(each);
  }
  const Row* row = &kRoot;
  if (!same(chain.back()->name, kRoot.tag) || !same(namespace_of(chain.back()), kRoot.ns)) return Claim::nobody;
  for (std::size_t i = chain.size() - 1; i-- > 0;) {
    if (row->kind == Kind::entry) {
      if (!same(namespace_of(chain[i]), row->ns)) return Claim::nobody;
      continue;
    }
    row = row_of(row->children, chain[i]->name, namespace_of(chain[i]));
    if (row == nullptr) return Claim::nobody;
  }
  return row->kind == Kind::entry ? Claim::plugin : Claim::framework;
}

const char* type_of_interface(std::string_view name) {
  return name.find("Bundle-Ether") == std::string_view::npos ? "ethernetCsmacd" : "ieee8023adLag";
}

void answer_own_leaves(WalkState& walk_state, const lyd_node* native_entry) {
  const bool sub = !walk_state.subinterface_index().empty();
  const char* const name = walk_state.state().interface_name;
  add_own(walk_state, INTERFACE_CONFIG "name", name);
  yfw_node_slot type{};
  yfw_map_datatree_add_path_flagged(walk_state.ctx(), walk_state.output().root(), INTERFACE_CONFIG "type",
                                    kInterfacesNs, type_of_interface(name), nullptr, &type, 0, 0);
  if (type.node != nullptr) type.node->value_ns = const_cast<char*>("urn:ietf:params:xml:ns:yang:iana-if-type");
  if (sub) add_own(walk_state, SUBINTERFACE_CONFIG "index", walk_state.subinterface_index().c_str());
  const lyd_node* leaf = nullptr;
  LY_LIST_FOR(native_entry == nullptr ? nullptr : lyd_child(native_entry), leaf) {
    if (!same(namespace_of(leaf->schema), kNativeInterfaceNs)) continue;
    if (named(leaf, "description")) {
      add_own(walk_state, sub ? SUBINTERFACE_CONFIG "description" : INTERFACE_CONFIG "description",
              lyd_get_value(leaf));
    }
    if (named(leaf, "mtu") && !sub) add_own(walk_state, INTERFACE_CONFIG "mtu", lyd_get_value(leaf));
    if (named(leaf, "shutdown")) {
      add_own(walk_state, sub ? SUBINTERFACE_CONFIG "enabled" : INTERFACE_CONFIG "enabled", "false");
    }
  }
}

}  // namespace yfw

extern "C" cerrno ymap_ov_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                                    yfw_datatree* output) {
  yfw::WalkState* const walk_state = yfw::WalkState::running();
  if (walk_state == nullptr || ctx == nullptr || node == nullptr || output == nullptr) return CERR_INVALID_ARGS;
  return yfw::Walk(*walk_state, output).container(yfw::kRoot, node);
}
