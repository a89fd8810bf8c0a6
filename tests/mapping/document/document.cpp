// The text around the tables.
#include "mapping/document/document.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "mapping/document/round_trip.h"
#include "mapping/document/rows.h"
#include "mapping/document/tables.h"

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
  text += kExceptions + exceptions_text(device);
  text.pop_back();
  return text;
}

}  // namespace mapping
