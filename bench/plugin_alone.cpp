// The plug-in alone: how long a walk takes, against a loop that makes the same service calls and nothing else.
//
//   plugin_alone                      the ratio of both, for each case
//   plugin_alone walk|calls CASE N    N repetitions of one of the two, for tools that count instructions
//
// The services here only answer. One walk of each case is written down, every call with its arguments; the loop makes
// these calls again, through the same dynamic symbols, so that what a walk takes beyond the loop is the plug-in's own.
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include "oc_vlan/handlers.h"
#include "yfw/platform.h"
#include "yfw/yfw_map.h"

namespace {

using Argument = std::uintptr_t;

struct ServiceCall {
  void* function;
  bool has_nine;  // arguments; all other services have six at most
  Argument arguments[9];
};

struct Recording {
  std::vector<ServiceCall> calls;
  std::unordered_set<std::string> texts;
  std::deque<imc_find_request> requests;
};
Recording* recording = nullptr;

// Stand-ins for what lives on the stack of the plug-in.
yfw_node_slot spare_slot;
yfw_node_info spare_info;
imc_find_reply spare_find;
imc_flags_reply spare_flags;
char spare_text[256];

// What the services answer with.
yfw_datatree added;
yfw_map_request request;
yfw_map_req_state state;
yfw_map_ctx ctx;
std::span<const char* const[2]> native_leaves;

template <typename T>
Argument kept(T value) {
  if constexpr (std::is_same_v<T, const char*>) {
    return value == nullptr ? 0 : reinterpret_cast<Argument>(recording->texts.insert(value).first->c_str());
  } else if constexpr (std::is_same_v<T, yfw_node_slot*>) {
    return reinterpret_cast<Argument>(value == nullptr || value == &state.list_slot ? value : &spare_slot);
  } else if constexpr (std::is_same_v<T, yfw_node_info*>) {
    return reinterpret_cast<Argument>(&spare_info);
  } else if constexpr (std::is_same_v<T, const imc_find_request*>) {
    return reinterpret_cast<Argument>(&recording->requests.emplace_back(*value));
  } else if constexpr (std::is_same_v<T, imc_find_reply*>) {
    return reinterpret_cast<Argument>(&spare_find);
  } else if constexpr (std::is_same_v<T, const uint32_t*>) {
    return reinterpret_cast<Argument>(&spare_find.handle);
  } else if constexpr (std::is_same_v<T, imc_flags_reply*>) {
    return reinterpret_cast<Argument>(&spare_flags);
  } else if constexpr (std::is_same_v<T, char*>) {
    return reinterpret_cast<Argument>(spare_text);
  } else if constexpr (std::is_pointer_v<T>) {
    return reinterpret_cast<Argument>(value);
  } else {
    return static_cast<Argument>(value);
  }
}

template <typename... Arguments>
[[gnu::cold, gnu::noinline]] void write_down(const char* name, Arguments... arguments) {
  void* const function = ::dlsym(RTLD_DEFAULT, name);
  if (function == nullptr) std::abort();
  recording->calls.push_back({function, sizeof...(arguments) == 9, {kept(arguments)...}});
}

void make(std::span<const ServiceCall> calls) {
  using A = Argument;
  using Short = A (*)(A, A, A, A, A, A);
  using Long = A (*)(A, A, A, A, A, A, A, A, A);
  for (const ServiceCall& call : calls) {
    const Argument* const a = call.arguments;
    if (call.has_nine) {
      reinterpret_cast<Long>(call.function)(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8]);
    } else {
      reinterpret_cast<Short>(call.function)(a[0], a[1], a[2], a[3], a[4], a[5]);
    }
  }
}

bool is_any(uint32_t operation, uint32_t one, uint32_t other) {
  return operation == one || operation == other;
}

}  // namespace

#define WRITE_DOWN(...)                  \
  if (recording != nullptr) [[unlikely]] \
  write_down(__func__ __VA_OPT__(, ) __VA_ARGS__)

int yfw_map_is_request_add(yfw_map_ctx* context, const yfw_datatree* node, yfw_datatree* output) {
  WRITE_DOWN(context, node, output);
  const bool reads = is_any(*context->req_state->request_kind, YFW_REQUEST_READ, YFW_REQUEST_READ_STATE);
  return reads ? 0 : !is_any(node->operation, YFW_OPERATION_DELETE, YFW_OPERATION_REMOVE);
}

int yfw_map_is_request_delete(const yfw_datatree* node) {
  WRITE_DOWN(node);
  return is_any(node->operation, YFW_OPERATION_DELETE, YFW_OPERATION_REMOVE);
}

int yfw_map_do_these_match(const char* left, const char* right) {
  WRITE_DOWN(left, right);
  return left != nullptr && right != nullptr && std::strcmp(left, right) == 0;
}

cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx* context, yfw_datatree* tree, const char* path, const char* ns,
                                         const char* value, const yfw_datatree* source, yfw_node_slot* slot,
                                         uint32_t list_flag, uint32_t flags) {
  WRITE_DOWN(context, tree, path, ns, value, source, slot, list_flag, flags);
  if (slot != nullptr) slot->node = &added;
  return path == nullptr ? CERR_INVALID_ARGS : 0;
}

cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx* context, const yfw_datatree* node, uint32_t level) {
  WRITE_DOWN(context, node, level);
  return 0;
}

cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx* context, const yfw_datatree* node) {
  WRITE_DOWN(context, node);
  return 0;
}

cerrno yfw_map_get_node_info(yfw_map_ctx* context, const char* path, const char* name, yfw_node_info* info) {
  WRITE_DOWN(context, path, name, info);
  for (const auto& [leaf, value] : native_leaves) {
    if (std::strcmp(leaf, name) != 0) continue;
    info->value = value;
    return 0;
  }
  return CERR_INVALID_ARGS;
}

cerrno yfw_map_get_subtrees(yfw_map_ctx*, const yfw_datatree* node, yfw_datatree** children, uint32_t* count) {
  *children = node->subtrees;
  *count = node->subtree_count;
  return 0;
}

cerrno yfw_map_search_list(yfw_map_ctx* context, yfw_datatree* tree, yfw_node_slot* slot, const char* list_path,
                           const char* key_value, const char* key_name, const char* ns) {
  if (recording != nullptr) [[unlikely]] {
    write_down(__func__, context, tree, slot, list_path, key_value, key_name, ns, 0, 0);
  }
  return CERR_INVALID_ARGS;
}

cerrno yfw_map_search_or_add_list(yfw_map_ctx* context, yfw_datatree* tree, yfw_node_slot* slot, const char* list_path,
                                  const char* key_value, const char* key_name, const char* ns) {
  if (recording != nullptr) [[unlikely]] {
    write_down(__func__, context, tree, slot, list_path, key_value, key_name, ns, 0, 0);
  }
  slot->node = &added;
  return 0;
}

cerrno yfw_map_update_current_list_node(yfw_map_ctx* context, const char* list_path) {
  WRITE_DOWN(context, list_path);
  return 0;
}

int yfw_map_validate_data_ns(yfw_map_ctx* context, const yfw_datatree* node, const char* ns, uint32_t zero) {
  WRITE_DOWN(context, node, ns, zero);
  return node->value_ns == nullptr ? 0 : std::strcmp(node->value_ns, ns);
}

cerrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx* context, const char* path) {
  WRITE_DOWN(context, path);
  return 0;
}

void yfw_map_free_trim_path_list_ctx(yfw_map_ctx* context) {
  WRITE_DOWN(context);
}

cerrno yfw_add_to_output_list_ctx(yfw_map_ctx* context, const yfw_datatree* node, yfw_datatree* output) {
  WRITE_DOWN(context, node, output);
  ++context->req_state->output_depth;
  return 0;
}

cerrno yfw_remove_from_output_list_ctx(yfw_map_ctx* context, const yfw_datatree* node, yfw_datatree* output) {
  WRITE_DOWN(context, node, output);
  --context->req_state->output_depth;
  return 0;
}

void yfw_oc_error_path(yfw_map_ctx* context) {
  WRITE_DOWN(context);
}

int yfw_debug_should_log(const yfw_debug_filter* filter, int level) {
  WRITE_DOWN(filter, level);
  return (filter->words[0] >> level & 1) != 0;
}

uint32_t ret_nc_yfw_trace_index_incr(void) {
  return 0;
}

char* yfw_strdup(const char* text, const char* owner) {
  WRITE_DOWN(text, owner);
  return spare_text;
}

int yfw_strcpy_s(const char*, char*, size_t, const char*) {
  return 0;
}

int yfw_strncpy_s(const char* caller, char* destination, size_t size, const char* source, size_t count) {
  WRITE_DOWN(caller, destination, size, source, count);
  const std::size_t length = std::min({std::strlen(source), count, size - 1});
  std::memcpy(destination, source, length);
  destination[length] = '\0';
  return 0;
}

const char* cerr_strerror(cerrno) {
  return "";
}

cerrno ymap_ov_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*) {
  return 0;
}

void* yfw_ocifmgr_im_conn = nullptr;

void kos_named_free(void* memory) {
  WRITE_DOWN(memory);
}

void _kos_dt_log_filter_adv(void*, int, int, int, int, int, uint32_t*, const char*, ...) {}

void _lstrace(void*, uint64_t, const char*) {}

cerrno imc_interface_find(void* conn, uint32_t count, const imc_find_request* requests, imc_find_reply* replies) {
  WRITE_DOWN(conn, count, requests, replies);
  *replies = {1, 0};
  return 0;
}

cerrno imc_interface_get_flags(void* conn, uint32_t count, const uint32_t* handles, imc_flags_reply* replies) {
  WRITE_DOWN(conn, count, handles, replies);
  *replies = {IMC_FLAG_L2_TRANSPORT, 0};
  return 0;
}

int _sysdb_bind(uint64_t*, const char*, uint32_t) {
  return 0;
}

cerrno sysdb_item_get(uint64_t, const char*, void** value, uint32_t*, uint32_t*, uint32_t) {
  *value = nullptr;
  return 0;
}

cerrno tuple_unpack_mask(const void*, uint32_t, const char*, ...) {
  return 0;
}

namespace {

// A node as it is written down here. What is below a replace is merged.
struct Sketch {
  const char* tag;
  const char* value = nullptr;
  std::vector<Sketch> children = {};
  uint32_t operation = YFW_OPERATION_MERGE;
};

class Tree {
 public:
  Tree(const Sketch& sketch, const char* ns) : root_(node(sketch, ns)) {}
  yfw_datatree* root() { return &root_; }

 private:
  yfw_datatree node(const Sketch& sketch, const char* ns) {
    yfw_datatree made{};
    made.tag = sketch.tag;
    if (sketch.value != nullptr) made.value = texts_.emplace_back(sketch.value).data();
    made.ns = ns;
    made.operation = sketch.operation;
    if (sketch.children.empty()) return made;
    std::vector<yfw_datatree> children;
    for (const Sketch& child : sketch.children) children.push_back(node(child, ns));
    made.subtrees = arrays_.emplace_back(std::move(children)).data();
    made.subtree_count = static_cast<uint32_t>(sketch.children.size());
    made.node_flags = YFW_NODE_HAS_SUBTREES;
    return made;
  }

  std::deque<std::string> texts_;
  std::deque<std::vector<yfw_datatree>> arrays_;
  yfw_datatree root_;
};

Sketch sub_interface_vlan(uint32_t operation) {
  return {"vlan",
          nullptr,
          {{"match", nullptr, {{"single-tagged", nullptr, {{"config", nullptr, {{"vlan-id", "100"}}}}}}},
           {"ingress-mapping",
            nullptr,
            {{"config", nullptr, {{"vlan-stack-action", "SWAP"}, {"vlan-id", "200"}, {"tpid", "TPID_0X8100"}}}}}},
          operation};
}

Sketch ethernet_service() {
  return {"ethernet-service",
          nullptr,
          {{"encapsulation",
            nullptr,
            {{"outer-tag-type", "match-dot1ad"},
             {"inner-tag-type", "match-dot1q"},
             {"outer-range1-low", "100"},
             {"inner-range1-low", "200"},
             {"inner-range1-high", "300"}}},
           {"rewrite",
            nullptr,
            {{"rewrite-type", "translate1to1"}, {"outer-tag-type", "match-dot1q"}, {"outer-tag-value", "200"}}}}};
}

constexpr const char* kNativeLeaves[][2] = {{"outer-tag-type", "match-dot1ad"},
                                            {"inner-tag-type", "match-dot1q"},
                                            {"inner-range1-high", "300"},
                                            {"rewrite-type", "translate1to1"}};

Sketch range(const char* low, const char* high) {
  return {"vlan-range", nullptr, {{"vlan-id-low", low}, {"vlan-id-high", high}}};
}

Sketch oper_vlan() {
  const Sketch tags{"tags-to-match", nullptr, {{"ethertype", "dot1q"}, {"number-of-ranges", "1"}, range("100", "100")}};
  const Sketch pushed{"pushe", nullptr, {{"vlan-id", "200"}, {"ethertype", "dot1ad"}}};
  const Sketch interface {
    "interface", nullptr, {
      {"interface", "Ethernet0/0/1.100"}, {
        "encapsulation-details", nullptr, {
          {"vlan-encapsulation", "service-instance"}, {
            "service-instance-details", nullptr, {
              tags, {"tags-popped", "1"}, pushed
            }
          }
        }
      }
    }
  };
  const Sketch trunk_ranges{
      "trunk-vlan-ranges",
      nullptr,
      {{"tags-to-match", nullptr, {{"ethertype", "dot1q"}, range("10", "20"), range("30", "30")}}}};
  const Sketch trunk{"trunk",
                     nullptr,
                     {{"interface", "Bundle-Ether5"},
                      {"layer3-sub-interfaces", nullptr, {{"native-vlan", "1"}}},
                      {"vlan-switched", nullptr, {{"mode", "trunk-port"}, trunk_ranges}}}};
  const Sketch node{
      "node", nullptr, {{"node-id", "0/0/CPU0"}, {"trunks", nullptr, {trunk}}, {"interfaces", nullptr, {interface}}}};
  return {"vlan", nullptr, {{"nodes", nullptr, {node}}}};
}

// The key of an interface and that of a trunk have the same name.
constexpr const char* kOperLeaves[][2] = {{"interface", "Ethernet0/0/1.100"}};

struct Case {
  const char* name;
  yfw_map_walker_fn walker;
  uint32_t request_kind;
  const char* ns;
  Sketch sketch;
  std::span<const char* const[2]> native_leaves;
};

std::vector<Case> cases() {
  return {{"merge",
           ymap_ov_oc_vlan_openconfigvlan_augment_lvla_subinterface,
           YFW_REQUEST_EDIT,
           YFW_OPENCONFIG_VLAN_NS,
           sub_interface_vlan(YFW_OPERATION_MERGE),
           {}},
          {"replace",
           ymap_ov_oc_vlan_openconfigvlan_augment_lvla_subinterface,
           YFW_REQUEST_EDIT,
           YFW_OPENCONFIG_VLAN_NS,
           sub_interface_vlan(YFW_OPERATION_REPLACE),
           {}},
          {"native", ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_lvlc_interface_configuration, YFW_REQUEST_READ,
           YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS, ethernet_service(), kNativeLeaves},
          {"operational", ymap_vo_oc_vlan_vexnetosl2ethinfraoper_lvla_vlan, YFW_REQUEST_READ_STATE,
           YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS, oper_vlan(), kOperLeaves}};
}

// One case, ready to be walked, with the calls that a walk of it makes.
class Subject {
 public:
  explicit Subject(const Case& each) : case_(each), tree_(each.sketch, each.ns) {
    get_ready();
    recording = &recording_;
    walk(1);
    recording = nullptr;
  }

  void walk(long repetitions) {
    get_ready();
    for (; repetitions > 0; --repetitions) {
      if (case_.walker(&ctx, tree_.root(), &output_) == 0) continue;
      std::fprintf(stderr, "plugin_alone: the walk of %s failed\n", case_.name);
      std::exit(1);
    }
  }

  void call(long repetitions) {
    get_ready();
    for (; repetitions > 0; --repetitions) make(recording_.calls);
  }

  std::size_t calls() const { return recording_.calls.size(); }

 private:
  void get_ready() {
    request = {};
    request.request_kind = case_.request_kind;
    state = {};
    state.request_kind = &request.request_kind;
    state.interface_name = "Ethernet0/0/1";
    state.subinterface_index = "100";
    ctx = {};
    ctx.req_state = &state;
    native_leaves = case_.native_leaves;
  }

  Case case_;
  Tree tree_;
  yfw_datatree output_{};
  Recording recording_;
};

using Clock = std::chrono::steady_clock;

template <typename Work>
double nanoseconds(Work work, long repetitions) {
  const Clock::time_point start = Clock::now();
  work(repetitions);
  return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / static_cast<double>(repetitions);
}

double median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

void compare(const Case& each) {
  constexpr int kRounds = 201;
  constexpr long kRepetitions = 500;
  Subject subject(each);
  std::vector<double> walks;
  std::vector<double> loops;
  for (int round = 0; round < kRounds; ++round) {
    walks.push_back(nanoseconds([&subject](long n) { subject.walk(n); }, kRepetitions));
    loops.push_back(nanoseconds([&subject](long n) { subject.call(n); }, kRepetitions));
  }
  std::printf("%-12s %4zu calls  walk %7.0f ns  calls alone %7.0f ns  ratio %.2f\n", each.name, subject.calls(),
              median(walks), median(loops), median(walks) / median(loops));
}

int usage() {
  std::fputs("usage: plugin_alone [walk|calls merge|replace|native|operational REPETITIONS]\n", stderr);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Case> all = cases();
  if (argc == 1) {
    for (const Case& each : all) compare(each);
    return 0;
  }
  if (argc != 4) return usage();
  const std::string_view what = argv[1];
  const auto found =
      std::find_if(all.begin(), all.end(), [argv](const Case& each) { return std::strcmp(each.name, argv[2]) == 0; });
  const long repetitions = std::strtol(argv[3], nullptr, 10);
  if (found == all.end() || repetitions <= 0 || (what != "walk" && what != "calls")) return usage();
  Subject subject(*found);
  what == "walk" ? subject.walk(repetitions) : subject.call(repetitions);
  return 0;
}
