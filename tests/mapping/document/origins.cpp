// Leaves the elements of a native document out, one after another, and compares what is read.
#include "mapping/document/origins.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>

namespace mapping {

namespace {

struct Span {
  Element element;
  std::size_t first;  // lines
  std::size_t last;
};

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string without(const std::vector<std::string>& lines, const Span& span) {
  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i < span.first || i > span.last) text += lines[i] + "\n";
  }
  return text;
}

// The elements below the entry.
class Spans {
 public:
  Spans(const std::vector<std::string>& lines, const std::string& entry, const std::string& key) : key_(key) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const std::string line = lines[i].substr(std::min(lines[i].find('<'), lines[i].size()));
      if (line.starts_with("</")) {
        close(i);
      } else if (line.starts_with("<")) {
        open(line, entry, i);
      }
    }
    number();
  }

  std::vector<Span> all;

 private:
  struct Open {
    std::string path;
    std::size_t span;  // in `all`, or past it for what is not below the entry
  };

  void open(const std::string& line, const std::string& entry, std::size_t at) {
    const std::string name = line.substr(1, line.find_first_of(" />") - 1);
    const std::size_t value = line.find('>') + 1;
    const bool is_leaf = line.find("</") != std::string::npos;
    const bool is_closed = is_leaf || line.ends_with("/>");
    const bool is_entry = !is_inside_ && name == entry && !is_closed;
    std::string path = open_.empty() || open_.back().path.empty() ? name : open_.back().path + "/" + name;
    std::size_t span = static_cast<std::size_t>(-1);
    if (is_inside_ && path != key_) {
      span = all.size();
      all.push_back({{path, is_leaf ? line.substr(value, line.find("</") - value) : ""}, at, at});
    }
    if (!is_closed) open_.push_back({is_inside_ ? path : "", span});
    is_inside_ = is_inside_ || is_entry;
    if (is_entry) entry_depth_ = open_.size();
  }

  void close(std::size_t at) {
    if (open_.back().span < all.size()) all[open_.back().span].last = at;
    if (open_.size() == entry_depth_) is_inside_ = false;
    open_.pop_back();
  }

  // Numbers steps that stand several times in one place.
  void number() {
    for (std::size_t i = 0; i < all.size(); ++i) {
      const std::string path = all[i].element.path;
      std::vector<std::size_t> same;
      for (std::size_t j = i; j < all.size(); ++j) {
        if (all[j].element.path == path) same.push_back(j);
      }
      for (std::size_t n = 0; same.size() > 1 && n < same.size(); ++n) {
        const std::string numbered = path + "[" + std::to_string(n + 1) + "]";
        for (std::size_t j = same[n]; j < all.size() && all[j].first <= all[same[n]].last; ++j) {
          all[j].element.path.replace(0, path.size(), numbered);
        }
      }
    }
  }

  std::string key_;
  std::vector<Open> open_;
  bool is_inside_ = false;
  std::size_t entry_depth_ = 0;
};

// The numbers in a text; names have none.
std::set<std::string> numbers_of(const std::string& text) {
  std::set<std::string> numbers;
  if (text.empty() || std::isdigit(static_cast<unsigned char>(text.front())) == 0) return numbers;
  std::string number;
  for (const char c : text + " ") {
    if (std::isdigit(static_cast<unsigned char>(c)) != 0) {
      number += c;
    } else if (!number.empty()) {
      numbers.insert(number);
      number.clear();
    }
  }
  return numbers;
}

bool share_a_number(const std::string& left, const std::string& right) {
  const std::set<std::string> numbers = numbers_of(left);
  const std::set<std::string> others = numbers_of(right);
  return std::any_of(numbers.begin(), numbers.end(), [&others](const auto& each) { return others.contains(each); });
}

// Takes note of what an element that was left out has to do with a leaf.
void judge(const Element& element, const property::Values& remaining, Origin& origin) {
  bool is_source = false;
  bool is_needed = false;
  for (const std::string& value : origin.values) {
    const bool is_own = share_a_number(element.value, value);
    const bool is_gone = std::find(remaining.begin(), remaining.end(), value) == remaining.end();
    is_source = is_source || (is_gone && is_own);
    is_needed = is_needed || (is_gone && !is_own);
  }
  // A container matters by itself when nothing in it does.
  const auto is_inside = [&element](const Element& each) { return each.path.starts_with(element.path + "/"); };
  if (std::any_of(origin.sources.begin(), origin.sources.end(), is_inside)) return;
  if (std::any_of(origin.needed.begin(), origin.needed.end(), is_inside)) return;
  if (is_source) origin.sources.push_back(element);
  if (is_needed) origin.needed.push_back(element);
}

}  // namespace

std::map<std::string, Origin> origins(const std::string& document, const std::string& entry, const std::string& key,
                                      const Read& read) {
  std::map<std::string, Origin> found;
  for (const auto& [path, values] : read(document)) found[path].values = values;
  const std::vector<std::string> lines = lines_of(document);
  const std::vector<Span> spans = Spans(lines, entry, key).all;
  // Containers come before what is in them, and are judged after it.
  for (auto span = spans.rbegin(); span != spans.rend(); ++span) {
    const Config remaining = read(without(lines, *span));
    for (auto& [path, origin] : found) {
      const auto left = remaining.find(path);
      judge(span->element, left == remaining.end() ? property::Values() : left->second, origin);
    }
  }
  for (auto& [path, origin] : found) {
    std::reverse(origin.sources.begin(), origin.sources.end());
    std::reverse(origin.needed.begin(), origin.needed.end());
  }
  return found;
}

}  // namespace mapping
