// The text around the tables.
#include "mapping/document/document.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "mapping/document/round_trip.h"
#include "mapping/document/rows.h"
#include "mapping/document/tables.h"
#include "mapping/document/unsaid_shapes.h"
#include "mapping/document/unsaid_state.h"
#include "mapping/document/unsaid_values.h"

namespace mapping {

namespace {

constexpr char kIntroduction[] = R"(# Where every OpenConfig VLAN leaf goes

<!-- Made by scripts/make-mapping from the plug-in's tables and from runs: a test fails when it is out of date. -->

The plug-in knows the {} leaves that `openconfig-vlan` adds to `openconfig-interfaces`, `openconfig-if-ethernet` and
`openconfig-if-aggregate`. It maps {} of them and refuses {} by name. This is where each goes: a row of a table is the
leaf `config/NAME` and the leaf `state/NAME` of the container in the heading.

- **`config` asked for becomes** what the device is configured with when it is asked for that leaf alone, where nothing
  was configured before.
- **`config` read comes from** the native configuration. What stands behind "with" has to be there too, for the leaf to
  be read or to be read here: found out by leaving one native leaf after another out of a configuration that says all
  leaves of the container.
- **`state` read comes from** native operational data, in the same way.

A native leaf without a value holds the value of the OpenConfig leaf. Lines of one cell are different requests or
different native data. Where sub-interfaces that are L2 and L3, or those of a port and a bundle, differ, the cell says
so.

Native configuration is of `Vexnet-OS-l2-eth-infra-cfg`, below the entry of an interface or sub-interface in
`Vexnet-OS-interface-cfg`, `/interface-configurations/interface-configuration`. Operational data is of
`Vexnet-OS-l2-eth-infra-oper`: `/vlan/nodes/node/interfaces/interface` for sub-interfaces,
`/vlan/nodes/node/trunks/trunk` for ports and bundles. Paths are below these entries, and start at a later step where no
doubt comes from it:

| here | in full |
| --- | --- |
| `encapsulation/`, `rewrite/` | `ethernet-service/encapsulation/`, `ethernet-service/rewrite/` |
| `vlan-identifier/` | `vlan-sub-configuration/vlan-identifier/` |
| `native-vlan-identifier/` | `vlan-trunk-configuration/native-vlan-identifier/` |
| `vlan-switched/` of configuration | `vlan-trunk-configuration/vlan-switched/` |
| `vlan-encapsulation`, `tag`, `dot1ad-dot1q-stack/` | the same below `encapsulation-details/` |
| `tags-to-match/`, `tags-popped`, `pushe/` | the same below `encapsulation-details/service-instance-details/` |

)";

constexpr char kMatch[] = R"(## Tags that a sub-interface takes

Below `interfaces/interface/subinterfaces/subinterface`. Lists are tried with nine ids and with ten, their state with
three.

)";

constexpr char kIngress[] = R"(## What a sub-interface does to tags

Below `interfaces/interface/subinterfaces/subinterface`.

)";

constexpr char kSwitched[] = R"(## Switched ports

Below `interfaces/interface`: `ethernet` of a port, `aggregation` of a bundle.

)";

constexpr char kBound[] = R"(## The VLAN id of a routed sub-interface

`vlan/config/vlan-id` and `vlan/state/vlan-id` are mapped where they are bound to the native tags: `--bind
subinterface-vlan-id`, or `HostOptions::bind_subinterface_vlan_id`. Their state comes from native configuration too.

)";

constexpr char kUnmapped[] = R"(## Leaves that are refused

Nothing native expresses these. A request that names one is refused as a whole, or, with `--ignore-unmapped`, answered
without it; a read answers without it.

)";

constexpr char kNever[] = R"(## What OpenConfig does not say

A native leaf is said when writing what its entry reads as back, onto an entry that has only its layer, makes it with the
same value; [design.md](design.md#said-and-unsaid) says why, and what becomes of the others. Each value of the native
configuration model was tried: alone, and in each native form that the requests above become, on ports, bundles, and L2
and L3 sub-interfaces. A number or a text without special meaning stands for any; where the form has the leaf already, its
value does.

No form says these:

)";

constexpr char kInSomeForms[] = R"(
Some forms say these, named by what they are read as. What is in neither table is said wherever it stands.

)";

constexpr char kShapes[] = R"(
Settings that are lost by what stands beside them, or that are taken for others: what writing the reading back would make
and is not there, or not with that value, is the last column.

)";

constexpr char kState[] = R"(
Operational data is not written. A leaf of it is said when leaving it out, or changing it, changes what its entry reads
as. These are the leaves of the forms that the tables above read, with the forms that say them:

)";

constexpr char kStateShapes[] = R"(
And operational data of which a part or nothing is read:

)";

constexpr char kExceptions[] = R"(## Exceptions of the round trip

What an edit makes of the native configuration is read back, and is what was asked for, with these exceptions. Each was
run, and so was what to ask for instead, which reads back as it was asked for.

)";

std::string tables(Device& device, Readings& readings, std::string_view in_containers) {
  std::string text;
  for (const std::string& container : mapped_containers()) {
    if (container.find(in_containers) != std::string::npos) text += container_table(device, readings, container) + "\n";
  }
  return text;
}

std::string unsaid_text(Device& device) {
  const UnsaidValues values = unsaid_values(device);
  return kNever + values.never + kInSomeForms + values.in_some_forms + kShapes + unsaid_shapes(device) + kState +
         unsaid_state(device) + kStateShapes + unsaid_state_shapes(device) + "\n";
}

}  // namespace

std::string document() {
  Device device(false);
  Device binding_device(true);
  Readings readings(device);
  const auto all = leaves().size();
  const auto mapped = static_cast<std::size_t>(
      std::count_if(leaves().begin(), leaves().end(), [](const Leaf& each) { return each.is_mapped; }));
  std::string text = fmt::format(kIntroduction, all, mapped, all - mapped);
  text += kMatch + tables(device, readings, "/match/");
  text += kIngress + tables(device, readings, "ingress-mapping");
  text += kSwitched + tables(device, readings, "switched-vlan");
  text += kBound + bound_table(binding_device) + "\n";
  text += kUnmapped + unmapped_table(device) + "\n";
  text += unsaid_text(device);
  text += kExceptions + exceptions_text(device);
  text.pop_back();
  return text;
}

}  // namespace mapping
