// What edits do to what is unsaid, whatever the device holds and whatever is asked: all of it is told, a strict host
// refuses what takes something away, a replaced entry is what was asked and its layer, and the native edit is complete.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <optional>

#include "framework/datastore/apply.h"
#include "property/model/native_models.h"
#include "property/model/observe.h"
#include "property/model/runner.h"
#include "property/model/shrink.h"
#include "property/model/told.h"
#include "property/model/writing_back.h"
#include "yfw-host/compare.h"
#include "yfw-host/host.h"

namespace property {
namespace {

std::string printed(const yfw::Host& host) {
  return host.running().print(yfw::Format::xml);
}

bool goes(const UnsaidLeaf& leaf) {
  return leaf.goes;
}

// What of a request concerns entries that it replaces, as a request for them alone.
class Replaced {
 public:
  explicit Replaced(const Request& request) {
    const bool everything = own(request.interfaces, request.default_operation) == Op::replace;
    for (const Element& interface : request.interfaces.children) {
      if (!removes(interface.op)) add(interface, everything);
    }
  }

  std::vector<std::string> names;
  Request request;

 private:
  static Op own(const Element& element, Op outer) { return element.op == Op::inherit ? outer : element.op; }

  // What goes is not there where everything comes anew.
  static Element plain(const Element& element) {
    Element copy{.name = element.name, .value = element.value};
    for (const Element& child : element.children) {
      if (!removes(child.op)) copy.children.push_back(plain(child));
    }
    return copy;
  }

  void add(const Element& interface, bool outer) {
    const bool whole = outer || interface.op == Op::replace;
    Element wanted{.name = interface.name, .value = interface.value};
    if (whole) names.push_back(interface.value);
    for (const Element& child : interface.children) {
      if (child.name != "subinterfaces") {
        if (whole && !removes(child.op)) wanted.children.push_back(plain(child));
      } else if (!removes(child.op)) {
        add_list(interface, child, whole || child.op == Op::replace, wanted);
      }
    }
    if (whole || !wanted.children.empty()) request.interfaces.children.push_back(wanted);
  }

  void add_list(const Element& interface, const Element& list, bool whole, Element& wanted) {
    Element entries{.name = list.name};
    for (const Element& sub : list.children) {
      if (removes(sub.op) || !(whole || sub.op == Op::replace)) continue;
      names.push_back(interface.value + "." + sub.value);
      entries.children.push_back(plain(sub));
    }
    if (!entries.children.empty()) wanted.children.push_back(entries);
  }
};

class Edits : public testing::TestWithParam<Models> {
 protected:
  void SetUp() override {
    if (GetParam() == Models::published && published_modules().empty()) {
      GTEST_SKIP() << "no published modules in " << OC_VLAN_PUBLISHED_YANG;
    }
  }

  yfw::Host& start(const Native& native, bool strict) {
    document_ = to_document(native);
    yfw::Host& host = hosts_.get(false, strict);
    host.set_running({.text = document_, .name = "device"});
    return host;
  }

  // Applies the request; the refusal, if it is refused.
  std::optional<yfw::RpcError> apply(yfw::Host& host, const Request& request, yfw::EditResult& result) const {
    const std::string text = to_text(request);
    try {
      result =
          host.apply({.text = text, .format = request.shape == Shape::json ? yfw::Format::json : yfw::Format::xml});
    } catch (const yfw::Refused& refused) {
      return refused.error();
    }
    return std::nullopt;
  }

  // What the requests so far did, and how often.
  const std::map<std::string, std::size_t>& seen() const { return seen_; }

  // Empty when all is well.
  std::string fault_of(const Native& device, const Request& request) {
    yfw::Host& host = start(device, false);
    const std::string text = printed(host);
    yfw::Data native = host.running().clone();
    const Native before = observe_native(native);
    const yfw::ReadResult read = host.read();
    yfw::EditResult result;
    const std::optional<yfw::RpcError> refusal = apply(host, request, result);
    if (refusal.has_value()) {
      ++seen_["refused requests"];
      if (printed(host) != text) return "refused, and yet changed";
      return fault_of_strict(device, request, *refusal);
    }
    const Native after = observe_native(host.running());
    // Whoever gets the native edit makes the same of it.
    if (!result.native.empty()) yfw::apply_edit(native, result.native.get(), yfw::Operation::merge);
    Native made = observe_native(native);
    for (auto& [name, entry] : made) {
      if (after.contains(name)) keep_stored_text(entry, after.at(name));
    }
    if (made != after) return "the native edit makes\n" + to_text(made);
    const std::vector<UnsaidLeaf> wanted = becoming_of(read, after, reach_of(request, before));
    const std::vector<UnsaidLeaf> told = observe_unsaid(result.unsaid);
    if (wanted != told) return "--- should be told\n" + to_text(wanted) + "--- is told\n" + to_text(told);
    for (const UnsaidLeaf& each : wanted) ++seen_[each.goes ? "leaves that went" : "leaves that stayed"];
    if (const std::string fault = untold_in(result.warnings, wanted); !fault.empty()) return fault;
    if (const std::string fault = fault_of_strict(device, request, wanted, result, after); !fault.empty()) return fault;
    return fault_of_replaced(before, after, request);
  }

 private:
  static std::vector<UnsaidLeaf> becoming_of(const yfw::ReadResult& read, const Native& after, const Reach& reach) {
    std::vector<UnsaidLeaf> leaves;
    for (UnsaidLeaf each : observe_unsaid(read.unsaid)) {
      const auto entry = after.find(each.entry);
      each.goes =
          entry == after.end() || !entry->second.contains(each.path) || entry->second.at(each.path) != each.value;
      if (each.goes || reach.named.contains(each.entry)) leaves.push_back(each);
    }
    return leaves;
  }

  // What is refused anyway a strict host refuses as well, for the same reason.
  std::string fault_of_strict(const Native& device, const Request& request, const yfw::RpcError& refusal) {
    yfw::EditResult result;
    const std::optional<yfw::RpcError> strict = apply(start(device, true), request, result);
    if (strict.has_value() && (strict->message == refusal.message || strict->tag == "operation-failed")) return {};
    return "refused: " + refusal.message + "\na strict host: " + (strict.has_value() ? strict->message : "accepts it");
  }

  std::string fault_of_strict(const Native& device, const Request& request, const std::vector<UnsaidLeaf>& unsaid,
                              const yfw::EditResult& reported, const Native& after) {
    yfw::Host& host = start(device, true);
    const std::string text = printed(host);
    yfw::EditResult result;
    const std::optional<yfw::RpcError> refusal = apply(host, request, result);
    const bool loses = std::any_of(unsaid.begin(), unsaid.end(), goes);
    if (!refusal.has_value()) {
      if (loses) return "a strict host lets something unsaid go";
      if (!reported.differences.empty()) return "a strict host lets something read back differently";
      return observe_native(host.running()) == after ? "" : "a strict host makes something else of it";
    }
    if (printed(host) != text) return "refused, and yet changed";
    const std::string said = "a strict host refuses: " + refusal->path + ": " + refusal->message + "\n";
    if (refusal->tag != "operation-failed") return said;
    ++seen_[loses ? "losses refused" : "differences refused"];
    if (!loses) return reported.differences.empty() ? said : "";
    return names_loss(*refusal, reported.unsaid) ? "" : said;
  }

  // The first loss by its path, and the first few by name and value.
  static bool names_loss(const yfw::RpcError& refusal, const std::vector<yfw::Unsaid>& unsaid) {
    constexpr std::size_t kNamed = 8;
    std::string named = "the edit takes away what OpenConfig does not say: ";
    std::size_t count = 0;
    for (const yfw::Unsaid& each : unsaid) {
      if (each.fate != yfw::Unsaid::Fate::goes) continue;
      if (count == 0 && refusal.path != each.path) return false;
      if (++count > kNamed) continue;
      const std::string leaf = each.path.substr(each.path.rfind('/') + 1);
      named += (count == 1 ? "" : ", ") + leaf.substr(leaf.find(':') + 1);
      named += each.value.empty() ? "" : " \"" + each.value + "\"";
    }
    if (count > kNamed) named += " and " + std::to_string(count - kNamed) + " more";
    return refusal.message.starts_with(named + "; ");
  }

  // The entries that were there and are replaced are what the same makes of entries that have only their layer.
  std::string fault_of_replaced(const Native& before, const Native& after, const Request& request) {
    const Replaced replaced(request);
    Native bare;
    for (const std::string& name : replaced.names) {
      if (before.contains(name) && after.contains(name)) bare[name] = layer_of(before.at(name));
    }
    if (bare.empty()) return {};
    yfw::Host& host = start(bare, false);
    yfw::EditResult result;
    const std::optional<yfw::RpcError> refusal = apply(host, replaced.request, result);
    if (refusal.has_value()) return "replaced, but refused where nothing else is there: " + refusal->message;
    const Native fresh = observe_native(host.running());
    for (const auto& each : bare) {
      ++seen_[each.second == before.at(each.first) ? "replaced entries of a layer alone" : "replaced entries"];
      Entry wanted = fresh.contains(each.first) ? fresh.at(each.first) : Entry();
      keep_stored_text(wanted, after.at(each.first));
      const Native should{{each.first, std::move(wanted)}};
      const Native is{{each.first, after.at(each.first)}};
      if (should != is) return "replaced\n--- should be\n" + to_text(should) + "--- is\n" + to_text(is);
    }
    return {};
  }

  Hosts hosts_{GetParam()};
  std::string document_;
  std::map<std::string, std::size_t> seen_;
};

TEST_P(Edits, TellWhatBecomesOfWhatIsUnsaid) {
  const std::uint64_t only = number_from("OC_VLAN_SEED", 0);
  const std::uint64_t first = only != 0 ? only : 1;
  const std::uint64_t count = only != 0 ? 1 : sequences() / (GetParam() == Models::compact ? 2 : 20);
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    Random random(seed);
    Sequence sequence{.start = make_odd_entries(random)};
    const Config reads = decode(sequence.start);
    sequence.requests = {random.chance(70) ? make_replace(random, reads) : make_request(random, reads)};
    const auto fault = [this](const Sequence& each) {
      return each.requests.empty() ? std::string() : fault_of(each.start, each.requests.front());
    };
    if (fault(sequence).empty()) continue;
    const Sequence small = shrink(sequence, [&fault](const Sequence& each) { return !fault(each).empty(); });
    FAIL() << "seed " << seed << "\n" << to_text(small) << "\n" << fault(small);
  }
  for (const auto& [what, times] : seen()) std::cout << "  " << times << " " << what << "\n";
  constexpr std::uint64_t kEnoughForAll = 1000;
  constexpr std::size_t kOutcomes = 7;
  EXPECT_TRUE(seen().size() == kOutcomes || count < kEnoughForAll);
}

INSTANTIATE_TEST_SUITE_P(With, Edits, testing::Values(Models::compact, Models::published),
                         [](const testing::TestParamInfo<Models>& info) {
                           return info.param == Models::compact ? "CompactModules" : "PublishedModules";
                         });

}  // namespace
}  // namespace property
