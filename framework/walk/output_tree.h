// The output of a walk: nodes added by path, lists resolved by key, and what operations mean among them.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/tree/schema.h"
#include "framework/walk/recent_texts.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw/yfw_map.h"

namespace yfw {

// What an edit does to a node of the output; `inherit` says nothing of its own.
enum class Mark : std::uint8_t { inherit, replace, remove };

// A node of the output. Mapping functions see `data`, whose address is the node's.
struct OutputNode {
  yfw_datatree data{};
  const lysc_node* schema = nullptr;
  OutputNode* parent = nullptr;
  std::vector<OutputNode*> children = {};
  std::string text = {};  // what data.value points at
  std::string key = {};   // of a list entry
  Mark mark = Mark::inherit;
  bool asked = false;  // named by an add, not made on the way
};

class OutputTree {
 public:
  // Keys of entries that stand for every entry there is, in outputs that collect paths.
  static constexpr char kAny[] = "*";

  explicit OutputTree(PathCache& paths) : paths_(paths) {}
  OutputTree(const OutputTree&) = delete;
  OutputTree& operator=(const OutputTree&) = delete;

  // Forgets what was added; which entries are current stays.
  void clear();

  // What mapping functions are given as their output.
  yfw_datatree* root() { return &root_.data; }
  const OutputNode& top() const { return root_; }

  // Says which entry of a list the next adds mean; an empty key: none, adds below it are left out.
  void set_current(const lysc_node* list, std::string_view key);

  // One add, as yfw_map_datatree_add_path_flagged describes it. `new_key` is the key of an entry that flag 0x20 asks
  // for. Returns a result code; a node left out because no entry is current leaves a null slot and success.
  cerrno add(yfw_datatree* tree, const char* path, const char* ns, const char* value, const yfw_datatree* source,
             yfw_node_slot* slot, bool list_entry, std::string_view new_key);

  // The entry of a list below `tree`, made when `create`. Null when it is not there or the path is unknown.
  OutputNode* entry(yfw_datatree* tree, const char* list_path, const char* key, const char* ns, bool create);

  // The entry of a list anywhere below the root by its parent; null when there is none.
  OutputNode* find_entry(const OutputNode* parent, const lysc_node* list, std::string_view key) const;

  // Marks the current entry of a list for removal, or just makes sure that it is there.
  cerrno touch_entry(const char* list_path, Mark mark);

  // An entry of a top list by its key: there at all, or with something in it that is not just removed.
  bool has_entry(const char* list_path, std::string_view key);
  OutputNode* written_entry(const char* list_path, std::string_view key);

  // Moves what was added to an entry last before everything else in it.
  void move_last_child_first(const char* list_path, std::string_view key);

  // Takes back everything that was added since `mark()` gave `size`.
  std::size_t mark() const { return used_; }
  void roll_back(std::size_t size);

  // True when adds were left out because no entry of their list was current, since the last call.
  bool take_left_out();

 private:
  struct Current {
    const lysc_node* list;
    std::string key;
    OutputNode* node;  // null: found or made by key when it is needed
  };
  struct EntryKey {
    const OutputNode* parent;
    const lysc_node* list;
    std::string_view key;  // of an entry that is remembered: its own
    bool operator==(const EntryKey&) const = default;
  };
  struct EntryKeyHash {
    std::size_t operator()(const EntryKey& key) const noexcept;
  };

  const PathCache::Steps* resolve(const char* path, const char* ns);
  cerrno add_steps(OutputNode* parent, const PathCache::Steps& steps, std::size_t first, const char* value,
                   const yfw_datatree* source, yfw_node_slot* slot, bool list_entry, std::string_view new_key);
  cerrno remove_steps(OutputNode* parent, const PathCache::Steps& steps, std::size_t first, yfw_node_slot* slot);
  OutputNode* child(OutputNode* parent, const lysc_node* schema) const;
  OutputNode* top_entry(const char* list_path, std::string_view key);
  OutputNode* make(OutputNode* parent, const lysc_node* schema);
  OutputNode* make_entry(OutputNode* parent, const lysc_node* list, std::string_view key);
  OutputNode* current_entry(OutputNode* parent, const lysc_node* list);
  void name_entry(OutputNode* entry, std::string_view key);
  Current* current(const lysc_node* list);

  PathCache& paths_;
  RecentTexts<const PathCache::Steps*> recent_paths_;
  OutputNode root_;
  std::deque<OutputNode> nodes_;  // those behind the first `used_` wait to be used again
  std::size_t used_ = 0;
  std::vector<Current> current_;
  std::unordered_map<EntryKey, OutputNode*, EntryKeyHash> entries_;
  bool left_out_ = false;
};

// The output as a native edit: operations as metadata, removed leaves without a value. Throws Refused when the native
// model cannot hold a value.
Data to_edit(const OutputTree& output);

// The output as data. What the model cannot hold, entries of a leaf-list that are there already and leaves without a
// value are left out, each with a warning.
Data to_data(const OutputTree& output, std::vector<Warning>& warnings);

// The paths that were asked for, in order, each once.
std::vector<std::string> to_paths(const OutputTree& output);

}  // namespace yfw
