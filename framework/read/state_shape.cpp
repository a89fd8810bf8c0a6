// Ids compared, and the instances of long lists sorted by what they look like and where they stand.
#include "framework/read/state_shape.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "framework/tree/schema.h"

namespace yfw {

namespace {

// Leaves that hold a VLAN id. One that is missing here costs time and nothing else.
constexpr std::array<std::string_view, 8> kIds{"vlan-id",    "vlan-id-low", "vlan-id-high", "tag",
                                               "second-tag", "outer-tag",   "native-vlan",  "access-vlan"};
constexpr int kLastId = 4094;

std::optional<int> number_of(const lyd_node* leaf) {
  const char* const text = lyd_get_value(leaf);
  const std::size_t size = std::strlen(text);
  const bool is_id = std::find(kIds.begin(), kIds.end(), std::string_view(LYD_NAME(leaf))) != kIds.end();
  if (!is_id || size == 0 || size > 4) return std::nullopt;
  return std::atoi(text);
}

bool is_vlan(const std::optional<int>& id) {
  return id.has_value() && *id >= 1 && *id <= kLastId;
}

int beside(int id) {
  return id == kLastId ? id - 1 : id + 1;
}

template <typename T>
void append_bytes(std::string& text, const T& value) {
  text.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void append_schema(std::string& text, const lysc_node* schema) {
  append_bytes(text, reinterpret_cast<std::uintptr_t>(schema));
}

// The part with its length, so that texts made of parts are the same only when all parts are.
void append_part(std::string& text, const std::string& part) {
  append_bytes(text, part.size());
  text += part;
}

bool is_innermost_list(const lysc_node* node) {
  if (node->nodetype != LYS_LIST) return false;
  const lysc_node* child = nullptr;
  LY_LIST_FOR(lysc_node_child(node), child) {
    if (!is_term(child)) return false;
  }
  return true;
}

// An instance of an innermost list with its leaves, or one leaf that stands elsewhere.
struct Family {
  std::size_t first;  // leaf
  std::size_t last;   // one past it
  std::string look = {};
  bool is_special = false;   // how it stands to other families may matter
  bool is_landmark = false;  // judged by itself
};

// The families of one list, or a single one.
struct Row {
  std::string before;  // the structure since the row before
  std::size_t first;   // family
  std::size_t last;    // one past it
};

class Shape {
 public:
  explicit Shape(const std::vector<const lyd_node*>& containers) {
    for (const lyd_node* const container : containers) walk(container);
    for (Family& family : families_) family.look = look_of(family);
    find_special_ids();
    for (const Row& row : rows_) find_odd_ones(row);
    number_special_ids();
    for (const Row& row : rows_) find_landmarks(row);
  }

  StateShape run(std::string surroundings) {
    shape_.text = std::move(surroundings);
    for (const Row& row : rows_) add(row);
    append_part(shape_.text, structure_);
    return std::move(shape_);
  }

 private:
  void walk(const lyd_node* node) {
    append_schema(structure_, node->schema);
    const lyd_node* child = lyd_child(node);
    while (child != nullptr) {
      const lysc_node* const schema = child->schema;
      const std::size_t first = families_.size();
      if (is_innermost_list(schema)) {
        for (; child != nullptr && child->schema == schema; child = child->next) add_family(lyd_child(child), nullptr);
      } else {
        if (is_term(schema)) add_family(child, child->next);
        if (!is_term(schema) && (child->flags & LYD_DEFAULT) == 0) walk(child);
        child = child->next;
      }
      if (!is_innermost_list(schema) && !is_term(schema)) continue;
      append_schema(structure_, schema);
      rows_.push_back({std::exchange(structure_, {}), first, families_.size()});
    }
    structure_ += ')';
  }

  void add_family(const lyd_node* leaf, const lyd_node* end) {
    const std::size_t first = shape_.leaves.size();
    for (; leaf != end; leaf = leaf->next) {
      shape_.leaves.push_back(leaf);
      ids_.push_back(number_of(leaf));
    }
    families_.push_back({first, shape_.leaves.size()});
  }

  // The leaves with their values, an id by how it stands to the one before it.
  std::string look_of(const Family& family) const {
    std::string look;
    std::optional<int> last;
    for (std::size_t i = family.first; i < family.last; ++i) {
      append_schema(look, shape_.leaves[i]->schema);
      if (!is_vlan(ids_[i])) {
        append_part(look, lyd_get_value(shape_.leaves[i]));
        continue;
      }
      look += last.has_value() ? relation(*last, *ids_[i]) : 'i';
      look += *ids_[i] == kLastId ? '|' : ' ';
      last = ids_[i];
    }
    return look;
  }

  static char relation(int last, int id) {
    if (id == last) return 'e';
    if (id == beside(last)) return 'n';
    if (last == beside(id)) return 'p';
    return id > last ? 'g' : 'l';
  }

  // Where the same leaf of several families has one id, that id and the one beside it. A 0 beside a 1 is such, since
  // changing it makes an id; no other number that is none comes to be one.
  void find_special_ids() {
    using Value = std::pair<const lysc_node*, int>;
    std::map<Value, std::size_t> places;
    std::set<Value> special;
    for_each_id([&](const Value& value, std::size_t family) {
      if (value.second > kLastId) return;
      const bool is_shared = value.second != 0 && places.emplace(value, family).first->second != family;
      if (is_shared || value.second == 0) special.insert({value, {value.first, beside(value.second)}});
    });
    for_each_id([&](const Value& value, std::size_t family) {
      const bool is_lonely_zero = value.second == 0 && !places.contains({value.first, 1});
      if (special.contains(value) && !is_lonely_zero) families_[family].is_special = true;
    });
  }

  template <typename Work>
  void for_each_id(const Work& work) {
    for (std::size_t family = 0; family < families_.size(); ++family) {
      for (std::size_t i = families_[family].first; i < families_[family].last; ++i) {
        if (ids_[i].has_value()) work(std::make_pair(shape_.leaves[i]->schema, *ids_[i]), family);
      }
    }
  }

  // What an instance lacks, or has no id in, may count as that of the one before it.
  void find_odd_ones(const Row& row) {
    const auto size = [](const Family& family) { return family.last - family.first; };
    const Family& whole =
        *std::max_element(family_at(row.first), family_at(row.last),
                          [&size](const Family& left, const Family& right) { return size(left) < size(right); });
    for (std::size_t i = row.last; i-- > row.first;) {
      Family& family = families_[i];
      bool is_odd = size(family) != size(whole);
      bool is_valid = true;
      for (std::size_t leaf = family.first; leaf < family.last; ++leaf) {
        is_valid = is_valid && is_vlan(ids_[leaf]);
        is_odd = is_odd || shape_.leaves[leaf]->schema != shape_.leaves[whole.first + leaf - family.first]->schema;
      }
      family.is_special = family.is_special || is_odd;
      if (!is_valid && i > row.first) append_part(family.look, families_[i - 1].look);
    }
  }

  // Special ids in their order, with room between those that are not beside each other.
  void number_special_ids() {
    for (const Family& family : families_) {
      for (std::size_t i = family.first; family.is_special && i < family.last; ++i) {
        if (ids_[i].has_value()) numbers_.emplace(*ids_[i], 0);
      }
    }
    int number = 0;
    std::optional<int> last;
    for (auto& [id, numbered] : numbers_) {
      number += last.has_value() && id == *last + 1 ? 1 : 2;
      numbered = number;
      last = id;
    }
  }

  // The ends of a row, what is special in it and what is beside that, and the first and the last of each look.
  void find_landmarks(const Row& row) {
    std::map<std::string_view, std::size_t> lasts;
    for (std::size_t i = row.first; i < row.last; ++i) {
      const bool is_end = i == row.first || i + 1 == row.last;
      const bool is_first = lasts.insert_or_assign(families_[i].look, i).second;
      const bool is_near = families_[i].is_special || (i > row.first && families_[i - 1].is_special) ||
                           (i + 1 < row.last && families_[i + 1].is_special);
      families_[i].is_landmark = is_end || is_first || is_near;
    }
    for (const auto& [look, at] : lasts) families_[at].is_landmark = true;
  }

  // Between one landmark and the next, families of one look share their groups.
  void add(const Row& row) {
    append_part(shape_.text, row.before);
    std::map<std::string_view, std::size_t> between;
    for (std::size_t i = row.first; i < row.last; ++i) {
      const Family& family = families_[i];
      if (family.is_landmark) between.clear();
      const auto [group, is_new] = between.try_emplace(family.look, groups_);
      if (is_new) {
        groups_ += family.last - family.first;
        add_look(family);
      }
      for (std::size_t leaf = family.first; leaf < family.last; ++leaf) {
        shape_.groups.push_back(group->second + leaf - family.first);
      }
      if (family.is_landmark) between.clear();
    }
  }

  void add_look(const Family& family) {
    shape_.text += !family.is_landmark ? '~' : family.is_special ? '*' : '#';
    append_part(shape_.text, family.look);
    if (!family.is_special) return;
    for (std::size_t i = family.first; i < family.last; ++i) {
      if (ids_[i].has_value()) append_bytes(shape_.text, numbers_.at(*ids_[i]));
    }
  }

  std::vector<Family>::const_iterator family_at(std::size_t at) const {
    return families_.begin() + static_cast<std::ptrdiff_t>(at);
  }

  std::vector<std::optional<int>> ids_;  // of each leaf
  std::vector<Family> families_;
  std::vector<Row> rows_;
  std::map<int, int> numbers_;
  std::string structure_;
  StateShape shape_;
  std::size_t groups_ = 0;
};

}  // namespace

StateShape shape_of(std::string surroundings, const std::vector<const lyd_node*>& containers) {
  return Shape(containers).run(std::move(surroundings));
}

}  // namespace yfw
