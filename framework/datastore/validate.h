// Validation by libyang, where something can fail.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "yfw-host/data.h"

struct lyd_node;
struct lys_module;
struct lysc_node;

namespace yfw {

// How far one has to look to know that a node is right.
enum class Reach : std::uint8_t {
  nowhere,  // there is nothing that could be wrong
  entry,    // at the entry of the outermost list that it is in
  beyond,   // at what else there is: references and conditions may name it, and entries may be unique among others
};

// Knows of each schema node, judged once, whether validation can find anything at it: libyang visits every node, makes
// every default on its way and looks for every key, which is most of what a request costs, and most models give it
// nothing to do.
class Validator {
 public:
  Validator();
  ~Validator();
  Validator(const Validator&) = delete;
  Validator& operator=(const Validator&) = delete;

  // Validates configuration: false when it is not valid, and libyang's context says why. Data in which nothing can fail
  // stay as they are; others get the model's defaults, and lose nodes whose condition no longer holds.
  bool validate(Data& data);

  // How far validation of these nodes and their siblings, which stand at the top, has to look. Where it is nowhere,
  // nodes are marked whose condition was seen to hold.
  Reach reach(lyd_node* siblings);

  // How far configuration of these modules may ever make validation look.
  Reach reach(const std::vector<const lys_module*>& modules);

 private:
  struct Judged;
  using Wanted = std::vector<std::pair<const lysc_node*, Reach>>;

  const Judged& judged(const lysc_node* node);
  Wanted wanted_among(const lysc_node* first);
  Reach reach_when_absent(const lysc_node* node);
  Reach reach_below(lyd_node* siblings);
  bool wants_beside_lists(const lyd_node* siblings);
  Reach reach_of_schema(const lysc_node* first);

  std::unordered_map<const lysc_node*, std::unique_ptr<Judged>> judged_;
  std::unordered_map<const lys_module*, Wanted> wanted_at_top_;
  std::vector<lyd_node*> met_;  // whose condition holds
};

}  // namespace yfw
