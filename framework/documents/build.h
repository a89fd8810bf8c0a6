// From the elements of a document to data of the models, and the verdict on each element that does not fit.
#pragma once

#include <libyang/libyang.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/documents/documents.h"
#include "framework/documents/envelope.h"
#include "framework/documents/source.h"
#include "framework/tree/foreign.h"
#include "yfw-host/data.h"

namespace yfw {

// A hash of addresses.
template <typename... Any>
std::size_t hash_of(const Any*... each) {
  std::uint64_t hash = 0;
  ((hash = (hash ^ reinterpret_cast<std::uintptr_t>(each)) * 0x9E3779B97F4A7C15U), ...);
  return hash ^ hash >> 32U;
}

// Which schema nodes the elements of a document mean.
class Resolver {
 public:
  Resolver(ly_ctx* models, Format format) : models_(models), format_(format) {}

  // The schema node of a child element; null `parent` asks at the top. Null when there is none.
  const lysc_node* find(const lysc_node* parent, const Element& element);

  // The same, but throws Refused for an unknown element or namespace; `above` is the parent's node, for the path.
  const lysc_node* resolve(const lysc_node* parent, const Element& element, const lyd_node* above);

  // The module of a namespace (XML) or module name (JSON); null when no loaded model has it.
  const lys_module* module_of(const char* ns);

  ly_ctx* models() const { return models_; }
  Format format() const { return format_; }

 private:
  // Names and namespaces of elements are interned.
  struct Name {
    const lysc_node* parent;
    const char* ns;
    const char* name;
    bool operator==(const Name&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Name& name) const;
  };

  ly_ctx* models_;
  Format format_;
  std::unordered_map<const char*, const lys_module*> modules_;
  std::unordered_map<Name, const lysc_node*, Hash> known_;
};

// A value like p:NAME: the name, and what its prefix is bound to.
struct BoundName {
  const char* name;
  const lys_module* module;  // null when there is none
  bool is_prefixed;
};

// What tells a node from others of its kind below one parent, all of them in one tree: the values of its keys, its own,
// or nothing. libyang keeps equal values as one text.
constexpr std::size_t kMostKeys = 4;
using Identity = std::array<const char*, kMostKeys>;

// What stands below one parent already. libyang goes through equal siblings one by one, so it must not get many.
class Seen {
 public:
  // For nodes that stand once: false when it is there already.
  bool add(const lysc_node* once);
  // For entries of lists and leaf-lists: how many with this identity there are now.
  std::size_t count(const lysc_node* list, const Identity& identity);

 private:
  struct Entry {
    const lysc_node* list;
    Identity identity;
    bool operator==(const Entry&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Entry& entry) const;
  };

  std::vector<const lysc_node*> once_;
  std::unordered_map<Entry, std::size_t, Hash> entries_;
};

// Makes data of elements: of those that are taken while the document is read, and of whole documents. Entries of lists
// whose key stands first, and containers, need not have ended for it.
class TreeBuilder : public Taker {
 public:
  enum class Purpose : std::uint8_t {
    edit,           // operations; no state; identity values may stay open
    configuration,  // no operations, no state
    state,          // everything that fits
  };

  TreeBuilder(ly_ctx* models, Format format, Purpose purpose, EditDocument& result);

  // Foreign subtrees go there; without a place for them they are unknown.
  void keep_foreign(std::vector<ForeignSubtree>& foreign) { foreign_ = &foreign; }

  bool begins_in(const Element& parent, const Element& child) override;
  bool goes_on_in(const Element& parent) override;
  void take(const Element& element) override;

  // The children of `content` are the top-level data: builds those that were not taken. For purposes other than
  // `state`, throws the first refusal that there was.
  void finish(const Element& content);

  // Attributes that data have no place for: how many there were, and the first one with its element's path.
  struct LeftAttributes {
    std::size_t count = 0;
    std::size_t judged = 0;  // the number of the element
    std::string path;
    std::string name;
  };
  const LeftAttributes& left_attributes() const { return left_attributes_; }

  // The line of the element that was refused; 1 when there was none.
  int line() const { return refused_.has_value() ? refused_->line : 1; }

 private:
  struct Position {
    lyd_node* parent;  // null at the top
    Operation outer;   // what the parent passes down
    Seen seen = {};

    const lysc_node* schema() const { return parent == nullptr ? nullptr : parent->schema; }
  };
  // An element that has not ended yet, and what is made of its children; nothing when it was left out.
  struct Open {
    const Element* element;
    std::optional<Position> position;
  };
  struct Refusal {
    RpcError error;
    int line;
  };

  void found(const Element& content);
  void restart();
  bool is_complete_enough(const lysc_node* schema, const Element& element);
  // Does one thing about an element, unless one was refused. False when that was refused now, or left out.
  template <typename Step>
  bool attempt(const Step& step);
  void build_children(Position& at, const Element& element);
  void build_child(Position& at, const Element& element);
  void build_foreign(const Position& at, const Element& element);
  // The node of an element, and the place of what is to be built in it: nothing for leaves.
  std::optional<Position> make_node(Position& at, const Element& element);
  Position make_container(Position& at, const lysc_node* schema, const Element& element);
  Position make_entry(Position& at, const lysc_node* schema, const Element& element);
  void build_leaf(Position& at, const lysc_node* schema, const Element& element);
  lyd_node* make_leaf(const Position& at, const lysc_node* schema, const Element& element);
  lyd_node* make_removed(const Position& at, const lysc_node* schema);
  lyd_node* make_identity(const Position& at, const lysc_node* schema, const Element& element);
  lyd_node* make_enumeration(const Position& at, const lysc_node* schema, const Element& element);
  BoundName bind(const Position& at, const lysc_node* schema, const Element& element);

  std::optional<Operation> own_operation(const Position& at, const lysc_node* schema, const Element& element);
  void leave_attribute(const Position& at, const lysc_node* schema, const Attribute& attribute);
  void check_shape(const Position& at, const lysc_node* schema, const Element& element);
  void check_key(Position& at, const Element& key);
  const Element* find_key(const lysc_node* key, const Element& entry);
  void check_writing(const Position& at, lyd_node* made, const Element& element);
  // Throws a node away and refuses it when another one stands where it wants to.
  void check_alone(Position& at, lyd_node* made, const lysc_node* schema);
  void discard(lyd_node* node);

  // Creates a leaf; null when its type does not take the value.
  lyd_node* try_term(const Position& at, const lysc_node* schema, const char* value);
  lyd_node* attach(const Position& at, lyd_node* made);

  std::string path(const Position& at, const lysc_node* schema);
  [[noreturn]] void refuse(const Position& at, const lysc_node* schema, const char* tag, std::string message);
  [[noreturn]] void refuse_value(const Position& at, const lysc_node* schema, const char* value);
  [[noreturn]] void refuse_attribute(const Position& at, const lysc_node* schema, const char* tag,
                                     const Attribute& attribute, std::string message);

  Resolver resolver_;
  Purpose purpose_;
  EditDocument& result_;
  PayloadSearch search_;
  const Element* content_ = nullptr;  // where the search led to
  bool is_bare_xml_ = false;          // the content is the document itself
  std::vector<Open> open_;            // each holds the next one
  std::optional<Refusal> refused_;
  const Element* judged_ = nullptr;  // the element that is being built
  std::size_t judged_count_ = 0;
  const lyd_node* attached_ = nullptr;  // the node that was made last
  LeftAttributes left_attributes_;
  std::vector<ForeignSubtree>* foreign_ = nullptr;
};

}  // namespace yfw
