// The finished library as a file: what it exports and imports, what can be put in the place of its handlers, and its
// headers as their users see them.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>

#include "yfw/yfw_map.h"

namespace {

struct Output {
  int status;
  std::string text;
};

Output run(const std::string& command) {
  std::FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
  Output output{-1, {}};
  char buffer[4096];
  while (pipe != nullptr && std::fgets(buffer, sizeof buffer, pipe) != nullptr) output.text += buffer;
  if (pipe != nullptr) output.status = ::pclose(pipe);
  return output;
}

std::string file_text(const std::string& path) {
  std::ifstream stream(path);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string sorted_lines(const std::string& document) {
  std::istringstream stream(document);
  std::set<std::string> sorted;
  for (std::string line; std::getline(stream, line);) sorted.insert(line);
  std::string joined;
  for (const std::string& line : sorted) joined += line + '\n';
  return joined;
}

std::set<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

constexpr bool kSanitized =
#ifdef OC_VLAN_SANITIZER_OWNS_MALLOC
    true;
#else
    false;
#endif

TEST(Library, exports_exactly_what_the_list_says) {
  const Output exports = run("nm -D --defined-only --format=posix " OC_VLAN_PLUGIN_FILE " | awk '{print $2, $1}'");
  ASSERT_EQ(exports.status, 0) << exports.text;
  const std::string expected = file_text(OC_VLAN_SOURCE_DIR "/tests/plugin/exports.txt");
  EXPECT_EQ(sorted_lines(exports.text), sorted_lines(expected));
  EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), 359);
  std::istringstream lines(expected);
  int weak = 0;
  for (std::string line; std::getline(lines, line);) weak += line.starts_with("W ") ? 1 : 0;
  EXPECT_EQ(weak, 261);
  EXPECT_EQ(expected.find("_Z"), std::string::npos) << "a C++ name";
}

// Services of the framework and the platform: the only undefined names beside the C library's.
constexpr char kServices[] =
    "_kos_dt_log_filter_adv _lstrace _sysdb_bind cerr_strerror imc_interface_find imc_interface_get_flags "
    "kos_named_free ret_nc_yfw_trace_index_incr sysdb_item_get tuple_unpack_mask yfw_add_to_output_list_ctx "
    "yfw_debug_should_log yfw_map_add_to_node_hierarchy yfw_map_copy_trim_path_list_ctx "
    "yfw_map_datatree_add_path_flagged yfw_map_do_these_match yfw_map_free_trim_path_list_ctx yfw_map_get_node_info "
    "yfw_map_get_subtrees yfw_map_is_request_add yfw_map_is_request_delete yfw_map_remove_from_node_hierarchy "
    "yfw_map_search_list yfw_map_search_or_add_list yfw_map_update_current_list_node yfw_map_validate_data_ns "
    "yfw_oc_error_path yfw_ocifmgr_im_conn yfw_remove_from_output_list_ctx yfw_strcpy_s yfw_strdup yfw_strncpy_s "
    "ymap_ov_ocif_openconfiginterfaces_lvla_interfaces";

// Of the C library: what the code calls, and what takes its place, or watches over it, in a hardened build.
constexpr char kLibrary[] = "__assert_fail access free memcpy memset snprintf strchr strstr strtok_r strtol";
constexpr char kHardening[] = "__stack_chk_fail __snprintf_chk __memcpy_chk";

constexpr bool kFinished =
#ifdef OC_VLAN_FINISHED
    true;
#else
    false;
#endif

TEST(Library, imports_the_services_and_the_c_library_only) {
  if (kSanitized) GTEST_SKIP() << "a sanitizer imports its own";
  const Output imports = run("nm -D --undefined-only " OC_VLAN_PLUGIN_FILE " | awk '$1 == \"U\" {print $2}'");
  ASSERT_EQ(imports.status, 0) << imports.text;
  std::set<std::string> services;
  std::set<std::string> library = words(kLibrary);
  library.merge(words(kHardening));
  for (const std::string& name : words(imports.text)) {
    if (name.find("@GLIBC_") == std::string::npos) {
      services.insert(name);
      continue;
    }
    for (const char* forbidden : {"strncpy_s", "strncat_s", "memset_s", "malloc", "calloc", "realloc", "strdup@"}) {
      EXPECT_EQ(name.find(forbidden), std::string::npos) << name;
    }
    EXPECT_TRUE(!kFinished || library.contains(name.substr(0, name.find('@')))) << name;
  }
  EXPECT_EQ(services, words(kServices));
  const Output needed = run("readelf -d " OC_VLAN_PLUGIN_FILE " | grep NEEDED");
  EXPECT_EQ(needed.text.find("libstdc++"), std::string::npos) << needed.text + "the linker must drop what is not used";
}

TEST(Library, lets_others_define_its_names) {
  const Output dynamic = run("readelf -d " OC_VLAN_PLUGIN_FILE);
  ASSERT_EQ(dynamic.status, 0);
  EXPECT_EQ(dynamic.text.find("SYMBOLIC"), std::string::npos) << dynamic.text;
}

TEST(Library, has_no_global_constructor_of_its_own) {
  if (kSanitized) GTEST_SKIP() << "a sanitizer adds constructors";
  const Output sections = run("readelf -SW " OC_VLAN_PLUGIN_FILE " | grep -E 'init_array|ctors'");
  // One pointer at most: the C runtime's own, where that is linked.
  EXPECT_TRUE(sections.text.empty() || sections.text.find(" 000008 ") != std::string::npos) << sections.text;
}

struct Promise {
  const char* what;
  const char* command;
  const char* expected;
};

TEST(Library, is_hardened) {
  if (!kFinished) GTEST_SKIP() << "a build for debuggers and sanitizers";
  for (const Promise& each : {
           Promise{"checks of the stack", "nm -D --undefined-only FILE | grep -c __stack_chk_fail", "1\n"},
           Promise{"checks of sizes", "nm -D --undefined-only FILE | grep -c _chk@", "1\n"},
           Promise{"read-only relocations", "readelf -lW FILE | grep -c GNU_RELRO", "1\n"},
           Promise{"immediate binding", "readelf -dW FILE | grep -c 'FLAGS.*NOW'", "2\n"},
           Promise{"no table of late bindings that can be written", "readelf -SW FILE | grep -c '[.]got[.]plt'", "0\n"},
           Promise{"no executable stack", "readelf -lW FILE | grep GNU_STACK | grep -c ' RW '", "1\n"},
           Promise{"no writable code", "readelf -lW FILE | grep -c 'LOAD.*RWE'", "0\n"},
           Promise{"no relocations in code", "readelf -dW FILE | grep -c TEXTREL", "0\n"},
#ifdef OC_VLAN_HAS_CF_PROTECTION
           Promise{"marked branch targets and shadow stack", "readelf -nW FILE | grep -c 'IBT, SHSTK'", "1\n"},
#endif
       }) {
    std::string command = each.command;
    command.replace(command.find("FILE"), 4, OC_VLAN_PLUGIN_FILE);
    EXPECT_EQ(run(command).text, each.expected) << each.what;
  }
}

TEST(Library, has_no_thread_local_storage) {
  if (kSanitized) GTEST_SKIP() << "a sanitizer adds its own";
  EXPECT_EQ(run("readelf -lW " OC_VLAN_PLUGIN_FILE " | grep -c TLS").text, "0\n");
}

// What relocations fill is read-only once the library is loaded; this is what stays writable, by name.
TEST(Library, writes_to_its_connection_and_its_call_sites_only) {
  if (kSanitized) GTEST_SKIP() << "a sanitizer adds its own";
  const Output sections = run("readelf -SW " OC_VLAN_PLUGIN_FILE " | grep -E ' +WA +' | grep -oE ' [.][a-z._]+ '");
  std::set<std::string> writable = words(sections.text);
  for (const char* const section : {".init_array", ".fini_array", ".data.rel.ro", ".dynamic", ".got", ".got.plt"}) {
    writable.erase(section);
  }
  EXPECT_EQ(writable, words(".data .bss"));
  // ADDRESS FLAGS SECTION<tab>SIZE NAME, where hidden names say so.
  const Output symbols =
      run("objdump -tC " OC_VLAN_PLUGIN_FILE
          " | grep -E '[[:space:]][.](data|bss)[[:space:]]' | cut -f2 | cut -d' ' -f2- | sed 's/^ *[.]hidden //'");
  int sites = 0;
  std::set<std::string> others;
  std::istringstream lines(symbols.text);
  for (std::string name; std::getline(lines >> std::ws, name);) {
    if (name.find("oc_vlan_site_word") != std::string::npos) {
      ++sites;
    } else {
      others.insert(name);
    }
  }
  EXPECT_GT(sites, 0);
  // The C runtime's own, where that is linked.
  for (const char* const name : {".data", ".bss", "completed.0", "__dso_handle", "__TMC_END__"}) {
    others.erase(name);
  }
  EXPECT_EQ(others,
            (std::set<std::string>{"(anonymous namespace)::database_library_is_present", "vlan_cfg_sysdb_connid"}));
}

struct Replacement {
  const char* name;
  const char* preload;  // "" for none
  const char* host;
  const char* plugin;
  const char* code;
};

std::ostream& operator<<(std::ostream& out, const Replacement& c) {
  return out << c.name;
}

class WeakHandler : public testing::TestWithParam<Replacement> {};

TEST_P(WeakHandler, is_replaced) {
  const Replacement& c = GetParam();
  const bool preloads = *c.preload != '\0';
  if (preloads && kSanitized) GTEST_SKIP() << "a sanitizer wants to be the first library";
  const Output output =
      run((preloads ? "LD_PRELOAD=" + std::string(c.preload) + " " : std::string()) + c.host + " " + c.plugin);
  EXPECT_EQ(output.status, 0) << output.text;
  EXPECT_EQ(output.text, std::string(c.code) + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Library, WeakHandler,
    testing::Values(Replacement{"by_nothing", "", OC_VLAN_PROBE, OC_VLAN_PLUGIN_FILE, "0x0"},
                    Replacement{"by_a_preloaded_library", OC_VLAN_REPLACEMENT, OC_VLAN_PROBE, OC_VLAN_PLUGIN_FILE,
                                "0xaaf20002"},
                    Replacement{"by_the_host", "", OC_VLAN_PROBE_WITH_HANDLER, OC_VLAN_PLUGIN_FILE, "0xaaf20002"},
                    Replacement{"at_link_time", "", OC_VLAN_PROBE, OC_VLAN_RELINKED, "0xaaf20002"}),
    [](const auto& info) { return std::string(info.param.name); });

struct Compiler {
  const char* name;
  const char* command;
};

class PublicHeader : public testing::TestWithParam<const char*> {};

TEST_P(PublicHeader, compiles_alone_as_c_and_as_cpp) {
  for (const Compiler& c : {Compiler{"C11", OC_VLAN_C_COMPILER " -std=c11 -x c"},
                            Compiler{"C++20", OC_VLAN_CXX_COMPILER " -std=c++20 -x c++"}}) {
    const Output output =
        run("printf '#include \"%s\"\\n#include \"%s\"\\n' " + std::string(GetParam()) + " " + GetParam() + " | " +
            c.command + " -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I " OC_VLAN_SOURCE_DIR "/include -");
    EXPECT_EQ(output.status, 0) << c.name << "\n" << output.text;
  }
}

INSTANTIATE_TEST_SUITE_P(Library, PublicHeader,
                         testing::Values("yfw/cerrno.h", "yfw/yfw_map.h", "yfw/platform.h", "oc_vlan/oc_vlan.h",
                                         "oc_vlan/handlers.h"),
                         [](const auto& info) {
                           std::string name = info.param;
                           std::replace_if(
                               name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
                           return name;
                         });

constexpr char kCompileInterface[] =
    OC_VLAN_C_COMPILER " -std=c11 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I " OC_VLAN_SOURCE_DIR "/include";

// The type of an export that is one of many of its kind, by its name.
std::string type_of_export(const std::string& name) {
  if (name.find("_cont_") != std::string::npos || name.ends_with("_duck_map_container")) return "container_handler";
  return name.find("oper_list_") != std::string::npos ? "entry_handler" : "walker";
}

TEST(PublicHeaders, keep_every_record_and_every_type) {
  const std::string interface = file_text(OC_VLAN_SOURCE_DIR "/tests/plugin/binary/interface.c");
  std::istringstream exports(file_text(OC_VLAN_SOURCE_DIR "/tests/plugin/exports.txt"));
  std::string source = interface;
  std::string binding;
  int added = 0;
  for (std::string name; exports >> binding >> name;) {
    if (interface.find("HAS(" + name + ",") != std::string::npos) continue;
    source += "HAS(" + name + ", " + type_of_export(name) + ");\n";
    ++added;
  }
  EXPECT_GT(added, 0);
  for (const std::string& service : words(kServices)) {
    EXPECT_NE(interface.find("HAS(" + service + ","), std::string::npos) << service;
  }
  const std::string file = OC_VLAN_BINARY_DIR "/tests/interface.c";
  std::ofstream(file) << source;
  const Output output = run(kCompileInterface + (" " + file));
  EXPECT_EQ(output.status, 0) << output.text;
}

TEST(PublicHeaders, export_the_services_of_a_framework_that_hides_its_names) {
  const std::string library = OC_VLAN_BINARY_DIR "/tests/libhidden_services.so";
  const Output built = run(OC_VLAN_CXX_COMPILER " -std=c++20 -fvisibility=hidden -shared -fPIC -I " OC_VLAN_SOURCE_DIR
                                                "/include " OC_VLAN_SOURCE_DIR "/tests/plugin/binary/services.cpp -o " +
                           library);
  ASSERT_EQ(built.status, 0) << built.text;
  const Output exports = run("nm -D --defined-only --format=posix " + library + " | awk '{print $1}'");
  EXPECT_EQ(words(exports.text), words(kServices));
}

TEST(PublicHeaders, name_the_namespaces_of_the_models) {
  EXPECT_STREQ(YFW_OPENCONFIG_VLAN_NS, "http://openconfig.net/yang/vlan");
  EXPECT_STREQ(YFW_OPENCONFIG_VLAN_TYPES_NS, "http://openconfig.net/yang/vlan-types");
  EXPECT_STREQ(YFW_OPENCONFIG_INTERFACES_NS, "http://openconfig.net/yang/interfaces");
  EXPECT_STREQ(YFW_OPENCONFIG_IF_ETHERNET_NS, "http://openconfig.net/yang/interfaces/ethernet");
  EXPECT_STREQ(YFW_OPENCONFIG_IF_AGGREGATE_NS, "http://openconfig.net/yang/interfaces/aggregate");
  EXPECT_STREQ(YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS, "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg");
  EXPECT_STREQ(YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS, "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper");
}

TEST(PublicHeaders, declare_every_export) {
  const std::set<std::string> handlers = words(file_text(OC_VLAN_SOURCE_DIR "/include/oc_vlan/handlers.h"));
  const std::string by_hand = file_text(OC_VLAN_SOURCE_DIR "/include/oc_vlan/oc_vlan.h");
  std::istringstream exports(file_text(OC_VLAN_SOURCE_DIR "/tests/plugin/exports.txt"));
  std::string binding;
  for (std::string name; exports >> binding >> name;) {
    const bool is_declared = handlers.contains(name + ";") || by_hand.find(name + "(") != std::string::npos ||
                             by_hand.find(name + "[") != std::string::npos ||
                             by_hand.find(name + ";") != std::string::npos;
    EXPECT_TRUE(is_declared) << name;
  }
}

}  // namespace
