// The state of one walk and what services answer from it.
#include "framework/walk/walk_state.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "framework/datastore/running.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/trunk_text.h"
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
constexpr char kOperNodeList[] = "/vlan/nodes/node";
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

void WalkState::take_turn() {
  current = this;
}

void WalkState::restart() {
  take_turn();
  for (void* const memory : memory_) std::free(memory);
  memory_.clear();
  state_ = {};
  state_.request_kind = &request_.request_kind;
  output_.clear();
  interface_name_.clear();
  subinterface_index_.clear();
  native_name_.clear();
  depth_ = last_depth_ = failed_depth_ = 0;
  failed_path_.reset();
  unplaced_element_.clear();
  unplaced_value_.clear();
  native_lists_.clear();
  looked_up_.clear();
  last_missing_.clear();
  misused_memory_ = false;
  trace_index_ = 0;
  taken_as_l3_.clear();
  told_.clear();
  warnings_.clear();
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
  const Lists& known = lists();
  const auto set = [this](const lysc_node* list, std::string_view key) {
    if (list != nullptr) output_.set_current(list, key);
  };
  set(known.native, native_name_);
  set(known.interface, name);
  set(known.subinterface, index);
  if (request_.request_kind == kEdit) return;
  set(known.node, OutputTree::kAny);
  set(known.oper_interface, native_name_);
  set(known.oper_trunk, name);
}

const WalkState::Lists& WalkState::lists() {
  if (lists_.has_value()) return *lists_;
  const auto find = [this](const char* path) {
    const PathCache::Steps* const steps = environment_.paths->resolve(path, nullptr);
    return steps == nullptr ? nullptr : steps->back();
  };
  return lists_.emplace(Lists{find(kNativeEntryPath), find(kInterfaceList), find(kSubinterfaceList),
                              find(kOperNodeList), find(kOperInterfaceList), find(kOperTrunkList)});
}

void WalkState::enter(const yfw_datatree* node) {
  if (trail_.size() <= depth_) trail_.resize(depth_ + 1);
  Entered& entered = trail_[depth_++];
  entered.node = node;
  entered.subtrees = node->subtrees;
  entered.subtree_count = node->subtree_count;
  entered.path.clear();
  last_depth_ = depth_;
}

void WalkState::leave() {
  if (depth_ > 0) --depth_;
}

// Kept for those below: an entry among many has all of them beside it in the node above, which is looked at once.
const std::string& WalkState::path_of_entered(std::size_t depth) const {
  static const std::string top;
  if (depth == 0) return top;
  Entered& entered = trail_[depth - 1];
  if (!entered.path.empty()) return entered.path;
  const yfw_datatree& node = *entered.node;
  std::string path = path_of_entered(depth - 1);
  entered.ns = depth == 1 ? nullptr : trail_[depth - 2].ns;
  // An implicit walk enters the same node only once, but a sibling's node may have been entered before it.
  const bool other_module = node.ns != nullptr && (entered.ns == nullptr || std::strcmp(entered.ns, node.ns) != 0);
  const lys_module* const module =
      other_module ? ly_ctx_get_module_implemented_ns(environment_.models, node.ns) : nullptr;
  path += module == nullptr ? fmt::format("/{}", node.tag) : fmt::format("/{}:{}", module->name, node.tag);
  if (node.ns != nullptr) entered.ns = node.ns;
  for (uint32_t k = 0; k < entered.subtree_count; ++k) {
    const yfw_datatree& child = entered.subtrees[k];
    if (child.is_key == 0 || child.value == nullptr) continue;
    path += predicate(child.tag, child.value);
  }
  entered.path = std::move(path);
  return entered.path;
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

void WalkState::set_native_entry(const lyd_node* entry) {
  native_lists_.clear();
  looked_up_.clear();
  static const auto path = std::make_shared<const std::string>(kNativeEntryPath);
  if (entry != nullptr) native_lists_.push_back({path, nullptr, entry});
}

cerrno WalkState::enter_native_list(const char* path) {
  if (path == nullptr || depth_ == 0) return CERR_INVALID_ARGS;
  const yfw_datatree* const entry = trail_[depth_ - 1].node;
  const std::shared_ptr<const std::string> plain =
      plain_paths_.of(path, nullptr, [path] { return std::make_shared<const std::string>(without_prefixes(path)); });
  std::erase_if(native_lists_, [&plain](const NativeList& list) { return list.path->starts_with(*plain); });
  if (*plain == kOperInterfaceList || *plain == kOperTrunkList) {
    const yfw_datatree* const key = child_tagged(entry, "interface");
    const std::string_view name = key == nullptr || key->value == nullptr ? std::string_view() : key->value;
    const InterfaceName split = split_interface_name(name);
    enter_interface(split.name, split.index);
    // Which OpenConfig entry is meant is for the list handler to say.
    output_.set_current(lists().interface, {});
    output_.set_current(lists().subinterface, {});
  }
  native_lists_.push_back({plain, entry, nullptr});
  return 0;
}

const char* WalkState::look_up(const NativeList& list, std::string_view way, std::string_view name) {
  const yfw_datatree* record = list.record;
  const lyd_node* data = list.data;
  const auto step_down = [&](std::string_view step) {
    if (record != nullptr) record = child_tagged(record, step);
    if (data != nullptr) data = child_named(data, step);
  };
  while (!way.empty()) {
    way.remove_prefix(1);
    const std::string_view step = way.substr(0, way.find('/'));
    way.remove_prefix(step.size());
    if (!step.empty()) step_down(step);
  }
  step_down(name);
  if (record != nullptr) return record->value;
  if (data == nullptr || !is_term(data->schema)) return nullptr;
  const lyd_value& value = reinterpret_cast<const lyd_node_term*>(data)->value;
  if (value.realtype->basetype == LY_TYPE_EMPTY) return nullptr;
  if (value.realtype->basetype == LY_TYPE_IDENT) return value.ident->name;
  const char* const stored = lyd_get_value(data);
  if (value.realtype->basetype != LY_TYPE_STRING) return stored;
  std::string text = canonical_text(data);
  return text == stored ? stored : looked_up_.emplace_back(std::move(text)).c_str();
}

cerrno WalkState::node_info(const char* path, const char* name, yfw_node_info* info) {
  if (path == nullptr || name == nullptr || info == nullptr) return CERR_INVALID_ARGS;
  const std::string_view wanted = path;
  const NativeList* list = nullptr;
  for (const NativeList& each : native_lists_) {
    const bool is_longer = list == nullptr || each.path->size() > list->path->size();
    if (is_longer && wanted.starts_with(*each.path)) list = &each;
  }
  info->value = list == nullptr ? nullptr : look_up(*list, wanted.substr(list->path->size()), name);
  if (info->value != nullptr) return 0;
  last_missing_ = name;
  return CERR_INVALID_ARGS;
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

namespace {

bool is_mangled(std::string_view name, std::size_t longest, std::string_view mangled_name) {
  name = name.substr(0, longest);
  return std::equal(name.begin(), name.end(), mangled_name.begin(), mangled_name.end(),
                    [](char plain, char other) { return (plain == '/' ? '_' : plain) == other; });
}

}  // namespace

// Of entries with one platform name the interface manager tells of the last.
std::optional<bool> WalkState::is_l2_interface(std::string_view mangled_name) {
  const Running* const running = environment_.running;
  const lyd_node* entry = nullptr;
  const bool is_current = is_mangled(native_name_, kLongestImcName, mangled_name);
  if (running != nullptr && is_current) entry = running->entry(native_name_);
  if (running != nullptr && !is_current) {
    if (!imc_names_.has_value()) {
      imc_names_.emplace();
      for (const lyd_node* const each : running->entries()) {
        imc_names_->insert_or_assign(mangled(entry_name(each)).substr(0, kLongestImcName), each);
      }
    }
    const auto found = imc_names_->find(std::string(mangled_name));
    if (found != imc_names_->end()) entry = found->second;
  }
  if (entry != nullptr) return is_l2(entry);
  if (environment_.layer == Layer::l2) return true;
  if (environment_.layer == Layer::l3) return false;
  if (is_current && state_.implicit_walk != 1 && told_.insert(native_name_).second) {
    taken_as_l3_.push_back(native_name_);
  }
  return std::nullopt;
}

// Of entries with one platform name the system database tells of the first.
const lyd_node* WalkState::sysdb_entry(std::string_view mangled_name) {
  const Running* const running = environment_.running;
  if (running == nullptr || environment_.layers_only) return nullptr;
  if (is_mangled(interface_name_, kLongestSysdbName, mangled_name)) return running->entry(interface_name_);
  if (!sysdb_names_.has_value()) {
    sysdb_names_.emplace();
    for (const lyd_node* const each : running->entries()) {
      sysdb_names_->try_emplace(mangled(entry_name(each)).substr(0, kLongestSysdbName), each);
    }
  }
  const auto found = sysdb_names_->find(std::string(mangled_name));
  return found == sysdb_names_->end() ? nullptr : found->second;
}

}  // namespace yfw
