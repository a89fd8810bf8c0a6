/* What the OpenConfig VLAN mapping plug-in exports by hand: its registration, its checks and tables, and the
 * translations that the per-node handlers call.
 *
 * Every function takes the framework's context first and stops the process on a null one. A null node or output is
 * CERR_INVALID_ARGS. Unless a function says otherwise, the result is 0, the code of the framework call that failed, or
 * a code of yfw/cerrno.h. A leaf translation takes (ctx, node, output), a container translation (ctx, node, number of
 * children to visit, output).
 */
#ifndef OC_VLAN_OC_VLAN_H
#define OC_VLAN_OC_VLAN_H

#include <stdint.h>

#include "yfw/yfw_map.h"

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* --- Registration ----------------------------------------------------------------------------------------------- */

/* Fills the framework's record with the models and root walkers of this plug-in, then binds the system database. */
void yfw_map_reg_ocvlan_oper(yfw_map_reg_mod_t* record);

/* Binds the system database; returns the result of the binding, or non-zero when the device has no such library. */
int yfw_vlan_sysdb_init(void);

/* Connection of that binding. */
extern uint64_t vlan_cfg_sysdb_connid;

/* --- VLAN match types ------------------------------------------------------------------------------------------- */

/* What a sub-interface matches. The numbers are fixed: tables are indexed by them. */
typedef enum {
  INVALID,
  SINGLE_TAG,
  SINGLE_TAG_RANGE,
  SINGLE_TAG_LIST,
  DOUBLE_TAG,
  DOUBLE_TAG_INNER_LIST,
  DOUBLE_TAG_OUTER_LIST,
  DOUBLE_TAG_INNER_RANGE,
  DOUBLE_TAG_OUTER_RANGE
} vlan_match_et;

/* Name of each match type; the tenth entry is null. */
extern const char* const vlan_match_type_string[10];

/* Native leaves of a list of at most nine ids, in order, for an outer and for an inner list; the tenth entry is null.
 */
extern const char* const vlan_id_outer_list_native_path[10];
extern const char* const vlan_id_inner_list_native_path[10];

/* --- Checks ----------------------------------------------------------------------------------------------------- */

/* Sets *is_l2 to 1 when the interface manager knows the sub-interface as L2, to 0 when not. Set it to 0 before. */
cerrno check_subintf_l2_or_l3(yfw_map_ctx* ctx, int* is_l2);

/* The match type that the native configuration of the current interface entry stands for. */
vlan_match_et check_l2_vlan_match_type(yfw_map_ctx* ctx);
vlan_match_et check_l3_vlan_match_type(yfw_map_ctx* ctx);

/* 1 when the children of a switched-vlan config container set trunk mode, else 0. */
int check_interface_mode_set_in_subtree(const yfw_datatree* config);

/* 1 when the system database says that the current interface is in trunk mode, else 0. */
int check_switched_mode_set_in_sysdb(yfw_map_ctx* ctx);

/* Tells by its name whether an interface takes switched VLANs, and where. */
int check_switched_vlan_cfgd_on_ether_or_bundle(const char* name);

/* --- OpenConfig to native: single-tagged match ------------------------------------------------------------------ */

cerrno oc2_vex_singletag_cfg_vlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_singletag_list_cfg(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output);
cerrno singletag_list_cfg_vlanid_stub(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_singletag_range_cfg_lowvlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_singletag_range_cfg_highvlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* --- OpenConfig to native: double-tagged match ------------------------------------------------------------------ */

cerrno oc2_vex_doubletag_cfg_outervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_doubletag_innervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_doubletag_innerrange_cfg_outervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_doubletag_innerrange_cfg_innerlowvlanid(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                       yfw_datatree* output);
cerrno oc2_vex_doubletag_innerrange_cfg_innerhighvlanid(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                        yfw_datatree* output);
cerrno oc2_vex_doubletag_outerrange_cfg_innervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_doubletag_outerrange_cfg_outerlowvlanid(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                       yfw_datatree* output);
cerrno oc2_vex_doubletag_outerrange_cfg_outerhighvlanid(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                        yfw_datatree* output);
cerrno oc2_vex_doubletag_innerlist_cfg(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count,
                                       yfw_datatree* output);
cerrno oc2_vex_doubletag_innerlist_cfg_outervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno doubletag_innerlist_cfg_innervlanids_stub(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_doubletag_outerlist_cfg(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count,
                                       yfw_datatree* output);
cerrno oc2_vex_doubletag_outerlist_cfg_innervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno doubletag_outerlist_cfg_outervlanids_stub(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* --- OpenConfig to native: ingress mapping and state leaves ----------------------------------------------------- */

cerrno oc2_vex_ingress_mapping_cfg_vlanstackaction(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_ingress_mapping_cfg_vlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_ingress_mapping_cfg_tpid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_match_container_state_leaves(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_ingressmapping_container_state_leaves(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* --- VLAN id of a routed sub-interface, both ways; no caller inside the library --------------------------------- */

cerrno map_oc_to_vex_l3_vlan(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno map_vex_to_oc_l3_vlan(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output);

/* --- OpenConfig to native: switched VLAN ------------------------------------------------------------------------ */

cerrno oc2_vex_switched_vlan_cfg_nativevlan_and_trunkvlans(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count,
                                                           yfw_datatree* output);
cerrno oc2_vex_switched_vlan_cfg_interfacemode(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_switched_vlan_cfg_accessvlan(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno switched_vlan_cfg_stub_function(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_switched_vlan_state_leaves(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno oc2_vex_switched_vlan_state_native_vlan(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* --- Native configuration to OpenConfig: encapsulation ---------------------------------------------------------- */

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlansubconfiguration_vlanidentifier_firsttag(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlansubconfiguration_vlanidentifier_secondtag(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_outerrange1low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_outerrange1high(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_innerrange1low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_innerrange1high(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange1low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange2low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange3low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange4low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange5low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange6low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange7low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange8low(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* --- Native configuration to OpenConfig: rewrite ---------------------------------------------------------------- */

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_rewritetype(yfw_map_ctx* ctx,
                                                                                               const yfw_datatree* node,
                                                                                               yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_outertagtype(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_outertagvalue(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* --- Native configuration to OpenConfig: trunk ------------------------------------------------------------------ */

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_nativevlanidentifier_vlanidentifier(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_mode(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_accessvlan(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_trunkvlans(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* --- Native operational data to OpenConfig state ---------------------------------------------------------------- */

/* Open the OpenConfig entry of a native one; `children` are the entry's own. */
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_interfaces_interface(yfw_map_ctx* ctx,
                                                                                  const yfw_datatree* node,
                                                                                  yfw_datatree* output,
                                                                                  yfw_datatree* children);
cerrno ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_trunks_trunk(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                                          yfw_datatree* output, yfw_datatree* children);

cerrno vex2_oc_encapsulationdetails(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output);
cerrno vex2_oc_vlanswitched(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output);
cerrno vex2_oc_native_vlan(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
