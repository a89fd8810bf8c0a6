// Walkers and augment hooks of the native operational family, made from its rows.
#include "engine/handler.h"
#include "engine/walker.h"
#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"

#define OC_VLAN_NAME(name) ymap_vo_oc_vlan_vexnetosl2ethinfraoper_##name

namespace {

enum RowId : int {
#include "engine/ids_from_rows.h"
#include "native_oper.def"
};

// clang-format off
constexpr auto kTable = oc_vlan::link({
#include "engine/table_from_rows.h"
#include "native_oper.def"
});
// clang-format on
static_assert(oc_vlan::check<kTable>());

constexpr oc_vlan::Family kFamily{
    .ns = YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS,
    .rows = kTable.rows,
    .unknown_child = oc_vlan::UnknownChild::kIgnore,
    .leaf_work = oc_vlan::LeafWork::kReportXpathErrors,
    .childless_entry = oc_vlan::ChildlessEntry::kDone,
    .traces_each_child = true,
    .knows_children_by_namespace = false,
    .refuses_delete_with_subtree = false,
    .descends_in_state_reads_only = true,
    .whole_template = false,
};

}  // namespace

// Nothing augments these nodes, and what is there is ignored: every hook is this function under another name.
extern "C" [[gnu::weak, gnu::visibility("hidden")]] cerrno oc_vlan_ignore_native_oper_augment(yfw_map_ctx*,
                                                                                              const yfw_datatree*,
                                                                                              yfw_datatree*) {
  return 0;
}

#define OC_VLAN_HOOK(name)                                                                   \
  [[gnu::weak, gnu::alias("oc_vlan_ignore_native_oper_augment")]] cerrno OC_VLAN_NAME(name)( \
      yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);

#include "engine/exports_from_rows.h"
#include "native_oper.def"
