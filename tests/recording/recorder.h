// A framework that writes down what the plug-in asks of it, and answers as the test says.
//
// Every service of the framework and of the platform is defined here; the real framework is not involved. A test makes
// one Recorder, calls the function under test and compares what was written down:
//
//   Recorder framework;                                   // an edit; Recorder framework(kRead) or (kReadState)
//   framework.sub_interface("Ethernet0/0/1", "100");
//   framework.make_l2();
//   Tree leaf("vlan-id=100");
//   EXPECT_EQ(oc2_vex_singletag_cfg_vlanid(framework.ctx(), leaf.root(), framework.output()), 0u);
//   EXPECT_EQ(framework.calls(), lines("add_path tree=output path=... ns=cfg value=match-dot1q ...", "add_path ..."));
//
// Lines are texts, so that GoogleTest shows both documents and their difference. A text is shown as it is, `-` when it
// is null, in quotes when it is empty or holds a blank; namespaces by their short names (tree.h); a node by its tag, by
// the path under which it was added or found, or as `output`.
//
//   add_path tree= path= ns= value= source= slot= list= flags=      slot: -, list_slot (of the request state), yes
//   search_list tree= slot= path= value= key= ns=                   search_or_add_list likewise
//   add_to_node_hierarchy node= level=                              remove_from_node_hierarchy node=
//   get_node_info path= name=                                       get_subtrees node=
//   update_current_list_node path=                                  validate_data_ns node= ns= zero=
//   copy_trim_path path=                                            free_trim_path
//   add_to_output_list node= tree=                                  remove_from_output_list node= tree=
//   error_path                                                      strcpy caller= size= source=
//   strdup text= owner=                                             strncpy caller= size= source= count=
//   free text=                                                      access path= mode=
//   imc_find name=                                                  imc_flags handle=
//   sysdb_bind path= flags=                                         sysdb_get connid= path= flags=
//   tuple_unpack format=                                            interfaces_walker node=
// and, in all_calls() only: is_request_add node=, is_request_delete node=, do_these_match left= right=,
// should_log level=, log ..., trace ...
//
// When it goes, a Recorder fails the test for owned texts that nobody holds or releases, for double releases and for
// messages that differ between the debug log and the trace buffer while both are on. A call with another context fails
// the test, too, and so does a comparison with a null text.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "recording/allocations.h"
#include "recording/tree.h"
#include "yfw/platform.h"
#include "yfw/yfw_map.h"

namespace recording {

inline constexpr uint32_t kRead = 0;
inline constexpr uint32_t kEdit = 1;
inline constexpr uint32_t kReadState = 10;

// What get_node_info and search_list answer for what nobody told of.
inline constexpr cerrno kNotThere = 0xaaf20100;

// Joins lines into a document; an empty one for no lines.
template <typename... Line>
std::string lines(const Line&... line) {
  std::string document;
  ((document += line, document += '\n'), ...);
  return document;
}

// One line of the debug log or of the trace buffer as it arrived.
struct MessageRecord {
  const void* handle = nullptr;
  bool zeros = true;               // the five ints of a log line are 0
  const uint32_t* site = nullptr;  // the call site's word
  uint32_t site_word = 0;          // and what it held
  uint64_t flags = 0;              // of a trace line
  std::string text;
};

class Recorder {
 public:
  explicit Recorder(uint32_t request_kind = kEdit);
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  // --- What a function under test is given ---

  yfw_map_ctx* ctx() { return &ctx_; }
  yfw_datatree* output() { return &output_; }
  yfw_map_request request{};
  yfw_map_req_state state{};

  // --- Answers ---

  // Makes a service (by its name above) return `result`, always or only on its n-th call, counted from 1. A service
  // that fails does nothing else.
  void answer(std::string_view service, uint32_t result, int nth = 0);

  // The value that get_node_info finds; a null value is found as null.
  void node_info(std::string_view path, std::string_view name, const char* value);

  // The interface that the request state names; either may be null.
  void sub_interface(const char* name, const char* index);

  // What the interface manager says; it knows no interface until told.
  void make_l2();
  void make_l3();
  void find_status(cerrno status) { find_status_ = status; }    // of the one reply to imc_find
  void flags_status(cerrno status) { flags_status_ = status; }  // of the one reply to imc_flags
  void interface_flags(uint32_t flags);

  // The item that the system database holds: the three numbers that unpack from it, or no data at all.
  void sysdb_item(int32_t first, int32_t second = 0, int32_t third = 0);
  void sysdb_item_without_data();

  // An entry that search_list finds.
  void list_entry(std::string_view path, std::string_view key_value);

  // Adds with a slot succeed without leaving a node in it.
  void leave_slots_empty() { fills_slots_ = false; }

  // Called with the source of every add, before it is answered: sees what the source is at that moment.
  void on_add(std::function<void(const yfw_datatree* source)> watch) { watches_add_ = std::move(watch); }

  // strncpy succeeds without an end behind the text: the rest of the destination is full of '#'.
  void leave_copies_open() { ends_copies_ = false; }

  // add_to_output_list leaves `output_depth` as it is.
  void keep_output_depth() { deepens_output_ = false; }

  // Which levels the debug log takes, and whether the trace buffer is active. All are on at first.
  void debug_log(bool errors, bool traces);
  void trace_buffer(bool on);

  // Owned texts that the function under test leaves to the framework on purpose.
  void expect_unreleased(int count) { expected_unreleased_ = count; }

  // --- What happened ---

  std::string calls() const;      // without messages, text comparisons and questions about operations
  std::string all_calls() const;  // everything, in order

  // Messages as "ERR text" / "TRC text" (debug log) and "ERR function: text" / "TRC function: text" (trace buffer). A
  // line of any other form is shown as it arrived.
  std::string log() const;
  std::string trace() const;
  const std::vector<MessageRecord>& log_records() const { return log_; }
  const std::vector<MessageRecord>& trace_records() const { return trace_; }

  // The error lines of log() alone.
  std::string errors() const;

  // The node that the n-th add with a slot made (counted from 0).
  yfw_datatree& added(std::size_t n = 0) { return *slot_nodes_.at(n); }

  // Owned texts that are alive, those in the request state included.
  std::size_t owned_texts() const { return owned_.size(); }

  // Puts an owned text in place, as an earlier call would have left it.
  void own(char*& place, const char* text);

  // Forgets what was written down.
  void clear();

 private:
  friend struct Services;

  struct Call {
    std::string line;
    bool minor;
  };

  uint32_t write(std::string_view service, const std::string& arguments, uint32_t usual, bool minor = false);
  std::string node_name(const yfw_datatree* node) const;
  std::string slot_name(const yfw_node_slot* slot) const;
  yfw_datatree* make_node(std::string label, const char* value);
  void check_context(const yfw_map_ctx* ctx);
  void check_memory();
  void check_channels() const;

  yfw_map_ctx ctx_{};
  yfw_datatree output_{};
  std::vector<Call> calls_;
  std::vector<MessageRecord> log_;
  std::vector<MessageRecord> trace_;
  uint32_t trace_index_ = 0;
  bool logs_[4] = {true, true, true, true};
  bool channels_comparable_ = true;

  std::map<std::string, int, std::less<>> counts_;
  std::map<std::pair<std::string, int>, uint32_t> answers_;
  std::map<std::pair<std::string, std::string>, const char*> node_info_;
  std::map<std::string, yfw_datatree*, std::less<>> list_entries_;
  std::map<const yfw_datatree*, std::string> labels_;
  std::deque<yfw_datatree> nodes_;
  std::deque<std::string> texts_;
  std::vector<yfw_datatree*> slot_nodes_;
  std::map<const void*, std::string> owned_;

  std::function<void(const yfw_datatree*)> watches_add_;
  bool fills_slots_ = true;
  bool ends_copies_ = true;
  bool deepens_output_ = true;
  int expected_unreleased_ = 0;
  cerrno find_status_ = 1;
  cerrno flags_status_ = 0;
  uint32_t flags_ = 0;
  bool has_sysdb_item_ = false;
  bool sysdb_data_ = true;
  int32_t sysdb_numbers_[3] = {};
};

}  // namespace recording
