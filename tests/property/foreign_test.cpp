// Made-up subtrees of models that nobody has, strewn over made-up devices: every edit does to the rest what it does
// without them, and leaves each of them where it is, unless it takes the entry around it away and says so.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "property/model/native_models.h"
#include "property/model/observe.h"
#include "property/model/runner.h"

namespace property {
namespace {

// The texts begin and end alike, so that they can be told from what is around them without reading XML.
constexpr char kBegin[] = "<f xmlns=\"urn:";
constexpr char kEnd[] = "</f>";

std::string foreign_text(Random& random, std::size_t number) {
  static const std::vector<std::string> kContents = {
      "plain",
      " mixed <b/> content\n<c d=\"1\">2</c> ",
      "<![CDATA[<f> ]]>",
      "&lt;f xmlns=\"urn:\"&gt;<!-- note --><?do it?>",
      "<mtu xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">none</mtu>",
      "<interface-configurations><mtu/></interface-configurations>",
      "<p:q xmlns:p=\"urn:p\" p:r=\"p:s\">p:t</p:q>"};
  return kBegin + std::to_string(random.below(3)) + "\" id=\"" + std::to_string(number) + "\">" +
         random.pick(kContents) + kEnd;
}

// Walks over the tags of a document and knows the names of what is open.
class Tags {
 public:
  explicit Tags(const std::string& text) : text_(text) {}

  // To the end of the next tag, or of the next foreign text. False when there is none.
  bool next() {
    begin_ = text_.find('<', end_);
    if (begin_ == std::string::npos) return false;
    is_foreign_ = text_.compare(begin_, sizeof kBegin - 1, kBegin) == 0;
    if (is_foreign_) {
      end_ = text_.find(kEnd, begin_) + sizeof kEnd - 1;
      return true;
    }
    end_ = text_.find('>', begin_) + 1;
    const bool closes = text_[begin_ + 1] == '/';
    opens_ = !closes && text_[end_ - 2] != '/';
    if (closes) open_.pop_back();
    if (opens_) open_.push_back(name());
    return true;
  }

  bool is_foreign() const { return is_foreign_; }
  std::string text() const { return text_.substr(begin_, end_ - begin_); }
  std::size_t begin() const { return begin_; }
  std::size_t end() const { return end_; }

  // Whether an element may stand behind the tag.
  bool has_room() const {
    const std::size_t following = text_.find_first_not_of(" \n", end_);
    if (open_.empty() || following == std::string::npos || text_[following] != '<') return false;
    return !opens_ || text_[following + 1] != '/';
  }

  std::string place() const {
    std::string place;
    for (const std::string& each : open_) place += "/" + each;
    return place;
  }
  // The element that the tag begins; empty for one that ends an element.
  std::string element() {
    if (text_[begin_ + 1] == '/') return "";
    return opens_ ? place() : place() + "/" + name();
  }
  // The interface entry around it; empty above them.
  std::string entry() const { return open_.size() < 2 ? "" : entry_; }

 private:
  std::string name() {
    std::string name = text_.substr(begin_ + 1, text_.find_first_of(" />", begin_) - begin_ - 1);
    if (name != "interface-configuration") return name;
    const std::string key = "<interface-name>";
    const std::size_t value = text_.find(key, begin_) + key.size();
    entry_ = text_.substr(value, text_.find('<', value) - value);
    return name + "[" + entry_ + "]";
  }

  const std::string& text_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool is_foreign_ = false;
  bool opens_ = false;
  std::vector<std::string> open_;
  std::string entry_;
};

std::string strewn(Random& random, const std::string& document) {
  std::string result;
  std::size_t number = 0;
  std::size_t copied = 0;
  const auto add = [&] { result += foreign_text(random, ++number); };
  for (Tags tags(document); tags.next(); copied = tags.end()) {
    const bool is_empty_presence = tags.text() == "<l2-transport/>";
    if (is_empty_presence && random.chance(20)) {
      result += document.substr(copied, tags.begin() - copied) + "<l2-transport>";
      add();
      result += "</l2-transport>";
      continue;
    }
    result += document.substr(copied, tags.end() - copied);
    while (tags.has_room() && random.chance(15)) add();
  }
  return result + document.substr(copied);
}

struct Stand {
  std::string place;
  std::string entry;
};

// The elements that a native edit takes away with all that a device has in them.
std::vector<std::string> taken_by(const std::string& edit) {
  std::vector<std::string> taken;
  for (Tags tags(edit); tags.next();) {
    for (const char* const operation : {"operation=\"remove\"", "operation=\"replace\""}) {
      if (tags.text().find(operation) != std::string::npos) taken.push_back(tags.element());
    }
  }
  return taken;
}

// All foreign texts with where they stand.
std::map<std::string, Stand> strewn_in(const std::string& document) {
  std::map<std::string, Stand> found;
  for (Tags tags(document); tags.next();) {
    if (tags.is_foreign()) found[tags.text()] = {tags.place(), tags.entry()};
  }
  return found;
}

class Foreign : public testing::Test {
 protected:
  // The outcome of a request on a device that has nothing foreign.
  struct Plain {
    std::string refusal;
    std::string after;
  };
  static Plain apply(yfw::Host& host, const Request& request, yfw::EditResult& result) {
    const std::string text = to_text(request);
    Plain outcome;
    try {
      result =
          host.apply({.text = text, .format = request.shape == Shape::json ? yfw::Format::json : yfw::Format::xml});
    } catch (const yfw::Refused& refused) {
      outcome.refusal = refused.what();
    }
    outcome.after = host.running().print(yfw::Format::xml);
    return outcome;
  }

  // Empty when all is well.
  std::string go(std::uint64_t seed) {
    const Sequence sequence = make_sequence(seed);
    Random random(seed);
    const std::string document = to_document(sequence.start);
    const std::string start = strewn(random, document);
    yfw::Host& plain = plain_.get(sequence.new_entries_are_l2, sequence.strict);
    yfw::Host& host = hosts_.get(sequence.new_entries_are_l2, sequence.strict);
    plain.set_running({.text = document, .name = "start"});
    host.set_running({.text = start, .name = "start"});
    std::map<std::string, Stand> before = strewn_in(start);
    for (const Request& request : sequence.requests) {
      yfw::EditResult ignored;
      yfw::EditResult result;
      const Plain wanted = apply(plain, request, ignored);
      const Plain got = apply(host, request, result);
      if (got.refusal != wanted.refusal || got.after != wanted.after) {
        return fmt::format("another outcome: {}\n{}{}\n{}", wanted.refusal, wanted.after, got.refusal, got.after);
      }
      const std::string printed = host.print_running(yfw::Format::xml);
      const std::map<std::string, Stand> after = strewn_in(printed);
      std::string problem = compare(before, after, got.after, result);
      if (problem.empty()) problem = read_again(printed, got.after);
      if (!problem.empty()) return fmt::format("{}\n{}{}", problem, to_text(request), printed);
      kept_ += after.size();
      gone_ += before.size() - after.size();
      before = after;
    }
    return {};
  }

  std::string compare(const std::map<std::string, Stand>& before, const std::map<std::string, Stand>& after,
                      const std::string& known, const yfw::EditResult& result) const {
    const std::vector<std::string> taken = taken_by(result.native.print(yfw::Format::xml));
    std::set<std::string> gone;
    for (const yfw::Foreign& each : result.gone) gone.insert(each.text);
    for (const auto& [text, stand] : before) {
      const bool stands = stand.entry.empty() ||
                          known.find("<interface-name>" + stand.entry + "</interface-name>") != std::string::npos;
      const auto now = after.find(text);
      // An entry of a list in it goes with all that it holds.
      const bool in_list =
          stand.place.find("l2-protocol/") != std::string::npos || stand.place.ends_with("l2-protocol");
      const bool stays = stands && !(in_list && now == after.end());
      if (!stays && now != after.end()) return "outlives its entry: " + text;
      if (stays == gone.contains(text)) return "told wrongly: " + text;
      if (stays && now == after.end()) return "lost: " + text;
      if (stays && now->second.place != stand.place) return "moved to " + now->second.place + ": " + text;
      for (const std::string& each : taken) {
        const bool is_inside = stand.place == each || stand.place.starts_with(fmt::format("{}/", each));
        if (stays && is_inside) return fmt::format("taken away on a device, by {}: {}", each, text);
      }
      if (!stays && !tells_of(result.warnings, stand.entry)) return "goes in silence: " + text;
    }
    return after.size() + gone.size() == before.size() ? "" : "there are more than there were";
  }

  static bool tells_of(const std::vector<yfw::Warning>& warnings, const std::string& entry) {
    for (const yfw::Warning& each : warnings) {
      const bool is_meant = each.path.find("[interface-name='" + entry + "']") != std::string::npos;
      if (is_meant && each.message.starts_with("goes with it: ")) {
        return true;
      }
    }
    return false;
  }

  std::string read_again(const std::string& printed, const std::string& known) {
    again_.get(false, false).set_running({.text = printed, .name = "printed"});
    if (again_.get(false, false).running().print(yfw::Format::xml) != known) return "reads again as something else";
    return again_.get(false, false).print_running(yfw::Format::xml) == printed ? "" : "prints again as something else";
  }

  Hosts plain_;
  Hosts hosts_;
  Hosts again_;
  std::size_t kept_ = 0;
  std::size_t gone_ = 0;
};

TEST_F(Foreign, StaysWhereItIsWhateverIsEditedBesideIt) {
  const std::uint64_t only = number_from("OC_VLAN_SEED", 0);
  const std::uint64_t last = only == 0 ? sequences() / 10 : only;
  for (std::uint64_t seed = only == 0 ? 1 : only; seed <= last; ++seed) {
    ASSERT_EQ(go(seed), "") << "seed " << seed << "\n" << to_text(make_sequence(seed));
  }
  if (only == 0) {
    EXPECT_GT(kept_, last);
    EXPECT_GT(gone_, last / 10);
  }
}

}  // namespace
}  // namespace property
