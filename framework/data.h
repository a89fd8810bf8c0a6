// Documents that come in and data trees that go out: the two things that cross the framework's border.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct lyd_node;

namespace yfw {

enum class Format : std::uint8_t { xml, json };

// Operations of RFC 6241 section 7.2, and `none` for a default-operation that changes nothing by itself.
enum class Operation : std::uint8_t { merge, replace, create, delete_, remove, none };

constexpr bool removes(Operation operation) {
  return operation == Operation::delete_ || operation == Operation::remove;
}

// A text to be read, as it came. `name` is what messages call it, e.g. a file name.
struct Document {
  std::string_view text = {};
  Format format = Format::xml;
  std::string name = "request";
};

// An owned data tree (all siblings at the top). Move-only; empty when it holds no node. Must not outlive the host that
// made it.
class Data {
 public:
  Data() = default;
  explicit Data(lyd_node* first) noexcept : first_(first) {}
  ~Data();
  Data(Data&& other) noexcept : first_(other.release()) {}
  Data& operator=(Data&& other) noexcept {
    reset(other.release());
    return *this;
  }
  Data(const Data&) = delete;
  Data& operator=(const Data&) = delete;

  bool empty() const noexcept { return first_ == nullptr; }
  lyd_node* get() const noexcept { return first_; }
  // Where C functions that grow or replace the tree leave its first node.
  lyd_node** out() noexcept { return &first_; }
  lyd_node* release() noexcept {
    lyd_node* const first = first_;
    first_ = nullptr;
    return first;
  }
  void reset(lyd_node* first = nullptr) noexcept;
  Data clone() const;

  // The whole tree as text, indented, ending in a newline; defaults that nobody set are left out.
  // Empty data prints as nothing in XML and as "{}" in JSON.
  std::string print(Format format) const;

 private:
  lyd_node* first_ = nullptr;
};

}  // namespace yfw
