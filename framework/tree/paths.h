// Instance paths, as messages and reports write them: /module:node/node[key='value'].
#pragma once

#include <string>
#include <string_view>
#include <utility>

struct lyd_node;
struct lys_module;

namespace yfw {

// An instance path that is made step by step.
class InstancePath {
 public:
  // That of nothing, at the top.
  InstancePath() = default;
  // That of a node, opaque ones included; null is at the top.
  explicit InstancePath(const lyd_node* node);

  // Goes on to a node in that one. Its module is named where it is another one; null is no known module, and goes
  // unnamed.
  InstancePath& step(const lys_module* module, std::string_view name);
  // Tells one entry of a list from others, or one value of a leaf-list (name ".").
  InstancePath& predicate(std::string_view name, std::string_view value);

  const std::string& text() const { return text_; }
  std::string take() { return std::move(text_); }

 private:
  std::string text_;
  const lys_module* module_ = nullptr;
};

}  // namespace yfw
