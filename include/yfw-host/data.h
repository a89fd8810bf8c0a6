// Documents that come in and data trees that go out: the two things that cross the framework's border.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

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

// A part of a running configuration in a model that is not loaded.
struct Foreign {
  std::string path;  // where it stands, as an instance path
  std::string ns;    // namespace in XML, module name in JSON
  std::string name;
  std::string text;  // XML: an element that declares every prefix it needs; JSON: the member, with its annotation
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

  // How many nodes at the top a print would show.
  std::size_t shown() const;
  // Puts what is at the top, which is something, into NETCONF's <data>, for XML.
  void wrap();

  // The whole tree as text, indented, ending in a newline; defaults that nobody set are left out.
  // Empty data prints as nothing in XML and as "{}" in JSON.
  std::string print(Format format) const;

  // The same as a document that can be read again, also when nothing or several nodes are at the top: in XML these
  // stand in NETCONF's <data>.
  std::string print_document(Format format) const;

  // The same texts, handed on piece by piece, so that none is held as a whole. What `sink` throws comes through.
  using Sink = std::function<void(std::string_view)>;
  void print(Format format, const Sink& sink) const;
  void print_document(Format format, const Sink& sink) const;

 private:
  lyd_node* first_ = nullptr;
};

}  // namespace yfw
