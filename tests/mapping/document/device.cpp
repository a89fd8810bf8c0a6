// The tried device is a host that is given a new running configuration for every run.
#include "mapping/document/device.h"

#include "property/model/native_models.h"
#include "property/model/observe.h"
#include "property/model/runner.h"

namespace mapping {

namespace {

constexpr char kNothing[] = "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\"/>";
constexpr char kNoState[] = "<vlan xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper\"/>";

yfw::Host make_host(bool binds_vlan_id) {
  yfw::Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .bind_subinterface_vlan_id = binds_vlan_id});
  host.load_plugin(property::plugin_file());
  return host;
}

}  // namespace

Device::Device(bool binds_vlan_id) : host_(make_host(binds_vlan_id)) {}

Written Device::write(const Place& place, const Entry& there, const Config& leaves) {
  Entry entry = there;
  if (place.is_l2) entry["l2-transport"];
  const std::string running = property::to_document({{place.name, entry}});
  host_.set_running({.text = running, .name = "running"});

  property::Request request;
  for (const auto& [path, values] : leaves) {
    property::add_leaf(request, property::openconfig_path(place.name) + "/" + path, values);
  }
  Written written;
  try {
    const std::string text = property::to_text(request);
    yfw::EditResult result = host_.apply({.text = text});
    written.native = property::observe_native(host_.running())[place.name];
    written.native.erase("l2-transport");
    written.running = host_.running().print(yfw::Format::xml);
    written.warnings = std::move(result.warnings);
    written.differences = std::move(result.differences);
  } catch (const yfw::Refused& refused) {
    written.refusal = refused.error().message;
  }
  return written;
}

Config Device::read(const Place& place, const std::string& running) {
  return property::part(property::observe_config(result_of(running).data), property::openconfig_path(place.name));
}

Config Device::read_state(const Place& place, const std::string& operational) {
  const yfw::ReadResult result = result_of_state(operational);
  return property::part(property::observe_config(result.data), property::openconfig_path(place.name));
}

Config Device::read_with_state(const Place& place, const std::string& running) {
  host_.set_running({.text = running, .name = "running"});
  const yfw::ReadResult result = host_.read_state({.text = kNoState, .name = "operational data"});
  return property::part(property::observe_config(result.data), property::openconfig_path(place.name));
}

yfw::ReadResult Device::result_of(const std::string& running) {
  host_.set_running({.text = running, .name = "running"});
  return host_.read();
}

yfw::ReadResult Device::result_of_state(const std::string& operational) {
  host_.set_running({.text = kNothing, .name = "running"});
  return host_.read_state({.text = operational, .name = "operational data"});
}

std::vector<std::string> Device::fetched(const std::string& path) {
  return host_.fetch({.text = path, .name = "path"}, true).paths;
}

}  // namespace mapping
