// The three families of walkers side by side: the names of each, and what each does in its own way.
#pragma once

#include <cstdint>

#include "yfw/yfw_map.h"

// The exported name of a walker, handler or hook.
#define OC_VLAN_OPENCONFIG(name) ymap_ov_oc_vlan_openconfigvlan_##name
#define OC_VLAN_NATIVE_CFG(name) ymap_vo_oc_vlan_vexnetosl2ethinfracfg_##name
#define OC_VLAN_NATIVE_OPER(name) ymap_vo_oc_vlan_vexnetosl2ethinfraoper_##name

// A name as a text.
#define OC_VLAN_TEXT_OF(name) #name
#define OC_VLAN_TEXT(name) OC_VLAN_TEXT_OF(name)

namespace oc_vlan {

// What becomes of a child in the family's own namespace that has no row.
enum class UnknownChild : uint8_t {
  kRefuse,  // an error; an edit ends with CERR_UNSUPPORTED
  kIgnore,  // a trace line
};

// What a leaf walker does beside calling its handler.
enum class LeafWork : uint8_t {
  kMarkRead,           // tells the container that a leaf, or a selecting leaf, was read
  kReportXpathErrors,  // tells the framework of a leaf that it marked as an xpath error
};

// What an entry walker does with an element without children in a read or a delete, once it was walked.
enum class ChildlessEntry : uint8_t { kWalkAgain, kDone };

struct Policy {
  const char* ns;
  UnknownChild unknown_child;
  LeafWork leaf_work;
  ChildlessEntry childless_entry;
  bool traces_each_child;            // "Processing tag '%s'"
  bool knows_children_by_namespace;  // a known tag of another namespace is a foreign child
  bool refuses_delete_with_subtree;
  bool descends_in_state_reads_only;  // every descent needs a read that includes state
  bool whole_template;                // walk marks, two-pass replaces, implicit walks
};

inline constexpr Policy kOpenConfig{
    .ns = YFW_OPENCONFIG_VLAN_NS,
    .unknown_child = UnknownChild::kRefuse,
    .leaf_work = LeafWork::kMarkRead,
    .childless_entry = ChildlessEntry::kWalkAgain,
    .traces_each_child = false,
    .knows_children_by_namespace = false,
    .refuses_delete_with_subtree = true,
    .descends_in_state_reads_only = false,
    .whole_template = true,
};

inline constexpr Policy kNativeCfg{
    .ns = YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS,
    .unknown_child = UnknownChild::kIgnore,
    .leaf_work = LeafWork::kReportXpathErrors,
    .childless_entry = ChildlessEntry::kDone,
    .traces_each_child = true,
    .knows_children_by_namespace = true,
    .refuses_delete_with_subtree = false,
    .descends_in_state_reads_only = false,
    .whole_template = true,
};

inline constexpr Policy kNativeOper{
    .ns = YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS,
    .unknown_child = UnknownChild::kIgnore,
    .leaf_work = LeafWork::kReportXpathErrors,
    .childless_entry = ChildlessEntry::kDone,
    .traces_each_child = true,
    .knows_children_by_namespace = false,
    .refuses_delete_with_subtree = false,
    .descends_in_state_reads_only = true,
    .whole_template = false,
};

}  // namespace oc_vlan
