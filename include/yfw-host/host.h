// The reference framework's front door: a host loads models and a plug-in, holds a native running configuration, and
// turns OpenConfig requests into native ones and native configuration into OpenConfig.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "yfw-host/data.h"
#include "yfw-host/error.h"

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
  // Folders with further modules of the device, all of which are loaded.
  std::vector<std::string> models_dirs = {};
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

// How reports and refusals call what should have read back: "asked" of a leaf that the request names, and "expected".
std::string_view label_of(const Difference& difference);

// A value as reports and refusals show it.
std::string value_or_nothing(const std::string& value);

// A native leaf or presence container that the OpenConfig reading of its entry does not say: writing the reading back,
// onto an entry that has only its layer, does not produce it with this value.
struct Unsaid {
  enum class Fate : std::uint8_t { stays, goes };
  std::string entry;  // native name of the interface, e.g. "Ethernet0/0/1.100"
  std::string path;   // native instance path
  std::string value;  // value text; empty for a leaf without one
  Fate fate;          // what an edit does to it; a read leaves everything as it is
  std::string
      misread_as;  // what OpenConfig takes its container for, e.g. "the list 10,30"; empty when for nothing else
};

// A native container that OpenConfig takes for something else: writing the reading back makes leaves that are not
// there, or not with this value.
struct Misreading {
  std::string entry;               // native name of the interface
  std::string path;                // native instance path of the container
  std::string reads_as;            // in words, e.g. "the list 10,30"
  std::string natively;            // in words, e.g. "10-20,30"
  std::vector<std::string> makes;  // native instance paths of the leaves
};

struct EditResult {
  Data native;  // the native edit, with operations, ready to print
  std::vector<Warning> warnings;
  std::vector<Difference> differences;  // empty without a running configuration or with Verify::off
  // Of the entries that the edit touches, as they were before it; what it takes of other loaded models is among them.
  std::vector<Unsaid> unsaid;
  std::vector<Foreign> gone;  // subtrees of models that are not loaded that go with what holds them
};

struct ReadResult {
  Data data;
  std::vector<Warning> warnings;
  std::vector<Unsaid> unsaid;  // of the entries that were read, as far as the filter asks for them
  std::vector<Misreading> misread;
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

  // Replaces the native running configuration. Bare data, or inside <data>, <config> or <rpc-reply>. Subtrees of models
  // that are not loaded are carried along unread, which is told.
  std::vector<Warning> set_running(const Document& document);
  bool has_running() const;
  // The native running configuration as far as models are loaded; owned by the host, valid until it changes.
  const Data& running() const;
  // All of it, as a document that `set_running` takes. Subtrees of models that are not loaded can only be printed in
  // the format that they came in.
  std::string print_running(Format format) const;
  // Its subtrees of models that are not loaded, in the order of the document.
  std::vector<Foreign> foreign() const;

  // True for a document that holds an OpenConfig edit and no running configuration.
  bool is_edit(const Document& document) const;

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
