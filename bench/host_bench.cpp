// How the host's requests grow: every benchmark runs on growing inputs in one process, so that only ratios count.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <map>
#include <string>
#include <string_view>

#include "yfw-host/host.h"

namespace {

constexpr int kPerInterface = 100;

// The tags of an entry: a single one, a range, a double tag, or a list in turn.
std::string encapsulation(int64_t i) {
  const int64_t id = i % 1000 + 1;
  const std::string single = "<outer-tag-type>match-dot1q</outer-tag-type>";
  const std::string low = fmt::format("<outer-range1-low>{}</outer-range1-low>", id);
  switch (i % 4) {
    case 0:
      return single + low;
    case 1:
      return fmt::format("{}{}<outer-range1-high>{}</outer-range1-high>", single, low, id + 9);
    case 2:
      return fmt::format(
          "<outer-tag-type>match-dot1ad</outer-tag-type>{}<inner-tag-type>match-dot1q</inner-tag-type>"
          "<inner-range1-low>{}</inner-range1-low>",
          low, id);
    default:
      return fmt::format(
          "{}{}<outer-range1-high>4097</outer-range1-high><additional-range1-low>{}</additional-range1-low>", single,
          low, id + 1000);
  }
}

std::string native_running(int64_t subinterfaces) {
  std::string text = "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">";
  for (int64_t i = 0; i < subinterfaces; ++i) {
    text += fmt::format(
        "<interface-configuration><interface-name>Ethernet0/0/{}.{}</interface-name><l2-transport/>"
        "<ethernet-service xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\"><encapsulation>{}"
        "</encapsulation></ethernet-service></interface-configuration>",
        i / kPerInterface, i % kPerInterface, encapsulation(i));
  }
  return text + "</interface-configurations>";
}

std::string openconfig_request(int64_t subinterfaces) {
  std::string text = "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\">";
  for (int64_t i = 0; i < subinterfaces; ++i) {
    if (i % kPerInterface == 0) {
      text += fmt::format("{}<interface><name>Ethernet0/0/{}</name><subinterfaces>",
                          i == 0 ? "" : "</subinterfaces></interface>", i / kPerInterface);
    }
    text += fmt::format(
        "<subinterface><index>{}</index><vlan xmlns=\"http://openconfig.net/yang/vlan\"><match><single-tagged><config>"
        "<vlan-id>{}</vlan-id></config></single-tagged></match></vlan></subinterface>",
        i % kPerInterface, (i + 7) % 4094 + 1);
  }
  return text + "</subinterfaces></interface></interfaces>";
}

yfw::Host make_host() {
  yfw::Host host({.yang_dir = OC_VLAN_YANG_DIR, .layer = yfw::Layer::l2});
  host.load_plugin(OC_VLAN_PLUGIN);
  return host;
}

void translate(benchmark::State& state) {
  yfw::Host host = make_host();
  const std::string request = openconfig_request(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(host.edit({request, yfw::Format::xml, "request"}));
  state.SetComplexityN(state.range(0));
}

void apply_to_equal_device(benchmark::State& state) {
  yfw::Host host = make_host();
  host.set_running({native_running(state.range(0)), yfw::Format::xml, "running"});
  const std::string request = openconfig_request(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(host.apply({request, yfw::Format::xml, "request"}));
  state.SetComplexityN(state.range(0));
}

void apply_one_to_growing_device(benchmark::State& state) {
  yfw::Host host = make_host();
  host.set_running({native_running(state.range(0)), yfw::Format::xml, "running"});
  const std::string request = openconfig_request(1);
  for (auto _ : state) benchmark::DoNotOptimize(host.apply({request, yfw::Format::xml, "request"}));
  state.SetComplexityN(state.range(0));
}

void read_all(benchmark::State& state) {
  yfw::Host host = make_host();
  host.set_running({native_running(state.range(0)), yfw::Format::xml, "running"});
  for (auto _ : state) benchmark::DoNotOptimize(host.read());
  state.SetComplexityN(state.range(0));
}

// A device of this many entries, made once: the transactions leave it with as many, or with one more.
yfw::Host& kept_device(int64_t entries) {
  static std::map<int64_t, yfw::Host> devices;
  auto found = devices.find(entries);
  if (found == devices.end()) {
    found = devices.emplace(entries, make_host()).first;
    found->second.set_running({native_running(entries), yfw::Format::xml, "running"});
  }
  return found->second;
}

// An edit of one sub-interface of the first interface.
std::string edit_of_one(std::string_view index, std::string_view operation, std::string_view content) {
  return fmt::format(
      "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\"><interface><name>Ethernet0/0/0</name><subinterfaces>"
      "<subinterface xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" nc:operation=\"{}\"><index>{}</index>{}"
      "</subinterface></subinterfaces></interface></interfaces>",
      operation, index, content);
}

std::string single_tagged(int vlan) {
  return fmt::format(
      "<vlan xmlns=\"http://openconfig.net/yang/vlan\"><match><single-tagged><config><vlan-id>{}</vlan-id></config>"
      "</single-tagged></match></vlan>",
      vlan);
}

// One edit of a device that is kept, timed, after another one that makes the same work for it again, not timed.
void transaction(benchmark::State& state, const std::string& before, const std::string& timed) {
  yfw::Host& host = kept_device(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    host.apply({before, yfw::Format::xml, "before"});
    state.ResumeTiming();
    const yfw::EditResult result = host.apply({timed, yfw::Format::xml, "timed"});
    if (result.native.empty() || !result.differences.empty()) state.SkipWithError("the edit did not do what it says");
  }
}

void read_one_path(benchmark::State& state) {
  yfw::Host& host = kept_device(state.range(0));
  const yfw::Document path{
      "/interfaces/interface[name='Ethernet0/0/0']/subinterfaces/subinterface[index='1']/vlan/match"};
  for (auto _ : state) {
    if (host.read(path).data.empty()) state.SkipWithError("nothing was read");
  }
}

void grow(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond)->Complexity();
}

BENCHMARK(translate)->Apply(grow);
BENCHMARK(apply_to_equal_device)->Apply(grow);
BENCHMARK(apply_one_to_growing_device)->Apply(grow);
BENCHMARK(read_all)->Apply(grow);

// The time of one must not depend on the device.
void all_sizes(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(transaction, merge_leaf, edit_of_one("0", "merge", single_tagged(10)),
                  edit_of_one("0", "merge", single_tagged(20)))
    ->Apply(all_sizes);
BENCHMARK_CAPTURE(transaction, create_entry, edit_of_one("5000", "remove", ""),
                  edit_of_one("5000", "create", single_tagged(50)))
    ->Apply(all_sizes);
BENCHMARK_CAPTURE(transaction, delete_entry, edit_of_one("5000", "merge", single_tagged(50)),
                  edit_of_one("5000", "delete", ""))
    ->Apply(all_sizes);
BENCHMARK(read_one_path)->Name("transaction/read_path")->Apply(all_sizes);

}  // namespace

BENCHMARK_MAIN();
