// A document as it stands there, before any model is asked: named elements with values, the same for XML and JSON.
#pragma once

#include <cstdint>
#include <functional>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/documents/arena.h"
#include "yfw-host/data.h"

namespace yfw {

// Limits that no honest document comes near.
inline constexpr int kDeepest = 200;
inline constexpr std::size_t kLongestText = 1U << 20;
inline constexpr std::size_t kLongestAttribute = 1U << 16;
inline constexpr std::size_t kMostMembers = 1000;
inline constexpr std::size_t kMostAttributes = 256;  // of one element, namespace declarations among them
inline constexpr std::size_t kMostScopes = 256;      // namespaces that are declared at one place
inline constexpr std::size_t kMostAlike = 4096;      // entries of one list that has no key

// How a value is written. XML knows only `nothing` and `text`.
enum class Kind : std::uint8_t {
  nothing,  // <a/>, or a JSON member that is only annotated
  text,
  number,
  boolean,
  null,
  empty,       // [null]
  no_entries,  // []
  object,
};

// A namespace declaration and those around it.
struct Scope {
  const char* prefix;  // "" for the default namespace
  const char* ns;
  const Scope* outer;
};

// An XML attribute, or a JSON annotation (RFC 7952).
struct Attribute {
  const char* ns;  // namespace in XML, module name in JSON; null when there is none
  const char* name;
  const char* value;
  const Attribute* next;
};

struct Element {
  const char* name = "";
  const char* ns = nullptr;  // namespace in XML, module name in JSON (inherited); null when there is none
  const char* value = "";
  const Scope* scope = nullptr;
  const Attribute* attributes = nullptr;
  Element* first = nullptr;
  Element* last = nullptr;
  Element* next = nullptr;
  int line = 0;
  Kind kind = Kind::nothing;
  bool in_array = false;
  // The text of a foreign subtree, of which nothing else is read; null for all other elements. XML: an element that
  // declares every prefix it needs. JSON: the member, with what is annotated to it.
  const char* foreign = nullptr;
  bool is_repeated = false;   // of a JSON member whose name its object had already
  bool has_children = false;  // also of those that were taken
  bool is_taken = false;      // stands in no list of children: it goes when it ends

  // True when there is no value but blanks.
  bool is_blank() const;
};

// Takes elements out of a document while it is read, so that it never stands in memory as a whole.
class Taker {
 public:
  Taker() = default;
  Taker(const Taker&) = delete;
  Taker& operator=(const Taker&) = delete;
  virtual ~Taker() = default;

  // Asked as `child` begins, while nothing is taken: shall the children of `parent` be, beginning with this one?
  virtual bool begins_in(const Element& parent, const Element& child) = 0;
  // The same of an element that will be taken itself, as its first child or its second one begins. True: the children
  // that it has so far are left to the taker, too.
  virtual bool goes_on_in(const Element& parent) = 0;
  // An element of which these are true has ended, and is forgotten afterwards.
  virtual void take(const Element& element) = 0;
};

// The elements of one document, but those that were taken. Names and namespaces are interned: equal ones have equal
// addresses.
class Source {
 public:
  // Is this namespace (XML) or module name (JSON) one of models that are not loaded?
  using IsForeign = std::function<bool(const char* ns)>;

  // Throws Unreadable, naming the document, the line and the reason. What is foreign is well-formed and within the
  // limits too, but not looked into; without `is_foreign` nothing is. What `taker` throws comes through.
  explicit Source(const Document& document, IsForeign is_foreign = {}, Taker* taker = nullptr);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  Format format() const { return format_; }
  const std::string& name() const { return name_; }
  // Stands for the document itself; its children are the elements at the top.
  const Element& top() const { return *top_; }

  // The namespace that a prefix is bound to where an element stands; null when it is not declared.
  static const char* bound(const Element& element, std::string_view prefix);

  // For the readers of the two formats.
  bool is_foreign(const char* ns);
  const char* intern(std::string_view text);
  const char* keep(std::string_view text);
  // Adds a child. Unless `may_be_taken`, something will be said about its parent or about it after its end.
  Element* begin(Element& parent, const char* name, const char* ns, int line, bool may_be_taken);
  // Nothing more will be said about the element or what is in it.
  void end(const Element& element);
  template <typename Record>
  Record* store(const Record& record) {
    return new (arena_.allocate(sizeof(Record), alignof(Record))) Record(record);
  }
  [[noreturn]] void fail(int line, std::string_view reason) const;

 private:
  void read_xml(std::string_view text);
  void read_json(std::string_view text);

  bool is_to_be_taken(const Element& parent, const Element& child);

  std::pmr::monotonic_buffer_resource names_memory_;
  std::unordered_set<std::string_view> names_;
  std::unique_ptr<void, void (*)(void*)> names_owner_{nullptr, nullptr};  // of those that libxml2 interned
  Arena arena_;
  IsForeign is_foreign_;
  std::unordered_map<const char*, bool> foreign_;
  Taker* taker_;
  std::vector<const Element*> taken_from_;  // each is a child of the one before
  Format format_;
  std::string name_;
  Element* top_;
};

}  // namespace yfw
