// A configuration printed with its foreign subtrees: marks stand for them in the tree while it is printed, and give way
// to their texts then. A mark looks like nothing that data can print as.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <charconv>
#include <stdexcept>
#include <unordered_map>

#include "framework/tree/foreign.h"
#include "framework/tree/nodes.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

// No identifier begins like this, and the texts of data are escaped.
constexpr char kMark[] = "?";

// How a mark prints, before and after its number.
struct MarkText {
  std::string_view before;
  std::string_view after;
};
constexpr MarkText kInXml{"<?", " xmlns=\"?\"/>"};
constexpr MarkText kInJson{"\"?:?", "\": \"\""};

lyd_node* new_mark(const ly_ctx* models, std::size_t number, Format format) {
  const std::string name = fmt::format("{}{}", kMark, number);
  lyd_node* mark = nullptr;
  const LY_ERR result = format == Format::xml
                            ? lyd_new_opaq2(nullptr, models, name.c_str(), nullptr, nullptr, kMark, &mark)
                            : lyd_new_opaq(nullptr, models, name.c_str(), nullptr, nullptr, kMark, &mark);
  if (result != LY_SUCCESS) throw std::runtime_error("a mark cannot be made");
  return mark;
}

const char* name_of(Format format) {
  return format == Format::xml ? "XML" : "JSON";
}

// Puts subtrees where they stand in a tree of its own.
class Placement {
 public:
  Placement(Data tree, const ly_ctx* models, Format format)
      : tree_(std::move(tree)), models_(models), format_(format) {}

  // Finds the places of all before anything foreign is in the tree, where look-ups would not expect it.
  void place(const std::vector<ForeignSubtree>& subtrees) {
    std::vector<Spot> spots;
    bool at_top = false;
    for (const ForeignSubtree& each : subtrees) {
      lyd_node* const parent = make(each.parent());
      at_top = at_top || parent == nullptr;
      mark_wanted(parent);
      spots.push_back({parent, each.before() == nullptr ? nullptr : last_before(parent, each.before())});
    }
    // <data> is around what stands at the top also where that is one element, which may need its namespace.
    if (format_ == Format::xml && (at_top || tree_.shown() > 1)) wrap();
    for (std::size_t i = 0; i < spots.size(); ++i) {
      if (spots[i].parent == nullptr) spots[i].parent = wrapper_;
      insert(spots[i], new_mark(models_, i, format_));
    }
  }

  const Data& tree() const { return tree_; }

 private:
  struct Spot {
    lyd_node* parent;  // null at the top
    lyd_node* before;  // null: the first one
  };

  lyd_node* children(const lyd_node* parent) const { return parent == nullptr ? tree_.get() : lyd_child(parent); }

  // The node, made where it is not there: what is kept stands in containers only that an edit has emptied.
  lyd_node* make(const lyd_node* wanted) {
    if (wanted == nullptr) return nullptr;
    lyd_node* const above = make(lyd_parent(wanted));
    lyd_node* node = counterpart_among(children(above), wanted);
    if (node == nullptr) {
      lyd_dup_single(wanted, reinterpret_cast<lyd_node_inner*>(above), LYD_DUP_NO_META, &node);
      if (above == nullptr) lyd_insert_sibling(tree_.get(), node, tree_.out());
    }
    return node;
  }

  // The sibling that stood before, or, where that has gone, the last of those that the model has before it.
  lyd_node* last_before(const lyd_node* parent, const lyd_node* before) const {
    lyd_node* found = counterpart_among(children(parent), before);
    const lysc_node* schema = before->schema;
    while (found == nullptr) {
      lyd_node* each = nullptr;
      LY_LIST_FOR(children(parent), each) {
        if (each->schema == schema) found = each;
      }
      const bool is_first = schema->prev->next == nullptr;
      if (is_first) break;
      schema = schema->prev;
    }
    // An array of JSON is one member.
    while (format_ == Format::json && found != nullptr && found->next != nullptr &&
           found->next->schema == found->schema) {
      found = found->next;
    }
    return found;
  }

  void wrap() {
    if (tree_.empty()) {
      lyd_new_opaq2(nullptr, models_, "data", nullptr, nullptr, kNetconfNs, tree_.out());
    } else {
      tree_.wrap();
    }
    wrapper_ = tree_.get();
  }

  void insert(const Spot& spot, lyd_node* mark) {
    // Those with the same place follow each other.
    lyd_node*& last = spot.before == nullptr ? last_first_[spot.parent] : last_behind_[spot.before];
    lyd_node* const first = children(spot.parent);
    lyd_node* before = last == nullptr ? spot.before : last;
    for (lyd_node* key = first; before == nullptr && key != nullptr && is_key(key); key = key->next) {
      if (key->next == nullptr || !is_key(key->next)) before = key;
    }
    if (before != nullptr) {
      lyd_insert_after(before, mark);
    } else if (first != nullptr) {
      lyd_insert_before(first, mark);
    } else if (spot.parent != nullptr) {
      lyd_insert_child(spot.parent, mark);
    }
    if (spot.parent == nullptr) *tree_.out() = lyd_first_sibling(mark);
    last = mark;
  }

  Data tree_;
  const ly_ctx* models_;
  Format format_;
  lyd_node* wrapper_ = nullptr;
  std::unordered_map<const lyd_node*, lyd_node*> last_first_;   // by parent
  std::unordered_map<const lyd_node*, lyd_node*> last_behind_;  // by the sibling before
};

std::string fill(std::string_view printed, const std::vector<ForeignSubtree>& subtrees, const MarkText& mark) {
  std::string text;
  std::size_t filled = 0;
  for (std::size_t at = 0; (at = printed.find(mark.before)) != std::string_view::npos;) {
    text += printed.substr(0, at);
    printed.remove_prefix(at);
    std::size_t number = subtrees.size();
    const char* const end = printed.data() + printed.size();
    const char* const rest = std::from_chars(printed.data() + mark.before.size(), end, number).ptr;
    if (number < subtrees.size() && std::string_view(rest, end).starts_with(mark.after)) {
      text += subtrees[number].text();
      printed.remove_prefix(static_cast<std::size_t>(rest - printed.data()) + mark.after.size());
      ++filled;
    } else {
      // A text between quotes that begins like a mark; the quote at its end does not look like that of one.
      text += mark.before;
      printed.remove_prefix(mark.before.size());
    }
  }
  if (filled != subtrees.size()) throw std::logic_error("a foreign subtree was not printed");
  return text.append(printed);
}

}  // namespace

std::string ForeignSubtrees::print(const Data& configuration, const ly_ctx* models, Format format) const {
  if (empty()) return configuration.print_document(format);
  if (format != format_) {
    throw Refused(
        {.tag = "operation-not-supported",
         .path = subtrees_.front().path(),
         .message = fmt::format("'{}' is of a model that is not loaded ({}): it came in {} and cannot go out "
                                "in {}",
                                subtrees_.front().name(), subtrees_.front().ns(), name_of(format_), name_of(format)),
         .bad_element = subtrees_.front().name()});
  }
  Placement placement(configuration.clone(), models, format);
  placement.place(subtrees_);
  return fill(placement.tree().print(format), subtrees_, format == Format::xml ? kInXml : kInJson);
}

}  // namespace yfw
