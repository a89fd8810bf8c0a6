// From the elements of a document to data of the models, and the verdict on each element that does not fit.
#pragma once

#include <libyang/libyang.h>

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/documents/documents.h"
#include "framework/documents/source.h"
#include "framework/tree/foreign.h"
#include "yfw-host/data.h"

namespace yfw {

// Which schema nodes the elements of a document mean.
class Resolver {
 public:
  Resolver(ly_ctx* models, const Source& source) : models_(models), source_(source) {}

  // The schema node of a child element; null `parent` asks at the top. Throws Refused for an unknown element or
  // namespace; `above` is the parent's node, for the path.
  const lysc_node* resolve(const lysc_node* parent, const Element& element, const lyd_node* above);

  // The module of a namespace (XML) or module name (JSON); null when no loaded model has it.
  const lys_module* module_of(const char* ns);

  ly_ctx* models() const { return models_; }
  const Source& source() const { return source_; }

 private:
  ly_ctx* models_;
  const Source& source_;
  std::unordered_map<const char*, const lys_module*> modules_;
};

// A value like p:NAME: the name, and what its prefix is bound to.
struct BoundName {
  const char* name;
  const lys_module* module;  // null when there is none
  bool is_prefixed;
};

// What stands below one parent already. libyang goes through equal siblings one by one, so it must not get many.
class Seen {
 public:
  // For nodes that stand once: false when it is there already.
  bool add(const lysc_node* once);
  // For entries of lists and leaf-lists: how many with this value, or these keys, there are now.
  std::size_t count(const lysc_node* list, const std::string& identity);

 private:
  std::vector<const lysc_node*> once_;
  std::unordered_map<const lysc_node*, std::unordered_map<std::string, std::size_t>> entries_;
};

class TreeBuilder {
 public:
  enum class Purpose : std::uint8_t {
    edit,           // operations; no state; identity values may stay open
    configuration,  // no operations, no state
    state,          // everything that fits
  };

  TreeBuilder(ly_ctx* models, const Source& source, Purpose purpose, EditDocument& result)
      : resolver_(models, source), purpose_(purpose), result_(result) {}

  // Foreign subtrees go there; without a place for them they are unknown.
  void keep_foreign(std::vector<ForeignSubtree>& foreign) { foreign_ = &foreign; }

  // Builds the children of `content` as top-level data. For purposes other than `state`, throws Refused.
  void build(const Element& content, Operation outer);

  // Attributes that data have no place for: how many there were, and the first one with its element's path.
  struct LeftAttributes {
    std::size_t count = 0;
    const Element* element = nullptr;
    std::string path;
    std::string name;
  };
  const LeftAttributes& left_attributes() const { return left_attributes_; }

  // The line of the element that was judged last.
  int line() const { return judged_ == nullptr ? 1 : judged_->line; }

 private:
  struct Position {
    lyd_node* parent;  // null at the top
    Operation outer;   // what the parent passes down
    Seen& seen;

    const lysc_node* schema() const { return parent == nullptr ? nullptr : parent->schema; }
  };

  void build_children(lyd_node* parent, Operation outer, const Element& element);
  void build_foreign(const Position& at, const Element& element);
  void build_node(const Position& at, const Element& element);
  void build_container(const Position& at, const lysc_node* schema, const Element& element);
  void build_entry(const Position& at, const lysc_node* schema, const Element& element);
  void build_leaf(const Position& at, const lysc_node* schema, const Element& element);
  lyd_node* make_leaf(const Position& at, const lysc_node* schema, const Element& element);
  lyd_node* make_removed(const Position& at, const lysc_node* schema);
  lyd_node* make_identity(const Position& at, const lysc_node* schema, const Element& element);
  lyd_node* make_enumeration(const Position& at, const lysc_node* schema, const Element& element);
  BoundName bind(const Position& at, const lysc_node* schema, const Element& element);

  std::optional<Operation> own_operation(const Position& at, const lysc_node* schema, const Element& element);
  void leave_attribute(const Position& at, const lysc_node* schema, const Attribute& attribute);
  void check_shape(const Position& at, const lysc_node* schema, const Element& element);
  void check_key(const Position& at, const Element& key);
  const Element* find_key(const lysc_node* key, const Element& entry);
  void check_writing(const Position& at, lyd_node* made, const Element& element);
  // Throws a node away and refuses it when another one stands where it wants to.
  void check_alone(const Position& at, lyd_node* made, const lysc_node* schema);
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
  const Element* judged_ = nullptr;
  const lyd_node* attached_ = nullptr;  // the node that was made last
  LeftAttributes left_attributes_;
  std::vector<ForeignSubtree>* foreign_ = nullptr;
};

}  // namespace yfw
