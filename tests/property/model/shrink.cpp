// Shrinking by trying everything that is a little smaller.
#include "property/model/shrink.h"

#include <cstddef>
#include <vector>

namespace property {

namespace {

using Fails = std::function<bool(const Sequence&)>;

void collect(Element& element, std::vector<Element*>& all) {
  all.push_back(&element);
  for (Element& child : element.children) collect(child, all);
}

std::size_t size_of(Request& request) {
  std::vector<Element*> all;
  collect(request.interfaces, all);
  return all.size();
}

class Shrinker {
 public:
  Shrinker(Sequence sequence, const Fails& fails) : best_(std::move(sequence)), fails_(fails) {}

  Sequence smallest() {
    while (requests() || elements() || start()) {
    }
    return best_;
  }

 private:
  bool take(const Sequence& smaller) {
    if (!fails_(smaller)) return false;
    best_ = smaller;
    return true;
  }

  bool requests() {
    for (std::size_t i = best_.requests.size(); i-- > 0;) {
      Sequence smaller = best_;
      smaller.requests.erase(smaller.requests.begin() + static_cast<std::ptrdiff_t>(i));
      if (take(smaller)) return true;
    }
    return false;
  }

  bool elements() {
    for (std::size_t i = 0; i < best_.requests.size(); ++i) {
      const std::size_t size = size_of(best_.requests[i]);
      for (std::size_t k = 0; k < size; ++k) {
        if (without_children(i, k) || plainer(i, k)) return true;
      }
      Sequence smaller = best_;
      smaller.requests[i].default_operation = Op::merge;
      smaller.requests[i].shape = Shape::config;
      const bool is_plain =
          best_.requests[i].default_operation == Op::merge && best_.requests[i].shape == Shape::config;
      if (!is_plain && take(smaller)) return true;
    }
    return false;
  }

  // One child of an element less.
  bool without_children(std::size_t request, std::size_t element) {
    const auto children = [request, element](Sequence& sequence) -> std::vector<Element>& {
      std::vector<Element*> all;
      collect(sequence.requests[request].interfaces, all);
      return all[element]->children;
    };
    for (std::size_t i = 0; i < children(best_).size(); ++i) {
      Sequence smaller = best_;
      children(smaller).erase(children(smaller).begin() + static_cast<std::ptrdiff_t>(i));
      if (take(smaller)) return true;
    }
    return false;
  }

  // An operation less.
  bool plainer(std::size_t request, std::size_t element) {
    Sequence smaller = best_;
    std::vector<Element*> all;
    collect(smaller.requests[request].interfaces, all);
    if (all[element]->op == Op::inherit) return false;
    all[element]->op = Op::inherit;
    return take(smaller);
  }

  // An entry or a leaf of the start less.
  bool start() {
    const Native start = best_.start;
    for (const auto& [name, entry] : start) {
      Sequence smaller = best_;
      smaller.start.erase(name);
      if (take(smaller)) return true;
      for (const auto& leaf : entry) {
        smaller = best_;
        smaller.start[name].erase(leaf.first);
        if (take(smaller)) return true;
      }
    }
    return false;
  }

  Sequence best_;
  const Fails& fails_;
};

}  // namespace

Sequence shrink(Sequence sequence, const std::function<bool(const Sequence&)>& fails) {
  return Shrinker(std::move(sequence), fails).smallest();
}

}  // namespace property
