// How the host's requests grow: every benchmark runs on growing inputs in one process, so that only ratios count.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "yfw-host/host.h"

namespace {

constexpr int kPerInterface = 100;

std::string native_running(int64_t subinterfaces) {
  std::string text = "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">";
  for (int64_t i = 0; i < subinterfaces; ++i) {
    text += fmt::format(
        "<interface-configuration><interface-name>Ethernet0/0/{}.{}</interface-name><l2-transport/>"
        "<ethernet-service xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\"><encapsulation>"
        "<outer-tag-type>match-dot1q</outer-tag-type><outer-range1-low>{}</outer-range1-low></encapsulation>"
        "</ethernet-service></interface-configuration>",
        i / kPerInterface, i % kPerInterface, i % 4094 + 1);
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

void grow(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond)->Complexity();
}

BENCHMARK(translate)->Apply(grow);
BENCHMARK(apply_to_equal_device)->Apply(grow);
BENCHMARK(apply_one_to_growing_device)->Apply(grow);
BENCHMARK(read_all)->Apply(grow);

}  // namespace

BENCHMARK_MAIN();
