// Types in words.
#include "framework/documents/types.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "framework/documents/source.h"

namespace yfw {

namespace {

constexpr std::size_t kMostNames = 12;

std::string joined(const std::vector<std::string>& names, std::string_view separator) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kMostNames); ++i) {
    text += fmt::format("{}{}", i == 0 ? "" : separator, names[i]);
  }
  if (names.size() > kMostNames) text += fmt::format("{}{} more", separator, names.size() - kMostNames);
  return text;
}

bool is_unsigned(LY_DATA_TYPE type) {
  return type == LY_TYPE_UINT8 || type == LY_TYPE_UINT16 || type == LY_TYPE_UINT32 || type == LY_TYPE_UINT64 ||
         type == LY_TYPE_STRING;
}

std::string parts_of(const lysc_range* range, LY_DATA_TYPE type) {
  std::vector<std::string> parts;
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(range->parts, i) {
    const auto& part = range->parts[i];
    const bool plain = is_unsigned(type);
    const std::string low = plain ? fmt::to_string(part.min_u64) : fmt::to_string(part.min_64);
    const std::string high = plain ? fmt::to_string(part.max_u64) : fmt::to_string(part.max_64);
    const bool open = plain && part.max_u64 == std::numeric_limits<std::uint64_t>::max();
    parts.push_back(open ? low + " or more" : low == high ? low : fmt::format("{}..{}", low, high));
  }
  return joined(parts, ", ");
}

template <typename Number>
std::string whole_range() {
  return fmt::format("{}..{}", std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max());
}

std::string numbers(const lysc_type* type) {
  const lysc_range* const range = reinterpret_cast<const lysc_type_num*>(type)->range;
  if (range != nullptr) return parts_of(range, type->basetype);
  switch (type->basetype) {
    case LY_TYPE_INT8:
      return whole_range<std::int8_t>();
    case LY_TYPE_INT16:
      return whole_range<std::int16_t>();
    case LY_TYPE_INT32:
      return whole_range<std::int32_t>();
    case LY_TYPE_UINT8:
      return whole_range<std::uint8_t>();
    case LY_TYPE_UINT16:
      return whole_range<std::uint16_t>();
    case LY_TYPE_UINT32:
      return whole_range<std::uint32_t>();
    case LY_TYPE_UINT64:
      return whole_range<std::uint64_t>();
    default:
      return whole_range<std::int64_t>();
  }
}

std::string texts(const lysc_type_str* type) {
  std::string text = "a text";
  if (type->length != nullptr) text += fmt::format(" of {} characters", parts_of(type->length, LY_TYPE_STRING));
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(type->patterns, i) {
    const lysc_pattern& pattern = *type->patterns[i];
    text += fmt::format("{} {} {}", i == 0 ? "" : " and", pattern.inverted ? "not like" : "like", pattern.expr);
  }
  return text;
}

void collect_derived(const lysc_ident* base, std::vector<std::string>& names) {
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(base->derived, i) {
    const lysc_ident* const each = base->derived[i];
    std::string name = fmt::format("{}:{}", each->module->name, each->name);
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
    collect_derived(each, names);
  }
}

}  // namespace

const lysc_type* real_type(const lysc_node* leaf) {
  const lysc_type* const type = leaf->nodetype == LYS_LEAF ? reinterpret_cast<const lysc_node_leaf*>(leaf)->type
                                                           : reinterpret_cast<const lysc_node_leaflist*>(leaf)->type;
  if (type->basetype != LY_TYPE_LEAFREF) return type;
  return reinterpret_cast<const lysc_type_leafref*>(type)->realtype;
}

std::string allowed_values(const lysc_type* type) {
  std::vector<std::string> names;
  LY_ARRAY_COUNT_TYPE i = 0;
  switch (type->basetype) {
    case LY_TYPE_STRING:
      return texts(reinterpret_cast<const lysc_type_str*>(type));
    case LY_TYPE_ENUM:
      LY_ARRAY_FOR(reinterpret_cast<const lysc_type_enum*>(type)->enums, i) {
        names.emplace_back(reinterpret_cast<const lysc_type_enum*>(type)->enums[i].name);
      }
      return joined(names, ", ");
    case LY_TYPE_IDENT:
      LY_ARRAY_FOR(reinterpret_cast<const lysc_type_identityref*>(type)->bases, i) {
        collect_derived(reinterpret_cast<const lysc_type_identityref*>(type)->bases[i], names);
      }
      return joined(names, ", ");
    case LY_TYPE_UNION:
      LY_ARRAY_FOR(reinterpret_cast<const lysc_type_union*>(type)->types, i) {
        names.push_back(allowed_values(reinterpret_cast<const lysc_type_union*>(type)->types[i]));
      }
      return joined(names, ", or ");
    case LY_TYPE_LEAFREF:
      return allowed_values(reinterpret_cast<const lysc_type_leafref*>(type)->realtype);
    case LY_TYPE_BOOL:
      return "true, false";
    case LY_TYPE_EMPTY:
      return "no value at all";
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
    case LY_TYPE_INT64:
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
    case LY_TYPE_UINT64:
      return numbers(type);
    default:
      return "a value of the model's type";
  }
}

std::string quoted(std::string_view value) {
  constexpr std::size_t kLongest = 60;
  if (value.size() <= kLongest) return fmt::format("\"{}\"", value);
  // Not in the middle of a character.
  std::size_t end = kLongest;
  while (end > 0 && (static_cast<unsigned char>(value[end]) & 0xC0) == 0x80) --end;
  return fmt::format("\"{}...\"", value.substr(0, end));
}

std::string_view wanted_in_json(const lyd_node_term* leaf, Kind written) {
  const lyd_value* value = &leaf->value;
  while (value->realtype->basetype == LY_TYPE_UNION) value = &value->subvalue->value;
  switch (value->realtype->basetype) {
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
      return written == Kind::number ? "" : "a number";
    case LY_TYPE_BOOL:
      return written == Kind::boolean ? "" : "true or false without quotes";
    case LY_TYPE_EMPTY:
      return written == Kind::empty ? "" : "[null]";
    default:
      return written == Kind::text ? "" : "a text in quotes";
  }
}

}  // namespace yfw
