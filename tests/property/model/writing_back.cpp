// There and back through a host.
#include "property/model/writing_back.h"

#include <libyang/libyang.h>

#include <cstring>
#include <optional>
#include <vector>

#include "property/model/native_models.h"
#include "property/model/observe.h"

namespace property {

namespace {

bool is_called(const lyd_node* node, const char* name) {
  return node != nullptr && std::strcmp(node->schema->name, name) == 0;
}

// What the plug-in sees as a whole.
bool is_whole_container(const lyd_node* node) {
  const lyd_node* const parent = lyd_parent(node);
  if (is_called(node, "config")) return is_called(parent, "switched-vlan");
  return is_called(parent, "vlan") && (is_called(node, "match") || is_called(node, "ingress-mapping"));
}

void collect_parts(const lyd_node* node, std::vector<const lyd_node*>& parts) {
  const bool term = (node->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
  if (term && lysc_is_key(node->schema)) return;
  if (term || is_whole_container(node)) return parts.push_back(node);
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect_parts(child, parts);
  }
}

std::string text_of(const lyd_node* part) {
  lyd_node* copy = nullptr;
  lyd_dup_single(part, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_PARENTS, &copy);
  while (copy->parent != nullptr) copy = &copy->parent->node;
  const yfw::Data alone(copy);
  return alone.print(yfw::Format::xml);
}

}  // namespace

Entry layer_of(const Entry& entry) {
  return is_l2(entry) ? Entry{{"l2-transport", ""}} : Entry();
}

Entry write_back(yfw::Host& host, const std::string& native_name, const Entry& entry) {
  const std::string alone = to_document({{native_name, entry}});
  const std::string bare = to_document({{native_name, layer_of(entry)}});
  host.set_running({.text = alone, .name = "entry"});
  const yfw::ReadResult reading = host.read();
  const auto written = [&](const std::string& request) -> std::optional<Entry> {
    host.set_running({.text = bare, .name = "bare entry"});
    try {
      host.apply({.text = request});
    } catch (const yfw::Refused&) {
      return std::nullopt;
    }
    Entry made = observe_native(host.running())[native_name];
    keep_stored_text(made, entry);
    return made;
  };
  if (reading.data.empty()) return layer_of(entry);
  if (const std::optional<Entry> whole = written(reading.data.print(yfw::Format::xml))) return *whole;
  std::vector<const lyd_node*> parts;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(reading.data.get(), top) {
    collect_parts(top, parts);
  }
  Entry made = layer_of(entry);
  for (const lyd_node* const part : parts) {
    if (const std::optional<Entry> one = written(text_of(part))) made.insert(one->begin(), one->end());
  }
  return made;
}

}  // namespace property
