// The two channels of a message, byte by byte.
#include <gtest/gtest.h>

#include <cstdio>
#include <set>

#include "oc_vlan/handlers.h"
#include "plugin/walk.h"

namespace {

using recording::MessageRecord;
using walks::kEdit;
using walks::kRead;
using walks::Recorder;
using walks::sub_interface;
using walks::Tree;
using walks::Walk;

std::string context_text(const Recorder& recorder) {
  char text[32];
  std::snprintf(text, sizeof text, "%p", static_cast<const void*>(const_cast<Recorder&>(recorder).ctx()));
  return text;
}

TEST(Message, has_one_form_for_each_channel) {
  Walk walk = sub_interface(kEdit, "vlan { config @missing }");
  const std::string ctx = context_text(walk.recorder);
  const yfw_map_ctx& context = *walk.recorder.ctx();
  const std::vector<MessageRecord>& log = walk.recorder.log_records();
  const std::vector<MessageRecord>& trace = walk.recorder.trace_records();
  ASSERT_EQ(log.size(), 8u);
  ASSERT_EQ(trace.size(), 8u);
  EXPECT_EQ(log[0].text, "TRC: YFW: ctx=" + ctx + ",Start");
  EXPECT_EQ(log[1].text, "TRC: YFW: ctx=" + ctx + ",Processing tag 'vlan'");
  EXPECT_EQ(log[5].text, "ERR: YFW: ctx=" + ctx + ",Failed to get subtrees!");
  for (std::size_t i = 0; i < log.size(); ++i) {
    const bool is_error = i == 5;
    EXPECT_EQ(log[i].handle, is_error ? context.err_log : context.trc_log) << i;
    EXPECT_TRUE(log[i].zeros) << i;
    EXPECT_EQ(log[i].site_word, 0xffffffffu) << i;
    EXPECT_EQ(trace[i].handle, context.trace_handle) << i;
    EXPECT_EQ(trace[i].flags, 0x10101000000u) << i;
    const std::string start = "#" + std::to_string(i + 1) + (is_error ? ": ERR: " : ": TRC: ");
    EXPECT_EQ(trace[i].text.substr(0, start.size()), start);
  }
  const std::string& error = trace[5].text;
  const std::string function = "#6: ERR: ymap_ov_oc_vlan_openconfigvlan_lvla_vlan_config:";
  ASSERT_EQ(error.substr(0, function.size()), function);
  const std::size_t blank = error.find(' ', function.size());
  EXPECT_GT(std::stoi(error.substr(function.size(), blank - function.size())), 0) << "the line of the node's row";
  EXPECT_EQ(error.substr(blank), " ctx=" + ctx + ",Failed to get subtrees!");
}

TEST(Message, asks_for_its_level_first) {
  Walk walk = sub_interface(kEdit, "vlan { config @missing }");
  const std::string calls = walk.recorder.all_calls();
  EXPECT_EQ(calls.substr(0, calls.find('\n')), "should_log level=3");
  EXPECT_NE(calls.find("should_log level=0\nlog ERR: "), std::string::npos);
}

TEST(Message, of_each_place_has_a_word_of_its_own) {
  Walk walk = sub_interface(kEdit, "vlan { config { x:y } match @missing }",
                            [](Walk& w) { w.recorder.answer("is_request_add", 0); });
  std::set<std::pair<const uint32_t*, std::string>> places;
  std::set<const uint32_t*> words;
  for (const MessageRecord& record : walk.recorder.log_records()) {
    ASSERT_NE(record.site, nullptr);
    EXPECT_EQ(*record.site, 0xffffffffu);
    places.emplace(record.site, record.text);
    words.insert(record.site);
  }
  EXPECT_EQ(places.size(), words.size()) << "no word serves two texts";
  EXPECT_GE(words.size(), 5u);
}

struct Channels {
  const char* name;
  bool errors;
  bool traces;
  bool buffer;
};

std::ostream& operator<<(std::ostream& out, const Channels& c) {
  return out << c.name;
}

class MessageChannels : public testing::TestWithParam<Channels> {};

TEST_P(MessageChannels, open_and_close_independently_and_change_nothing_else) {
  const Channels& c = GetParam();
  Walk walk = sub_interface(kEdit, "vlan { stranger }", [&c](Walk& w) {
    w.recorder.debug_log(c.errors, c.traces);
    w.recorder.trace_buffer(c.buffer);
  });
  EXPECT_EQ(walk.code, CERR_UNSUPPORTED);
  EXPECT_STREQ(walk.state().error_tag, "stranger");
  EXPECT_NE(walk.recorder.calls().find("strdup text=stranger owner='YFW MAP'\nerror_path\n"), std::string::npos);
  const std::string log = walk.recorder.log();
  EXPECT_EQ(log.find("ERR Unsupported tag is specified in the request.") != std::string::npos, c.errors);
  EXPECT_EQ(log.find("TRC Start") != std::string::npos, c.traces);
  EXPECT_EQ(walk.recorder.trace().find("Unsupported tag is specified") != std::string::npos, c.buffer);
  EXPECT_EQ(walk.recorder.trace_records().empty(), !c.buffer);
}

INSTANTIATE_TEST_SUITE_P(Message, MessageChannels,
                         testing::Values(Channels{"all", true, true, true}, Channels{"errors_only", true, false, false},
                                         Channels{"traces_only", false, true, false},
                                         Channels{"buffer_only", false, false, true},
                                         Channels{"log_only", true, true, false},
                                         Channels{"none", false, false, false}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Message, is_active_with_any_value_of_the_trace_switch) {
  Recorder recorder;
  recorder.ctx()->trace_on = 0x100;
  Tree tree("vlan { }");
  ymap_ov_oc_vlan_openconfigvlan_augment_lvla_subinterface(recorder.ctx(), tree.root(), recorder.output());
  EXPECT_FALSE(recorder.trace_records().empty());
}

// A line of the trace buffer has room for 249 bytes and its end.
TEST(Message, is_cut_in_the_trace_buffer_only) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{100}, std::size_t{1000}}) {
    const std::string tag(size, 't');
    Walk walk = sub_interface(kRead, "x:" + tag + " { }",
                              [](Walk& w) { w.recorder.answer("lvla_subinterface_parse_augments", walks::kFailure); });
    const std::string text = ",Processing tag '" + tag + "'";
    const std::string& logged = walk.recorder.log_records().at(1).text;
    const std::string& traced = walk.recorder.trace_records().at(1).text;
    EXPECT_EQ(logged.substr(logged.find(',')), text);
    const std::string whole_end = traced.substr(traced.find(','));
    if (size < 1000) {
      EXPECT_EQ(whole_end, text);
    } else {
      EXPECT_EQ(traced.size(), 249u);
      EXPECT_EQ(whole_end, text.substr(0, whole_end.size()));
    }
  }
}

TEST(Message, fills_the_trace_line_to_its_last_byte) {
  // The part before the tag is as long as it is: find it, then make lines of 249 and of 250 bytes.
  std::size_t frame = 0;
  {
    Walk walk = sub_interface(kRead, "x:t { }");
    frame = walk.recorder.trace_records().at(1).text.size() - 1;
  }
  for (const std::size_t over : {std::size_t{0}, std::size_t{1}}) {
    const std::string tag(249 - frame + over, 't');
    Walk walk = sub_interface(kRead, "x:" + tag + " { }");
    const std::string& traced = walk.recorder.trace_records().at(1).text;
    EXPECT_EQ(traced.size(), 249u);
    EXPECT_EQ(traced.back(), over == 0 ? '\'' : 't');
  }
}

}  // namespace
