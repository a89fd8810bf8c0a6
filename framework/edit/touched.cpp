// Which native entries an edit may change.
#include <libyang/libyang.h>

#include <unordered_set>

#include "framework/edit/edit.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"

namespace yfw {

namespace {

class Touching {
 public:
  explicit Touching(const Running& running) : running_(running) {}

  void touch(const std::string& name) {
    if (seen_.insert(name).second) touched_.names.push_back(name);
    touched_.bystanders.erase(name);
    named_.insert(name);
  }

  void touch_subinterfaces_of(const std::string& name) {
    for (const std::string& each : running_.subinterfaces_of(name)) touch(each);
  }

  // An interface without an entry of its own is there as long as one of its sub-interfaces is.
  void pass(const std::string& name) {
    pass_one(name);
    if (running_.entry(name) != nullptr) return;
    const std::string sub = running_.a_subinterface_of(name);
    if (!sub.empty()) pass_one(sub);
  }

  void replaces(const std::string& name) { touched_.replaced.insert(name); }

  Touched take() { return std::move(touched_); }

 private:
  void pass_one(const std::string& name) {
    if (seen_.insert(name).second) touched_.names.push_back(name);
    if (!named_.contains(name)) touched_.bystanders.insert(name);
  }

  const Running& running_;
  Touched touched_;
  std::unordered_set<std::string> seen_;
  std::unordered_set<std::string> named_;
};

// True when the edit names something of an interface beside its sub-interfaces.
bool names_itself(const lyd_node* interface) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child_no_keys(interface), child) {
    if (!named(child, "subinterfaces")) return true;
  }
  return false;
}

// True when the node, or something in it but its sub-interfaces, is replaced.
bool replaces_below(const lyd_node* node) {
  if (operation_of(node, Operation::none) == Operation::replace) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(node->schema == nullptr ? nullptr : lyd_child(node), child) {
    if (!named(child, "subinterfaces") && replaces_below(child)) return true;
  }
  return false;
}

}  // namespace

Touched touched_entries(const EditDocument& document, const Running& running) {
  Touching touching(running);
  const auto is_whole = [](Operation operation) {
    return removes(operation) || operation == Operation::replace || operation == Operation::create;
  };
  const lyd_node* top = nullptr;
  LY_LIST_FOR(document.tree.get(), top) {
    const Operation outer = operation_of(top, document.default_operation);
    if (is_whole(outer)) {
      for (const lyd_node* const entry : running.entries()) touching.touch(std::string(entry_name(entry)));
    }
    const lyd_node* interface = nullptr;
    LY_LIST_FOR(lyd_child(top), interface) {
      const std::string name = key_value(interface);
      const Operation own = operation_of(interface, outer);
      const lyd_node* const list = child_named(interface, "subinterfaces");
      const bool replaced = outer == Operation::replace || own == Operation::replace;
      touching.pass(name);
      if (replaced || replaces_below(interface)) touching.replaces(name);
      if (is_whole(own) || names_itself(interface)) touching.touch(name);
      if (is_whole(own) || (list != nullptr && is_whole(operation_of(list, own)))) {
        touching.touch_subinterfaces_of(name);
      }
      const lyd_node* sub = nullptr;
      LY_LIST_FOR(list == nullptr ? nullptr : lyd_child(list), sub) {
        const std::string sub_name = join_interface_name(name, key_value(sub));
        touching.touch(sub_name);
        if (replaced || operation_of(list, own) == Operation::replace || replaces_below(sub)) {
          touching.replaces(sub_name);
        }
      }
    }
  }
  return touching.take();
}

}  // namespace yfw
