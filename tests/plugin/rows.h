// What each node of the mapped models must lead to, as the .txt files beside this header list it.
#pragma once

#include <string>
#include <vector>

#include "oc_vlan/handlers.h"
#include "recording/recorder.h"

namespace rows {

// One node: by which entry walker and path it is reached, and what it must call. Names are without the prefix.
struct Row {
  std::string entry;
  std::string path;  // tags joined by "/", the accepted element first
  std::string walker;
  std::string handler;
  std::string translation;  // "-" for a handler that does nothing, "default" for a default handler

  std::string tag() const { return path.substr(path.rfind('/') + 1); }
  std::string parent() const { return path.find('/') == std::string::npos ? "" : path.substr(0, path.rfind('/')); }
  bool is_leaf() const { return handler.starts_with("leaf_"); }
  bool is_container() const { return handler.starts_with("cont_"); }
  bool holds_state() const { return ("/" + path + "/").find("/state/") != std::string::npos; }
};

struct Family {
  std::string file;
  std::string prefix;
  std::string ns;  // short name
};

inline const Family kOpenConfig{"openconfig_rows.txt", "ymap_ov_oc_vlan_openconfigvlan_", "oc"};
inline const Family kNativeCfg{"native_cfg_rows.txt", "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_", "cfg"};

const std::vector<Row>& of(const Family& family);

const Row& at(const Family& family, const std::string& entry, const std::string& path);

// The rows directly below a path, in their order.
std::vector<Row> below(const Family& family, const std::string& entry, const std::string& path);

// "cfg:a { b { c=1 } }" for the path a/b/c.
std::string tree(const Family& family, const std::string& path, const std::string& value = "1");

// Calls the entry walker.
cerrno enter(const Family& family, const std::string& entry, recording::Recorder& recorder, recording::Tree& tree);

}  // namespace rows
