// The read-scope gate of everything that reads native configuration back.
#include "plugin/translations/case.h"

namespace translations {
namespace {

struct Field {
  std::string name;
  void (*set)(yfw_map_request&, uint32_t);
  uint32_t width;  // in bits
  uint32_t tested;
};

const std::vector<Field> kFields{
    {"flags_1", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_1 = static_cast<uint8_t>(v); }, 8, 0x0f},
    {"flags_2", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_2 = static_cast<uint8_t>(v); }, 8, 0x03},
    {"flags_3", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_3 = static_cast<uint8_t>(v); }, 8, 0x03},
    {"flags_4", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_4 = static_cast<uint8_t>(v); }, 8, 0x07},
    {"flags_5", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_5 = v; }, 32, 0x3ffff},
    {"flags_6", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_6 = static_cast<uint8_t>(v); }, 8, 0x03},
    {"flags_7", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_7 = static_cast<uint8_t>(v); }, 8, 0x0f},
    {"flags_8", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_8 = static_cast<uint8_t>(v); }, 8, 0x07},
    {"flags_9", [](yfw_map_request& r, uint32_t v) { r.read_filter_flags_9 = static_cast<uint8_t>(v); }, 8, 0x01},
};

constexpr char kEncapsulation[] = "/interface-configurations/interface-configuration/ethernet-service/encapsulation";
constexpr char kIdentifier[] =
    "/interface-configurations/interface-configuration/vlan-sub-configuration/vlan-identifier";
constexpr char kRewrite[] = "/interface-configurations/interface-configuration/ethernet-service/rewrite";
constexpr char kTrunk[] = "/interface-configurations/interface-configuration/vlan-trunk-configuration/";

// A native configuration in which every leaf below has something to tell.
void everything(Recorder& framework, const std::string& function) {
  const bool outer = function.find("outerrange1high") != std::string::npos;
  const bool inner = function.find("innerrange") != std::string::npos;
  framework.node_info(kEncapsulation, "outer-tag-type", inner ? "match-dot1ad" : "match-dot1q");
  if (inner) {
    framework.node_info(kEncapsulation, "inner-tag-type", "match-dot1q");
    framework.node_info(kEncapsulation, "inner-range1-high", "9");
  } else {
    framework.node_info(kEncapsulation, outer ? "outer-range1-high" : "additional-range1-low", "9");
  }
  framework.node_info(kIdentifier, "vlan-type", "vlan-type-dot1ad");
  framework.node_info(kIdentifier, "second-tag", "9");
  framework.node_info(kRewrite, "rewrite-type", "push1");
  framework.node_info(std::string(kTrunk) + "native-vlan-identifier", "vlan-type", "vlan-type-dot1q");
  framework.node_info(std::string(kTrunk) + "vlan-switched", "trunk-tag-type", "vlan-type-dot1q");
}

std::string native_value(const std::string& function) {
  if (function.ends_with("_rewritetype")) return "pop1";
  if (function.ends_with("_outertagtype")) return "match-dot1q";
  if (function.ends_with("_mode")) return "trunk";
  return "10";
}

class ReadScope : public testing::TestWithParam<Function> {
 protected:
  // All calls of the function with one field set; what is told ends them.
  static std::string calls(const Function& function, const Field& field, uint32_t value, uint32_t scope_mode) {
    Recorder framework(kRead);
    framework.debug_log(false, false);
    framework.trace_buffer(false);
    everything(framework, function.name());
    field.set(framework.request, value);
    framework.request.scope_mode = scope_mode;
    Tree tree("cfg:leaf=" + native_value(function.name()));
    EXPECT_EQ(function(framework.ctx(), tree.root(), 0, framework.output()), 0u);
    return framework.calls();
  }
};

TEST_P(ReadScope, closes_on_each_tested_bit_alone) {
  for (const Field& field : kFields) {
    for (uint32_t bit = 0; bit < field.width; ++bit) {
      const uint32_t value = uint32_t{1} << bit;
      SCOPED_TRACE(field.name + " bit " + std::to_string(bit));
      const std::string told = calls(GetParam(), field, value, 2);
      if ((field.tested & value) != 0) {
        EXPECT_EQ(told, "") << "nothing is looked up or added";
      } else {
        EXPECT_NE(told.find("add_path "), std::string::npos) << told;
      }
    }
  }
}

TEST_P(ReadScope, ends_as_any_call_when_closed) {
  Recorder framework(kRead);
  framework.request.read_filter_flags_5 = 1;
  framework.request.scope_mode = 2;
  Tree tree("cfg:leaf=10");
  EXPECT_EQ(GetParam()(framework.ctx(), tree.root(), 0, framework.output()), 0u);
  EXPECT_EQ(framework.trace(), lines("TRC " + GetParam().name() + ": Start", "TRC " + GetParam().name() + ": End"));
}

TEST_P(ReadScope, stays_open_in_every_other_mode) {
  for (const Field& field : kFields) {
    for (const uint32_t mode : {0u, 1u, 3u, 0x102u}) {
      EXPECT_NE(calls(GetParam(), field, 0xffffffff, mode).find("add_path "), std::string::npos)
          << field.name << " mode " << mode;
    }
  }
}

TEST_P(ReadScope, stays_open_without_a_flag) {
  EXPECT_NE(calls(GetParam(), kFields[0], 0, 2).find("add_path "), std::string::npos);
}

std::vector<Function> read_backs() {
  std::vector<Function> functions;
  for (const Function& function : all_functions()) {
    if (function.name().find("_man_leaf_") != std::string::npos) functions.push_back(function);
  }
  return functions;
}

INSTANTIATE_TEST_SUITE_P(ReadBacks, ReadScope, testing::ValuesIn(read_backs()),
                         [](const testing::TestParamInfo<Function>& info) { return info.param.name(); });

TEST(ReadScopeFunctions, are_all_there) {
  EXPECT_EQ(read_backs().size(), 21u);
}

}  // namespace
}  // namespace translations
