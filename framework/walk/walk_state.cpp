// The state of one walk and what services answer from it.
#include "framework/walk/walk_state.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "framework/datastore/running.h"
#include "framework/tree/entries.h"
#include "framework/tree/schema.h"
#include "framework/walk/environment.h"
#include "framework/walk/output_tree.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

// The only global: services carry no host, so the thread remembers whose walk it runs.
thread_local WalkState* current = nullptr;

constexpr char kInterfaceList[] = "/interfaces/interface";
constexpr char kSubinterfaceList[] = "/interfaces/interface/subinterfaces/subinterface";
constexpr char kOperInterfaceList[] = "/vlan/nodes/node/interfaces/interface";
constexpr char kOperTrunkList[] = "/vlan/nodes/node/trunks/trunk";

// The longest names that the look-ups of interface manager and system database carry.
constexpr std::size_t kLongestImcName = 62;
constexpr std::size_t kLongestSysdbName = 63;

const yfw_datatree* child_tagged(const yfw_datatree* parent, std::string_view tag) {
  for (uint32_t i = 0; i < parent->subtree_count; ++i) {
    if (parent->subtrees[i].tag != nullptr && tag == parent->subtrees[i].tag) return &parent->subtrees[i];
  }
  return nullptr;
}

// "/a1:interface-configurations/..." without its prefixes.
std::string without_prefixes(std::string_view path) {
  std::string plain;
  while (!path.empty()) {
    const std::size_t slash = path.find('/', 1);
    const std::string_view step = path.substr(1, slash == std::string_view::npos ? slash : slash - 1);
    plain.append(1, '/').append(step.substr(step.find(':') + 1));
    path = slash == std::string_view::npos ? std::string_view() : path.substr(slash);
  }
  return plain;
}

}  // namespace

std::string mangled(std::string_view name) {
  std::string text(name);
  std::replace(text.begin(), text.end(), '/', '_');
  return text;
}

WalkState* WalkState::running() {
  return current;
}

WalkState::WalkState(const Environment& environment, uint32_t kind)
    : environment_(environment), output_(*environment.paths), outer_(current) {
  request_.request_kind = kind;
  state_.request_kind = &request_.request_kind;
  ctx_.req_state = &state_;
  ctx_.debug_filter.words[0] = tracing() ? 1 : 0;
  ctx_.err_log = this;
  ctx_.trc_log = this;
  ctx_.trace_handle = this;
  ctx_.trace_on = tracing() ? 1 : 0;
  current = this;
}

WalkState::~WalkState() {
  current = outer_;
  // What mapping functions leave unreleased goes with the request.
  for (void* const memory : memory_) std::free(memory);
}

void WalkState::trace(TraceLine::Kind kind, int level, std::string text) const {
  if (tracing()) (*environment_.trace)({kind, level, std::move(text)});
}

void WalkState::enter_interface(std::string_view name, std::string_view index) {
  interface_name_ = name;
  subinterface_index_ = index;
  native_name_ = join_interface_name(name, index);
  state_.interface_name = name.empty() ? nullptr : interface_name_.c_str();
  state_.subinterface_index = index.empty() ? nullptr : subinterface_index_.c_str();
  const auto set = [this](const char* path, std::string_view key) {
    const PathCache::Steps* const steps = environment_.paths->resolve(path, nullptr);
    if (steps != nullptr) output_.set_current(steps->back(), key);
  };
  set(kNativeEntryPath, native_name_);
  set(kInterfaceList, name);
  set(kSubinterfaceList, index);
  if (request_.request_kind == kEdit) return;
  set("/vlan/nodes/node", OutputTree::kAny);
  set(kOperInterfaceList, native_name_);
  set(kOperTrunkList, name);
}

void WalkState::enter(const yfw_datatree* node) {
  if (trail_.size() <= depth_) trail_.resize(depth_ + 1);
  trail_[depth_++] = {node, node->subtrees, node->subtree_count};
  last_depth_ = depth_;
}

void WalkState::leave() {
  if (depth_ > 0) --depth_;
}

std::string WalkState::path_of_entered(std::size_t depth) const {
  std::string path;
  const char* ns = nullptr;
  for (std::size_t i = 0; i < depth; ++i) {
    const Entered& entered = trail_[i];
    const yfw_datatree& node = *entered.node;
    // An implicit walk enters the same node only once, but a sibling's node may have been entered before it.
    const bool other_module = node.ns != nullptr && (ns == nullptr || std::strcmp(ns, node.ns) != 0);
    const lys_module* const module =
        other_module ? ly_ctx_get_module_implemented_ns(environment_.models, node.ns) : nullptr;
    path += module == nullptr ? fmt::format("/{}", node.tag) : fmt::format("/{}:{}", module->name, node.tag);
    if (node.ns != nullptr) ns = node.ns;
    for (uint32_t k = 0; k < entered.subtree_count; ++k) {
      const yfw_datatree& child = entered.subtrees[k];
      if (child.is_key == 0 || child.value == nullptr) continue;
      const char quote = std::strchr(child.value, '\'') == nullptr ? '\'' : '"';
      path += fmt::format("[{}={}{}{}]", child.tag, quote, child.value, quote);
    }
  }
  return path;
}

bool WalkState::has_child(const Entered& entered, std::string_view tag) {
  for (uint32_t i = 0; i < entered.subtree_count; ++i) {
    if (entered.subtrees[i].tag != nullptr && tag == entered.subtrees[i].tag) return true;
  }
  return false;
}

std::string WalkState::hierarchy_path() const {
  return path_of_entered(depth_);
}

void WalkState::fail_here() {
  if (state_.implicit_walk == 1 || failed()) return;
  failed_path_ = hierarchy_path();
  failed_depth_ = depth_;
}

void WalkState::forget_texts() {
  release(state_.error_tag);
  release(state_.error_message);
  state_.error_tag = nullptr;
  state_.error_message = nullptr;
}

void WalkState::no_place_for(const yfw_datatree* source, const char* value) {
  if (source == nullptr || source->tag == nullptr || value == nullptr || !unplaced_element_.empty()) return;
  unplaced_element_ = source->tag;
  unplaced_value_ = value;
  for (uint32_t i = 0; i < source->subtree_count; ++i) {
    const yfw_datatree& child = source->subtrees[i];
    if (child.tag != nullptr && child.value != nullptr && unplaced_value_ == child.value) unplaced_element_ = child.tag;
  }
}

RpcError WalkState::refusal(cerrno result) const {
  RpcError error;
  error.path = failed() ? *failed_path_ : path_of_entered(last_depth_);
  error.bad_element = state_.error_tag != nullptr ? state_.error_tag : unplaced_element_;
  if (!error.bad_element.empty()) {
    // Leaves do not enter the hierarchy; the element at fault is named below the last node that did.
    const std::size_t depth = failed() ? failed_depth_ : last_depth_;
    if (depth > 0 && has_child(trail_[depth - 1], error.bad_element)) error.path += "/" + error.bad_element;
  }
  switch (result) {
    case CERR_UNSUPPORTED:
      error.tag = "operation-not-supported";
      error.message = fmt::format("'{}' is not supported: nothing native expresses it", error.bad_element);
      break;
    case CERR_UNKNOWN_AUGMENT:
      error.tag = "unknown-element";
      error.message = fmt::format("'{}' belongs to no known augmentation", error.bad_element);
      break;
    case CERR_BAD_TREE:
      error.tag = "malformed-message";
      error.message = "the request tree is malformed";
      break;
    case 0:
    case 22:
    case CERR_INVALID_VALUE:
      error.tag = "invalid-value";
      error.message = "the value is refused";
      break;
    default:
      if (!unplaced_element_.empty()) {
        error.tag = "invalid-value";
        error.message = fmt::format("'{}' has more values than there is native room for: none is left for {}",
                                    unplaced_element_, unplaced_value_);
        break;
      }
      error.tag = "operation-failed";
      error.message = cerr_strerror(result);
      break;
  }
  if (state_.error_message != nullptr) error.message = state_.error_message;
  return error;
}

void WalkState::set_native_entry(const yfw_datatree* entry) {
  native_lists_.clear();
  if (entry != nullptr) native_lists_.push_back({kNativeEntryPath, entry});
}

cerrno WalkState::enter_native_list(const char* path) {
  if (path == nullptr || depth_ == 0) return CERR_INVALID_ARGS;
  const yfw_datatree* const entry = trail_[depth_ - 1].node;
  std::string plain = without_prefixes(path);
  std::erase_if(native_lists_, [&plain](const NativeList& list) { return list.path.starts_with(plain); });
  if (plain == kOperInterfaceList || plain == kOperTrunkList) {
    const yfw_datatree* const key = child_tagged(entry, "interface");
    const std::string_view name = key == nullptr || key->value == nullptr ? std::string_view() : key->value;
    const InterfaceName split = split_interface_name(name);
    enter_interface(split.name, split.index);
    // Which OpenConfig entry is meant is for the list handler to say.
    for (const char* const list : {kInterfaceList, kSubinterfaceList}) {
      output_.set_current(environment_.paths->resolve(list, nullptr)->back(), {});
    }
  }
  native_lists_.push_back({std::move(plain), entry});
  return 0;
}

cerrno WalkState::node_info(const char* path, const char* name, yfw_node_info* info) {
  if (path == nullptr || name == nullptr || info == nullptr) return CERR_INVALID_ARGS;
  info->value = nullptr;
  const std::string_view wanted = path;
  const NativeList* list = nullptr;
  for (const NativeList& each : native_lists_) {
    if (wanted.starts_with(each.path) && (list == nullptr || each.path.size() > list->path.size())) list = &each;
  }
  const yfw_datatree* node = list == nullptr ? nullptr : list->entry;
  std::string_view rest = list == nullptr ? std::string_view() : wanted.substr(list->path.size());
  while (node != nullptr && !rest.empty()) {
    rest.remove_prefix(1);
    const std::string_view step = rest.substr(0, rest.find('/'));
    rest.remove_prefix(step.size());
    if (!step.empty()) node = child_tagged(node, step);
  }
  if (node != nullptr) node = child_tagged(node, name);
  if (node == nullptr || node->value == nullptr) {
    last_missing_ = name;
    return CERR_INVALID_ARGS;
  }
  info->value = node->value;
  return 0;
}

char* WalkState::duplicate(const char* text) {
  char* const copy = text == nullptr ? nullptr : strdup(text);
  if (copy != nullptr) memory_.insert(copy);
  return copy;
}

void WalkState::release(void* memory) {
  if (memory == nullptr) return;
  if (memory_.erase(memory) == 0) {
    misused_memory_ = true;
    return;
  }
  std::free(memory);
}

std::optional<bool> WalkState::is_l2_interface(std::string_view mangled_name) {
  const Running* const running = environment_.running;
  const lyd_node* entry = nullptr;
  const bool is_current = mangled(native_name_).substr(0, kLongestImcName) == mangled_name;
  if (running != nullptr && is_current) entry = running->entry(native_name_);
  if (running != nullptr && !is_current) {
    for (const lyd_node* const each : running->entries()) {
      if (mangled(entry_name(each)).substr(0, kLongestImcName) == mangled_name) entry = each;
    }
  }
  if (entry != nullptr) return is_l2(entry);
  if (environment_.layer == Layer::l2) return true;
  if (environment_.layer == Layer::l3) return false;
  if (is_current && state_.implicit_walk != 1 && told_.insert(native_name_).second) {
    taken_as_l3_.push_back(native_name_);
  }
  return std::nullopt;
}

const lyd_node* WalkState::sysdb_entry(std::string_view mangled_name) const {
  const Running* const running = environment_.running;
  if (running == nullptr || environment_.layers_only) return nullptr;
  if (mangled(interface_name_).substr(0, kLongestSysdbName) == mangled_name) return running->entry(interface_name_);
  for (const lyd_node* const each : running->entries()) {
    if (mangled(entry_name(each)).substr(0, kLongestSysdbName) == mangled_name) return each;
  }
  return nullptr;
}

}  // namespace yfw
