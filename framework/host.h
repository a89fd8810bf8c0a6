// The reference framework's front door: a host loads models and a plug-in, holds a native running configuration, and
// turns OpenConfig requests into native ones and native configuration into OpenConfig.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/data.h"
#include "framework/error.h"

namespace yfw {

// What a sub-interface that the running configuration does not know is taken for.
enum class Layer : std::uint8_t {
  from_running,  // L3, with a warning
  l2,            // L2; an entry that an edit creates gets `l2-transport`
  l3,            // L3, as asked for
};

// What happens when what was asked and what reads back differ.
enum class Verify : std::uint8_t { off, report, strict };

// One line of the trace: a framework call, a line of the plug-in's own log, or a decision of the framework.
struct TraceLine {
  enum class Kind : std::uint8_t { call, log, buffer, note } kind;
  int level;  // of `log` lines: 0 error, 3 trace; 3 otherwise
  std::string text;
};

struct HostOptions {
  // Folder with the native modules and the compact OpenConfig ones.
  std::string yang_dir;
  // Folder with published OpenConfig modules to load instead of the compact ones; empty for none.
  std::string openconfig_dir = {};
  Layer layer = Layer::from_running;
  Verify verify = Verify::report;
  // Drop request parts that no plug-in maps, with a warning, instead of refusing them.
  bool ignore_unmapped = false;
  // Bind the routed sub-interface's vlan/config/vlan-id to the plug-in's L3 VLAN functions.
  bool bind_subinterface_vlan_id = false;
  // The default-operation of edits that name none of their own.
  Operation default_operation = Operation::merge;
  // Called for each trace line; empty for no trace (which costs nothing then).
  std::function<void(const TraceLine&)> trace = {};
};

// A leaf whose value after the edit is not the one that should be there.
struct Difference {
  std::string path;         // OpenConfig instance path
  std::string asked = {};   // the value that should be there, empty for none
  std::string found = {};   // the value that reads back, empty for none
  std::string advice = {};  // the known exception that it is and what to ask for instead; empty when unknown
  bool is_asked = true;     // the request says something of the leaf; otherwise only the rest of the configuration does
};

struct EditResult {
  Data native;  // the native edit, with operations, ready to print
  std::vector<Warning> warnings;
  std::vector<Difference> differences;  // empty without a running configuration or with Verify::off
};

struct ReadResult {
  Data data;
  std::vector<Warning> warnings;
};

struct FetchResult {
  std::vector<std::string> paths;  // native paths, in the order in which the walk asked for them, each once
  std::vector<Warning> warnings;
};

// One host serves requests one after another on one thread at a time; hosts are independent of each other.
// Every function throws Refused or Unreadable and leaves the host as it was.
class Host {
 public:
  explicit Host(HostOptions options);
  ~Host();
  Host(Host&&) noexcept;
  Host& operator=(Host&&) noexcept;

  // Loads a plug-in as a device does: dlopen, then its registration entry point where it has one.
  void load_plugin(const std::string& path);

  // Replaces the native running configuration. Bare data, or inside <data> or <config>.
  void set_running(const Document& document);
  bool has_running() const;
  // The native running configuration, to print; owned by the host, valid until it changes.
  const Data& running() const;

  // What an OpenConfig edit becomes natively. Nothing is applied. With a running configuration the edit is checked
  // against it; without one, existence is not checked.
  EditResult edit(const Document& request);

  // The same, and the result becomes the running configuration.
  EditResult apply(const Document& request);

  // OpenConfig configuration from the native running one. The filter is a subtree filter, or instance paths, one a
  // line; an empty document reads everything.
  ReadResult read(const Document& filter = {});

  // OpenConfig configuration and state: the operational document is native operational data.
  ReadResult read_state(const Document& operational, const Document& filter = {});

  // The native paths that a read (with state, for `with_state`) asks for.
  FetchResult fetch(const Document& filter = {}, bool with_state = false);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace yfw
