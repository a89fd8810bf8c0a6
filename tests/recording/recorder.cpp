// Scripts, lines and checks of the recording framework.
#include "recording/recorder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "recording/services.h"

namespace recording {

namespace {

int err_log_target;
int trc_log_target;
int trace_target;

std::string pointer_text(const void* pointer) {
  char text[32];
  std::snprintf(text, sizeof text, "%p", pointer);
  return text;
}

}  // namespace

std::string shown(const char* text) {
  if (text == nullptr) return "-";
  const std::string value = text;
  return value.empty() || value == "-" || value.find(' ') != std::string::npos ? "'" + value + "'" : value;
}

Recorder::Recorder(uint32_t request_kind) {
  request.request_kind = request_kind;
  state.request_kind = &request.request_kind;
  ctx_.req_state = &state;
  ctx_.err_log = &err_log_target;
  ctx_.trc_log = &trc_log_target;
  ctx_.trace_handle = &trace_target;
  ctx_.trace_on = 1;
  labels_[&output_] = "output";
  Services::begin(*this);
}

Recorder::~Recorder() {
  check_channels();
  check_memory();
  Services::end();
}

void Recorder::answer(std::string_view service, uint32_t result, int nth) {
  answers_[{std::string(service), nth}] = result;
}

void Recorder::node_info(std::string_view path, std::string_view name, const char* value) {
  node_info_[{std::string(path), std::string(name)}] = value == nullptr ? nullptr : texts_.emplace_back(value).c_str();
}

void Recorder::sub_interface(const char* name, const char* index) {
  state.interface_name = name;
  state.subinterface_index = index;
}

void Recorder::make_l2() {
  interface_flags(0x1000);
}

void Recorder::make_l3() {
  interface_flags(~uint32_t{0x1000});
}

void Recorder::interface_flags(uint32_t flags) {
  find_status_ = 0;
  flags_ = flags;
}

void Recorder::sysdb_item(int32_t first, int32_t second, int32_t third) {
  has_sysdb_item_ = true;
  sysdb_data_ = true;
  sysdb_numbers_[0] = first;
  sysdb_numbers_[1] = second;
  sysdb_numbers_[2] = third;
}

void Recorder::sysdb_item_without_data() {
  has_sysdb_item_ = true;
  sysdb_data_ = false;
}

void Recorder::list_entry(std::string_view path, std::string_view key_value) {
  const std::string label = std::string(path) + "[" + std::string(key_value) + "]";
  list_entries_[label] = make_node(label, nullptr);
}

void Recorder::debug_log(bool errors, bool traces) {
  logs_[0] = errors;
  logs_[3] = traces;
  channels_comparable_ = false;
}

void Recorder::trace_buffer(bool on) {
  ctx_.trace_on = on ? 1 : 0;
  channels_comparable_ = false;
}

void Recorder::own(char*& place, const char* text) {
  place = ::strdup(text);
  owned_[place] = text;
}

void Recorder::clear() {
  calls_.clear();
  log_.clear();
  trace_.clear();
  counts_.clear();
}

std::string Recorder::calls() const {
  std::string document;
  for (const Call& call : calls_) {
    if (!call.minor) document += call.line + '\n';
  }
  return document;
}

std::string Recorder::all_calls() const {
  std::string document;
  for (const Call& call : calls_) document += call.line + '\n';
  return document;
}

std::string Recorder::log() const {
  const std::string ctx = " YFW: ctx=" + pointer_text(&ctx_) + ",";
  std::string document;
  for (const MessageRecord& record : log_) {
    const std::string mark = record.text.substr(0, 4);
    const void* const handle = mark == "ERR:" ? &err_log_target : &trc_log_target;
    const bool regular = (mark == "ERR:" || mark == "TRC:") && record.text.compare(4, ctx.size(), ctx) == 0 &&
                         record.handle == handle && record.zeros && record.site_word == 0xffffffff;
    document += regular ? mark.substr(0, 3) + " " + record.text.substr(4 + ctx.size()) : "irregular: " + record.text;
    document += '\n';
  }
  return document;
}

std::string Recorder::trace() const {
  const std::string ctx = pointer_text(&ctx_) + ",";
  std::string document;
  uint32_t index = 0;
  for (const MessageRecord& record : trace_) {
    ++index;
    unsigned number = 0;
    unsigned line = 0;
    int end = 0;
    char mark[4] = {};
    char function[200] = {};
    const int parts = std::sscanf(record.text.c_str(), "#%u: %3[ERTC]: %199[a-z0-9_]:%u ctx=%n", &number, mark,
                                  function, &line, &end);
    const bool regular = parts == 4 && number == index && line != 0 && record.handle == &trace_target &&
                         record.flags == 0x10101000000 &&
                         record.text.compare(static_cast<std::size_t>(end), ctx.size(), ctx) == 0;
    document += regular ? std::string(mark) + " " + function + ": " +
                              record.text.substr(static_cast<std::size_t>(end) + ctx.size())
                        : "irregular: " + record.text;
    document += '\n';
  }
  return document;
}

std::string Recorder::errors() const {
  std::string document;
  std::istringstream all(log());
  for (std::string line; std::getline(all, line);) {
    if (line.rfind("TRC ", 0) != 0) document += line + '\n';
  }
  return document;
}

uint32_t Recorder::write(std::string_view service, const std::string& arguments, uint32_t usual, bool minor) {
  std::string line(service);
  if (!arguments.empty()) line += " " + arguments;
  calls_.push_back({std::move(line), minor});
  const std::string name(service);
  const int n = ++counts_[name];
  for (const int nth : {n, 0}) {
    if (const auto scripted = answers_.find({name, nth}); scripted != answers_.end()) return scripted->second;
  }
  return usual;
}

std::string Recorder::node_name(const yfw_datatree* node) const {
  if (node == nullptr) return "-";
  if (const auto label = labels_.find(node); label != labels_.end()) return label->second;
  return shown(node->tag);
}

std::string Recorder::slot_name(const yfw_node_slot* slot) const {
  if (slot == nullptr) return "-";
  return slot == &state.list_slot ? "list_slot" : "yes";
}

yfw_datatree* Recorder::make_node(std::string label, const char* value) {
  yfw_datatree& node = nodes_.emplace_back();
  const std::size_t slash = label.rfind('/');
  node.tag = texts_.emplace_back(slash == std::string::npos ? label : label.substr(slash + 1)).c_str();
  if (value != nullptr) node.value = texts_.emplace_back(value).data();
  labels_[&node] = std::move(label);
  return &node;
}

void Recorder::check_context(const yfw_map_ctx* ctx) {
  if (ctx != nullptr && ctx != &ctx_) ADD_FAILURE() << "a service was called with another context";
}

void Recorder::check_memory() {
  // What the framework frees with the request.
  owned_.erase(state.error_tag);
  owned_.erase(state.error_message);
  std::free(state.error_tag);
  std::free(state.error_message);
  for (yfw_datatree& node : nodes_) {
    if (owned_.erase(node.value_ns) != 0) std::free(node.value_ns);
  }
  EXPECT_EQ(owned_.size(), static_cast<std::size_t>(expected_unreleased_)) << "owned texts that nobody holds";
  for (const auto& [block, text] : owned_) {
    if (expected_unreleased_ == 0) ADD_FAILURE() << "not released: " << text;
    std::free(const_cast<void*>(block));
  }
}

void Recorder::check_channels() const {
  if (!channels_comparable_) return;
  ASSERT_EQ(log_.size(), trace_.size()) << "the channels carry different messages:\n" << log() << "---\n" << trace();
  std::istringstream log_lines(log());
  std::istringstream trace_lines(trace());
  for (std::string logged, traced; std::getline(log_lines, logged) && std::getline(trace_lines, traced);) {
    const std::size_t colon = traced.find(": ");
    const std::string text = colon == std::string::npos ? traced : traced.substr(0, 4) + traced.substr(colon + 2);
    EXPECT_EQ(logged.substr(0, text.size()), text) << "the channels disagree";
  }
}

}  // namespace recording
