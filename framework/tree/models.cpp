// Finding and loading modules, by name and never by what happens to lie in a folder.
#include "framework/tree/models.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>
#include <string_view>
#include <system_error>
#include <vector>

#include "framework/tree/schema.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

namespace fs = std::filesystem;

// In the order in which they load: identities before what refers to them, types before their users.
constexpr std::array<const char*, 10> kModules{"ietf-netconf",
                                               "iana-if-type",
                                               "openconfig-vlan-types",
                                               "openconfig-interfaces",
                                               "openconfig-if-ethernet",
                                               "openconfig-if-aggregate",
                                               "openconfig-vlan",
                                               "Vexnet-OS-interface-cfg",
                                               "Vexnet-OS-l2-eth-infra-cfg",
                                               "Vexnet-OS-l2-eth-infra-oper"};

struct Folders {
  std::string yang;
  std::string openconfig;
  std::vector<std::string> further;
  std::string failure;  // of the last look-up; empty when it succeeded
};

// Which folders may hold a module. Mixing compact and published OpenConfig modules would make a model of neither.
std::vector<fs::path> folders_for(const Folders& folders, std::string_view module) {
  const bool ours = module.starts_with("Vexnet-OS-") || module == "ietf-netconf";
  const bool published = !ours && !folders.openconfig.empty();
  std::vector<fs::path> result;
  if (published) result.emplace_back(folders.openconfig);
  if (!published || !module.starts_with("openconfig-")) result.emplace_back(folders.yang);
  result.insert(result.end(), folders.further.begin(), folders.further.end());
  return result;
}

// NAME.yang, or the newest NAME@REVISION.yang; empty when the folder has neither.
fs::path find_in(const fs::path& folder, std::string_view module) {
  fs::path plain = folder / fmt::format("{}.yang", module);
  std::error_code error;
  if (fs::exists(plain, error)) return plain;
  const std::string dated = fmt::format("{}@", module);
  fs::path newest;
  const fs::directory_iterator end;
  for (fs::directory_iterator entry(folder, error); !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name.starts_with(dated) && name.ends_with(".yang")) newest = std::max(newest, entry->path());
  }
  return newest;
}

// The text of a module's file. Returns what is wrong with it; empty when nothing is.
std::string read_module(const fs::path& file, std::string& text) {
  // A stream throws in the middle of what it cannot read, and a pipe has no end.
  std::error_code error;
  if (!fs::is_regular_file(file, error)) return error ? error.message() : "it is no file";
  struct Close {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
  };
  const std::unique_ptr<std::FILE, Close> in(std::fopen(file.c_str(), "rbe"));
  if (in == nullptr) return std::strerror(errno);
  std::array<char, 1 << 14> buffer = {};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), in.get())) {
    text.append(buffer.data(), count);
  }
  if (std::ferror(in.get()) != 0) return std::strerror(errno);
  return text.find('\0') == std::string::npos ? "" : "a NUL character stands in it";
}

LY_ERR import_module(const char* module, const char*, const char* submodule, const char*, void* user,
                     LYS_INFORMAT* format, const char** text, ly_module_imp_data_free_clb* release) {
  Folders& folders = *static_cast<Folders*>(user);
  const std::string_view wanted = submodule == nullptr ? module : submodule;
  std::string places;
  for (const fs::path& folder : folders_for(folders, module)) {
    const fs::path file = find_in(folder, wanted);
    places += fmt::format("{}{}", places.empty() ? "" : " and ", folder.string());
    if (file.empty()) continue;
    std::string content;
    const std::string problem = read_module(file, content);
    if (!problem.empty()) {
      folders.failure = fmt::format("{} cannot be read: {}", file.string(), problem);
      return LY_ESYS;
    }
    *format = LYS_IN_YANG;
    *text = strdup(content.c_str());
    *release = [](void* data, void*) { std::free(data); };
    return LY_SUCCESS;
  }
  folders.failure = fmt::format("there is no {}.yang in {}", wanted, places);
  return LY_ENOTFOUND;
}

// What libyang complained about first: what follows is only who needed it.
std::string first_complaint(const ly_ctx* context) {
  for (const ly_err_item* item = ly_err_first(context); item != nullptr; item = item->next) {
    if (item->level != LY_LLERR || item->msg == nullptr) continue;
    return item->path == nullptr ? std::string(item->msg) : fmt::format("{} ({})", item->msg, item->path);
  }
  return "unknown reason";
}

// False for a submodule, which only its module can load.
bool is_module(const fs::path& file) {
  std::string text;
  read_module(file, text);
  std::string_view rest = text;
  while (!rest.empty()) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    line.remove_prefix(std::min(line.size(), line.find_first_not_of(" \t\r\xEF\xBB\xBF")));
    if (line.starts_with("submodule")) return false;
    if (line.starts_with("module")) return true;
  }
  return true;
}

// The names of all modules in a folder, in order.
std::set<std::string> modules_in(const std::string& folder) {
  std::error_code error;
  std::set<std::string> names;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path& file = entry->path();
    if (file.extension() != ".yang" || !is_module(file)) continue;
    const std::string stem = file.stem().string();
    names.insert(stem.substr(0, stem.find('@')));
  }
  if (error) throw Unreadable(fmt::format("{}: cannot be read: {}", folder, error.message()));
  if (names.empty()) throw Unreadable(fmt::format("{}: there is no YANG module in this folder", folder));
  return names;
}

const lys_module* load(ly_ctx* context, const char* module, Folders& folders) {
  ly_err_clean(context, nullptr);
  folders.failure.clear();
  const lys_module* const loaded = ly_ctx_load_module(context, module, nullptr, nullptr);
  if (loaded != nullptr) return loaded;
  throw Unreadable(fmt::format("cannot load module {}: {}", module,
                               folders.failure.empty() ? first_complaint(context) : folders.failure));
}

}  // namespace

void Models::Destroy::operator()(ly_ctx* context) const noexcept {
  ly_ctx_destroy(context);
}

Models::Models(const std::string& yang_dir, const std::string& openconfig_dir,
               const std::vector<std::string>& further_dirs) {
  // Messages are kept with the context and thread that they belong to; nothing is printed.
  ly_log_options(LY_LOSTORE);
  ly_ctx* context = nullptr;
  constexpr uint16_t kOptions = LY_CTX_NO_YANGLIBRARY | LY_CTX_REF_IMPLEMENTED | LY_CTX_SET_PRIV_PARSED |
                                LY_CTX_DISABLE_SEARCHDIRS | LY_CTX_DISABLE_SEARCHDIR_CWD;
  if (ly_ctx_new(nullptr, kOptions, &context) != LY_SUCCESS) throw Unreadable("cannot start the YANG library");
  context_.reset(context);

  Folders folders{yang_dir, openconfig_dir, {}, {}};
  ly_ctx_set_module_imp_clb(context, import_module, &folders);
  for (const char* const module : kModules) load(context, module, folders);
  folders.further = further_dirs;
  for (const std::string& folder : further_dirs) {
    for (const std::string& module : modules_in(folder)) {
      const bool is_known = ly_ctx_get_module_implemented(context, module.c_str()) != nullptr;
      const lys_module* const loaded = load(context, module.c_str(), folders);
      if (!is_known) further_.insert(loaded);
    }
  }
  native_.assign(further_.begin(), further_.end());
  native_.push_back(ly_ctx_get_module_implemented(context, kNativeInterfaceModule));
  ly_err_clean(context, nullptr);
  ly_ctx_set_module_imp_clb(context, nullptr, nullptr);
}

}  // namespace yfw
