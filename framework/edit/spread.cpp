// Operations on whole lists, spread over their entries.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <string_view>
#include <unordered_set>

#include "framework/datastore/running.h"
#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

// Turns an operation on a whole list into the same on each of its entries: those asked for and those there.
class Spreader {
 public:
  Spreader(EditDocument& document, const Running* running, std::vector<Warning>& warnings)
      : document_(document), running_(running), warnings_(warnings) {}

  void run() {
    lyd_node* top = nullptr;
    LY_LIST_FOR(document_.tree.get(), top) {
      if (!named(top, "interfaces")) continue;
      const Operation own = operation_of(top, document_.default_operation);
      if (removes(own) || own == Operation::replace) spread_interfaces(top, own);
      lyd_node* entry = nullptr;
      LY_LIST_FOR(lyd_child(top), entry) {
        spread_below(entry, operation_of(entry, passed_down(own)));
      }
    }
  }

 private:
  void require_running(const lyd_node* node) const {
    if (running_ != nullptr) return;
    throw Refused({.tag = "operation-failed",
                   .path = path_of(node),
                   .message = fmt::format("'{}' as a whole can only be removed or replaced where the running "
                                          "configuration says which entries there are (--running)",
                                          LYD_NAME(node)),
                   .bad_element = LYD_NAME(node)});
  }

  // The list's container keeps no operation; entries asked for take it, entries that are there and not asked for go.
  void spread(lyd_node* container, const char* list, Operation operation,
              const std::vector<std::string>& present) const {
    keep_asked(document_);
    std::unordered_set<std::string> asked;
    lyd_node* entry = lyd_child(container);
    while (entry != nullptr) {
      lyd_node* const next = entry->next;
      if (removes(operation)) {
        lyd_free_tree(entry);
      } else {
        asked.insert(key_value(entry));
        set_operation(entry, operation);
      }
      entry = next;
    }
    set_operation(container, Operation::merge);
    std::vector<std::string_view> unnamed;
    for (const std::string& key : present) {
      if (asked.contains(key)) continue;
      unnamed.push_back(key);
      lyd_node* gone = nullptr;
      if (lyd_new_list(container, container->schema->module, list, 0, &gone, key.c_str()) == LY_SUCCESS) {
        set_operation(gone, Operation::remove);
      }
    }
    if (!removes(operation) && !unnamed.empty()) tell_unnamed(container, list, unnamed);
  }

  void tell_unnamed(const lyd_node* container, const char* list, const std::vector<std::string_view>& unnamed) const {
    const std::string what = unnamed.size() == 1 ? fmt::format("{} '{}' goes", list, unnamed.front())
                                                 : fmt::format("{} entries of '{}' go, the first is '{}'",
                                                               unnamed.size(), list, unnamed.front());
    warnings_.push_back({path_of(container), fmt::format("replaced by a request that does not name them: {}", what)});
  }

  void spread_interfaces(lyd_node* interfaces, Operation operation) const {
    require_running(interfaces);
    std::vector<std::string> present;
    std::unordered_set<std::string> seen;
    for (const lyd_node* const entry : running_->entries()) {
      std::string name(split_interface_name(entry_name(entry)).name);
      if (seen.insert(name).second) present.push_back(std::move(name));
    }
    spread(interfaces, "interface", operation, present);
  }

  std::vector<std::string> indexes_of(std::string_view name) const {
    std::vector<std::string> indexes;
    for (const std::string& each : running_->subinterfaces_of(name)) {
      indexes.emplace_back(split_interface_name(each).index);
    }
    return indexes;
  }

  void spread_below(lyd_node* interface, Operation own) const {
    const char* const name = key_value(interface);
    lyd_node* container = const_cast<lyd_node*>(child_named(interface, "subinterfaces"));
    if (own == Operation::replace && running_ != nullptr) {
      const std::vector<std::string> present = indexes_of(name);
      if (container == nullptr && !present.empty()) {
        keep_asked(document_);
        lyd_new_inner(interface, interface->schema->module, "subinterfaces", 0, &container);
      }
      if (container != nullptr) spread(container, "subinterface", own, present);
      return;
    }
    if (container == nullptr || removes(own)) return;
    const Operation operation = operation_of(container, passed_down(own));
    if (!removes(operation) && operation != Operation::replace) return;
    require_running(container);
    spread(container, "subinterface", operation, indexes_of(name));
  }

  EditDocument& document_;
  const Running* running_;
  std::vector<Warning>& warnings_;
};

}  // namespace

void spread_lists(EditDocument& document, const Running* running, std::vector<Warning>& warnings) {
  Spreader(document, running, warnings).run();
}

}  // namespace yfw
