// One call of a translation as a row of a table: what it is given, which services it must call, what it must leave.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "oc_vlan/oc_vlan.h"
#include "recording/recorder.h"

namespace translations {

using recording::AllocationCount;
using recording::kEdit;
using recording::kNotThere;
using recording::kRead;
using recording::kReadState;
using recording::lines;
using recording::Recorder;
using recording::Tree;

// An exported translation of any of the three signatures, with its name.
class Function {
 public:
  Function(const char* name, cerrno (*leaf)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*));
  Function(const char* name, cerrno (*container)(yfw_map_ctx*, const yfw_datatree*, uint32_t, yfw_datatree*));
  Function(const char* name, cerrno (*list)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*, yfw_datatree*));

  cerrno operator()(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output) const;
  const std::string& name() const { return name_; }

 private:
  std::string name_;
  std::function<cerrno(yfw_map_ctx*, const yfw_datatree*, uint32_t, yfw_datatree*)> call_;
};

#define FUNCTION(function) ::translations::Function(#function, function)

// Every exported translation.
const std::vector<Function>& all_functions();

inline const std::vector<uint32_t> kReads{kRead, kReadState};
inline const std::vector<uint32_t> kEdits{kEdit, 2, 11, 0x10a, 0xffffffff};

// `calls` and `errors` are documents made by `lines`. `failures` says, for each add_path in `calls`, what becomes of
// its failure: '.' nothing, 'r' it is the result and the rest is done all the same, 's' it is the result and nothing
// more is added.
struct Case {
  std::string name;
  Function function;
  std::string tree;
  std::vector<uint32_t> kinds = kEdits;
  std::function<void(Recorder&)> given = {};
  std::string calls = {};
  std::string failures = {};
  cerrno result = 0;
  std::string errors = {};
  std::string error_tag = "-";
  std::string error_message = "-";
  bool ends = true;                      // whether "End" is traced
  std::optional<uint32_t> count = {};    // of children, as the walker says; by default the node's own
  std::function<void(Tree&)> then = {};  // further checks of the request after the call
};

// Runs a case for each of its request kinds, then with no channel open, then once for each failing add.
void check(const Case& c);

std::ostream& operator<<(std::ostream& out, const Case& c);
std::string case_name(const testing::TestParamInfo<Case>& info);

// Expects the texts in a document, each behind the one before.
void expect_in_order(const std::string& document, const std::vector<std::string>& texts);

// Lines of a call document. A "-" is a null text.
std::string add(const std::string& path, const std::string& ns, const std::string& value, const std::string& source,
                uint32_t list_flag, uint32_t flags, const std::string& slot = "-");

// Native configuration leaves: of the encapsulation, of the rewrite, of the VLAN identifier, of the trunk.
std::string encapsulation(const std::string& leaf, const std::string& value, const std::string& source);
std::string rewrite(const std::string& leaf, const std::string& value, const std::string& source);
std::string identifier(const std::string& leaf, const std::string& value, const std::string& source);
std::string trunk(const std::string& leaf, const std::string& value, const std::string& source);

std::string node_info(const std::string& path, const std::string& name);
std::string free_text(const std::string& text);
std::string strdup(const std::string& text, const std::string& owner);

// What marking a value as one of the VLAN types module looks like.
inline const std::string kMarked =
    "strdup text=http://openconfig.net/yang/vlan-types owner=YFW_OPENCONFIG_VLAN_TYPES_NS";

}  // namespace translations
