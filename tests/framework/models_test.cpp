// Which modules are loaded from where, and what is said when one cannot be.
#include "framework/tree/models.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <thread>

#include "framework/tree/schema.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;

constexpr char kYang[] = OC_VLAN_SOURCE_DIR "/yang";

// A copy of a folder of modules that a test may spoil; gone with the test.
class Folder {
 public:
  explicit Folder(const fs::path& source = {}) {
    std::string name = fs::temp_directory_path() / "models_test_XXXXXX";
    path_ = mkdtemp(name.data());
    if (!source.empty()) fs::copy(source, path_);
  }
  ~Folder() { fs::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string path() const { return path_; }
  void write(const std::string& file, const std::string& text) const { std::ofstream(path_ / file) << text; }
  void remove(const std::string& file) const { fs::remove(path_ / file); }
  void rename(const std::string& from, const std::string& to) const { fs::rename(path_ / from, path_ / to); }

 private:
  fs::path path_;
};

std::string load(const std::string& yang, const std::string& openconfig = {}) {
  return outcome_of([&] {
    const Models models(yang, openconfig);
    return std::string("loaded");
  });
}

const lys_module* module_in(const Models& models, const char* name) {
  return ly_ctx_get_module_implemented(models.get(), name);
}

void expect_complete(const Models& models) {
  for (const char* const name :
       {"openconfig-interfaces", "openconfig-if-ethernet", "openconfig-if-aggregate", "openconfig-vlan",
        "openconfig-vlan-types", "iana-if-type", "ietf-netconf", "Vexnet-OS-interface-cfg",
        "Vexnet-OS-l2-eth-infra-cfg", "Vexnet-OS-l2-eth-infra-oper"}) {
    EXPECT_NE(module_in(models, name), nullptr) << name;
  }
  const char* const leaf =
      "/openconfig-interfaces:interfaces/interface/subinterfaces/subinterface/openconfig-vlan:vlan/match/single-tagged/"
      "config/vlan-id";
  EXPECT_NE(lys_find_path(models.get(), nullptr, leaf, 0), nullptr);
}

TEST(Models, AreComplete) {
  expect_complete(compact_models());
}

TEST(Models, AreCompleteWithPublishedOnes) {
  if (!has_published_models()) GTEST_SKIP() << "no published modules in " << OC_VLAN_PUBLISHED_YANG;
  expect_complete(published_models());
  const lys_module* const compact = module_in(compact_models(), "openconfig-vlan");
  const lys_module* const published = module_in(published_models(), "openconfig-vlan");
  ASSERT_NE(published->revision, nullptr);
  EXPECT_STRNE(compact->revision == nullptr ? "" : compact->revision, published->revision);
}

TEST(Models, KnowWhichModuleDefinesAnEnumeration) {
  const char* const mode =
      "/openconfig-interfaces:interfaces/interface/openconfig-if-ethernet:ethernet/"
      "openconfig-vlan:switched-vlan/config/interface-mode";
  const lysc_node* const leaf = lys_find_path(compact_models().get(), nullptr, mode, 0);
  ASSERT_NE(leaf, nullptr);
  EXPECT_STREQ(enumeration_namespace(leaf), "http://openconfig.net/yang/vlan-types");
}

TEST(Models, ThatAreMissingAreNamed) {
  const Folder empty;
  EXPECT_EQ(
      load(empty.path()),
      fmt::format("unreadable: cannot load module ietf-netconf: there is no ietf-netconf.yang in {}\n", empty.path()));
  EXPECT_EQ(load("/no/such/folder"),
            "unreadable: cannot load module ietf-netconf: there is no ietf-netconf.yang in /no/such/folder\n");
  const Folder most(kYang);
  most.remove("openconfig-vlan-types.yang");
  EXPECT_EQ(load(most.path()), fmt::format("unreadable: cannot load module openconfig-vlan-types: there is no "
                                           "openconfig-vlan-types.yang in {}\n",
                                           most.path()));
}

// Half of one set and half of the other would be a model that nobody wrote.
TEST(Models, OfOpenConfigComeFromOneFolder) {
  const Folder half;
  EXPECT_EQ(load(kYang, half.path()), fmt::format("unreadable: cannot load module openconfig-vlan-types: there is no "
                                                  "openconfig-vlan-types.yang in {}\n",
                                                  half.path()));
}

TEST(Models, ThatAreWrongAreNamedWithTheReason) {
  const Folder spoilt(kYang);
  spoilt.write("openconfig-vlan.yang", "module openconfig-vlan { namespace \"urn:x\"; }");
  EXPECT_EQ(load(spoilt.path()).substr(0, 49), "unreadable: cannot load module openconfig-vlan: M")
      << load(spoilt.path());
  spoilt.write("openconfig-vlan.yang", "");
  EXPECT_EQ(load(spoilt.path()).substr(0, 48), "unreadable: cannot load module openconfig-vlan: ")
      << load(spoilt.path());
}

// Whatever goes by the name of a module.
TEST(Models, ThatAreNoFilesAreNamed) {
  const Folder spoilt(kYang);
  const auto said = [&spoilt](const std::string& file, const std::string& why) {
    EXPECT_EQ(load(spoilt.path()),
              fmt::format("unreadable: cannot load module openconfig-vlan: {}/{} cannot be read: {}\n", spoilt.path(),
                          file, why));
  };
  const std::string dated = "openconfig-vlan@2000-01-01.yang";
  spoilt.rename("openconfig-vlan.yang", "aside");
  fs::create_directory(spoilt.path() + "/" + dated);
  said(dated, "it is no file");
  fs::create_directory(spoilt.path() + "/openconfig-vlan.yang");
  said("openconfig-vlan.yang", "it is no file");
  spoilt.remove("openconfig-vlan.yang");
  ASSERT_EQ(mkfifo((spoilt.path() + "/openconfig-vlan.yang").c_str(), 0600), 0);
  said("openconfig-vlan.yang", "it is no file");
  spoilt.remove("openconfig-vlan.yang");
  fs::create_symlink("/proc/self/mem", spoilt.path() + "/openconfig-vlan.yang");
  said("openconfig-vlan.yang", "Input/output error");
  spoilt.remove("openconfig-vlan.yang");
  spoilt.rename("aside", "openconfig-vlan.yang");
  EXPECT_EQ(load(spoilt.path()), "loaded");
}

TEST(Models, AreReadToTheirEnd) {
  const Folder spoilt(kYang);
  std::ofstream(spoilt.path() + "/openconfig-vlan.yang", std::ios::app) << '\0' << "what comes now was not read";
  EXPECT_EQ(load(spoilt.path()), fmt::format("unreadable: cannot load module openconfig-vlan: {}/openconfig-vlan.yang "
                                             "cannot be read: a NUL character stands in it\n",
                                             spoilt.path()));
}

TEST(Models, MayCarryTheirRevisionInTheFileName) {
  const Folder dated(kYang);
  dated.rename("openconfig-vlan.yang", "openconfig-vlan@2000-01-01.yang");
  dated.write("openconfig-vlan@1999-01-01.yang", "not the newest");
  EXPECT_EQ(load(dated.path()), "loaded");
}

// A module that lies in the working directory or below the folder is none of ours.
TEST(Models, AreNotLookedForElsewhere) {
  const Folder folder(kYang);
  folder.remove("iana-if-type.yang");
  fs::create_directory(folder.path() + "/below");
  fs::copy(fs::path(kYang) / "iana-if-type.yang", folder.path() + "/below/iana-if-type.yang");
  const fs::path before = fs::current_path();
  fs::current_path(folder.path() + "/below");
  EXPECT_EQ(load(folder.path()).substr(0, 45), "unreadable: cannot load module iana-if-type: ");
  fs::current_path(before);
}

TEST(Models, OfFurtherFoldersAreLoadedAllOfThem) {
  const Folder further;
  further.write("one.yang", "module one { namespace \"urn:one\"; prefix o; include part; import two { prefix t; } }");
  further.write("part.yang", "// a\nsubmodule part { belongs-to one { prefix o; } leaf leaf { type string; } }");
  further.write("two@2025-01-01.yang", "not the newest");
  further.write("two@2026-01-01.yang", "module two { namespace \"urn:two\"; prefix t; revision 2026-01-01; }");
  further.write("readme.txt", "no module");
  fs::copy(fs::path(kYang) / "openconfig-vlan.yang", further.path());
  const Models models(kYang, {}, {further.path()});
  expect_complete(models);
  for (const char* const name : {"one", "two"}) {
    ASSERT_NE(module_in(models, name), nullptr) << name;
    EXPECT_TRUE(models.is_further(module_in(models, name))) << name;
  }
  EXPECT_STREQ(module_in(models, "two")->revision, "2026-01-01");
  // What is loaded anyway stays what it is.
  EXPECT_FALSE(models.is_further(module_in(models, "openconfig-vlan")));
  EXPECT_FALSE(models.is_further(module_in(models, "Vexnet-OS-interface-cfg")));
}

TEST(Models, LoadOnManyThreads) {
  std::vector<std::string> outcomes(4);
  std::vector<std::thread> threads;
  threads.reserve(outcomes.size());
  for (std::string& outcome : outcomes) {
    threads.emplace_back([&outcome] { outcome = load(kYang); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& outcome : outcomes) EXPECT_EQ(outcome, "loaded");
}

TEST(Models, SayNothingOnStandardError) {
  testing::internal::CaptureStderr();
  const Folder empty;
  load(empty.path());
  load(kYang);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace yfw::test
