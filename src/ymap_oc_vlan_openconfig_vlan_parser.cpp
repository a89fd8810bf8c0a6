// Walkers and augment hooks of the OpenConfig family, made from its rows.
#include "engine/handler.h"
#include "engine/walker.h"
#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"

#define OC_VLAN_NAME(name) ymap_ov_oc_vlan_openconfigvlan_##name

namespace {

enum RowId : int {
#include "engine/ids_from_rows.h"
#include "openconfig_vlan.def"
};

// clang-format off
constexpr auto kTable = oc_vlan::link({
#include "engine/table_from_rows.h"
#include "openconfig_vlan.def"
});
// clang-format on
static_assert(oc_vlan::check<kTable>());

constexpr oc_vlan::Family kFamily{
    .ns = YFW_OPENCONFIG_VLAN_NS,
    .rows = kTable.rows,
    .unknown_child = oc_vlan::UnknownChild::kRefuse,
    .leaf_work = oc_vlan::LeafWork::kMarkRead,
    .childless_entry = oc_vlan::ChildlessEntry::kWalkAgain,
    .traces_each_child = false,
    .knows_children_by_namespace = false,
    .refuses_delete_with_subtree = true,
    .descends_in_state_reads_only = false,
    .whole_template = true,
};

}  // namespace

// Nothing augments these nodes: an add is refused, anything else ignored.
#define OC_VLAN_TEXT_OF(name) #name
#define OC_VLAN_TEXT(name) OC_VLAN_TEXT_OF(name)
#define OC_VLAN_HOOK(name)                                                                                     \
  [[gnu::weak]] cerrno OC_VLAN_NAME(name)(yfw_map_ctx * ctx, const yfw_datatree* node, yfw_datatree* output) { \
    return oc_vlan::refuse_augmentation({ctx, OC_VLAN_TEXT(OC_VLAN_NAME(name))}, __LINE__, node, output);      \
  }

#include "engine/exports_from_rows.h"
#include "openconfig_vlan.def"
