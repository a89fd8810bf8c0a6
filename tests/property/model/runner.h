// A sequence run through the framework and judged by the model.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "property/model/generator.h"
#include "yfw-host/host.h"

namespace property {

// Which OpenConfig modules a host loads.
enum class Models : std::uint8_t { compact, published };

// Hosts are costly to make and hold nothing over from one running configuration to the next, so a few serve all.
class Hosts {
 public:
  explicit Hosts(Models models = Models::compact) : models_(models) {}

  yfw::Host& get(bool new_entries_are_l2, bool strict);

 private:
  Models models_;
  std::unique_ptr<yfw::Host> hosts_[2][2];
};

// What is wrong with how the host treats a sequence; an empty kind when nothing is.
struct Failure {
  std::string kind;
  std::string text;
};
Failure run(Hosts& hosts, const Sequence& sequence);

// What happened to the requests of all runs so far, to see that a generator reaches what it is meant to reach.
struct Tally {
  std::size_t requests = 0;
  std::size_t refused = 0;
  std::map<std::string, std::size_t> refusals;      // by error-tag
  std::map<std::string, std::size_t> explanations;  // of differences
  std::size_t staying = 0;                          // unsaid leaves that an edit left in an entry that it names
  std::size_t going = 0;
};
Tally& tally();

// A number from the environment.
std::uint64_t number_from(const char* variable, std::uint64_t otherwise);

// The sequences of all tests together, 10,000; OC_VLAN_SEQUENCES asks for more or fewer.
std::uint64_t sequences();

// The plug-in under test; OC_VLAN_PLUGIN names another one.
std::string plugin_file();

// The folder of published modules; empty where there is none.
std::string published_modules();

}  // namespace property
