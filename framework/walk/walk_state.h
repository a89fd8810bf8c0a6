// One walk of one request: the records that mapping functions are handed, and what the services behind them know.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/walk/abi.h"
#include "framework/walk/environment.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/recent_texts.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"
#include "yfw/platform.h"
#include "yfw/yfw_map.h"

namespace yfw {

inline constexpr char kNativeEntryPath[] = "/interface-configurations/interface-configuration";

class WalkState {
 public:
  WalkState(const Environment& environment, uint32_t kind);
  ~WalkState();
  WalkState(const WalkState&) = delete;
  WalkState& operator=(const WalkState&) = delete;

  // That of the walk that runs on this thread; null outside of one.
  static WalkState* running();

  // Of several walks that are under way on a thread, this is the one that runs from now on.
  void take_turn();

  yfw_map_ctx* ctx() { return &ctx_; }
  yfw_map_req_state& state() { return state_; }
  yfw_map_request& request() { return request_; }
  uint32_t request_kind() const { return request_.request_kind; }
  OutputTree& output() { return output_; }
  const Environment& environment() const { return environment_; }

  // Sets what is being edited or read; an empty index is the interface itself, empty names are nothing in particular.
  void enter_interface(std::string_view name, std::string_view index);
  const std::string& native_name() const { return native_name_; }

  // The node hierarchy.
  void enter(const yfw_datatree* node);
  void leave();
  std::string hierarchy_path() const;

  // What yfw_oc_error_path records: the first failure outside an implicit walk.
  void fail_here();
  bool failed() const { return failed_path_.has_value(); }

  // A mapping function had no native path left for a value of `source` or of its children.
  void no_place_for(const yfw_datatree* source, const char* value);

  // The refusal that a walk with this result ends in.
  RpcError refusal(cerrno result) const;

  // Begins anew, as if nothing had been walked yet: what one walk after the other is made with.
  void restart();

  // Forgets failure and texts of an implicit walk, in which they mean nothing.
  void forget_texts();

  // The native entry being walked, for look-ups; null for none.
  void set_native_entry(const lyd_node* entry);
  cerrno node_info(const char* path, const char* name, yfw_node_info* info);
  const std::string& last_missing() const { return last_missing_; }
  void clear_missing() { last_missing_.clear(); }

  // The walk has entered an entry of a native list: look-ups below `path` mean this entry from now on.
  cerrno enter_native_list(const char* path);

  // The index of the native sub-interface being walked, which is the key of a list entry added for it.
  const std::string& subinterface_index() const { return subinterface_index_; }

  // Named memory.
  char* duplicate(const char* text);
  void release(void* memory);

  bool tracing() const { return environment_.trace != nullptr; }
  void trace(TraceLine::Kind kind, int level, std::string text) const;
  void note(std::string text) const { trace(TraceLine::Kind::note, 3, std::move(text)); }
  uint32_t next_trace_index() { return ++trace_index_; }

  // True for an L2 sub-interface; empty when the interface manager does not know the name.
  std::optional<bool> is_l2_interface(std::string_view mangled_name);
  const std::vector<std::string>& taken_as_l3() const { return taken_as_l3_; }

  // The running native entry of a system-database item's interface; null when there is none.
  const lyd_node* sysdb_entry(std::string_view mangled_name);

  std::vector<Warning>& warnings() { return warnings_; }
  bool misused_memory() const { return misused_memory_; }

 private:
  struct Entered {
    const yfw_datatree* node = nullptr;
    const yfw_datatree* subtrees = nullptr;
    uint32_t subtree_count = 0;
    // Once somebody has asked: the path up to here, and the namespace that goes on below.
    std::string path = {};
    const char* ns = nullptr;
  };
  const std::string& path_of_entered(std::size_t depth) const;
  static bool has_child(const Entered& entered, std::string_view tag);

  // The lists in which a walk is always at some entry; null where the models do not have them.
  struct Lists {
    const lysc_node* native = nullptr;
    const lysc_node* interface = nullptr;
    const lysc_node* subinterface = nullptr;
    const lysc_node* node = nullptr;
    const lysc_node* oper_interface = nullptr;
    const lysc_node* oper_trunk = nullptr;
  };
  const Lists& lists();

  // Running entries by their names as somebody cuts and writes them.
  using ByPlatformName = std::unordered_map<std::string, const lyd_node*>;

  // Either of the two is what look-ups below the path go through.
  struct NativeList {
    std::shared_ptr<const std::string> path;
    const yfw_datatree* record;
    const lyd_node* data;
  };
  // What a look-up of a leaf finds in an entry, by the names on the way to it; null when nothing.
  const char* look_up(const NativeList& list, std::string_view way, std::string_view name);

  Environment environment_;
  std::optional<Lists> lists_;
  yfw_map_ctx ctx_{};
  yfw_map_request request_{};
  yfw_map_req_state state_{};
  OutputTree output_;
  WalkState* outer_;
  std::string interface_name_;
  std::string subinterface_index_;
  std::string native_name_;
  mutable std::vector<Entered> trail_;
  std::size_t depth_ = 0;
  std::size_t last_depth_ = 0;
  std::optional<std::string> failed_path_;
  std::size_t failed_depth_ = 0;
  std::string unplaced_element_;
  std::string unplaced_value_;
  std::vector<NativeList> native_lists_;
  RecentTexts<std::shared_ptr<const std::string>> plain_paths_;
  std::deque<std::string> looked_up_;  // texts that stand nowhere else
  std::string last_missing_;
  std::unordered_set<void*> memory_;
  bool misused_memory_ = false;
  uint32_t trace_index_ = 0;
  std::vector<std::string> taken_as_l3_;
  std::unordered_set<std::string> told_;  // the same names
  std::optional<ByPlatformName> imc_names_;
  std::optional<ByPlatformName> sysdb_names_;
  std::vector<Warning> warnings_;
};

// "/" written as "_", as the interface manager and the system database name interfaces.
std::string mangled(std::string_view name);

}  // namespace yfw
