// A host that reads operational data, and the documents that tests of it are made of.
#pragma once

#include <fmt/format.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "models_of_tests.h"
#include "yfw-host/host.h"

namespace yfw::test {

inline std::string contents(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

inline const std::string& running_text() {
  static const std::string text = contents(OC_VLAN_SOURCE_DIR "/examples/running.xml");
  return text;
}

// A host and the notes in its trace.
struct Device {
  explicit Device(const std::string& openconfig_dir, bool with_running)
      : host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang",
              .openconfig_dir = openconfig_dir,
              .trace = [this](const auto& line) {
                if (line.kind == TraceLine::Kind::note) notes += line.text + "\n";
              }}) {
    host.load_plugin(OC_VLAN_PLUGIN_FILE);
    if (with_running) host.set_running({running_text(), Format::xml, "running"});
  }
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  ReadResult read(const std::string& dump) {
    notes.clear();
    return host.read_state({dump, format_of(dump), "dump"});
  }

  std::string notes;
  Host host;
};

inline std::string told(const std::vector<Warning>& warnings) {
  std::string text;
  for (const Warning& warning : warnings) text += warning.path + ": " + warning.message + "\n";
  return text;
}

inline constexpr char kHead[] = "<vlan xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper\">";

inline std::string on_node(const std::string& below) {
  return fmt::format("{}<nodes><node><node-id>0/0/CPU0</node-id>{}</node></nodes></vlan>", kHead, below);
}

inline std::uint64_t first_seed() {
  const char* const given = std::getenv("OC_VLAN_SEED");
  return given == nullptr ? 20261121 : std::strtoull(given, nullptr, 10);
}

}  // namespace yfw::test
