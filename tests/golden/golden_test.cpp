// The examples hold: what each request becomes natively, what the device holds then, and what it reads back as. Through
// the library and the tool, in XML and in JSON, with the compact OpenConfig modules and with the published ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "golden/back_end.h"
#include "golden/documents.h"
#include "yang/modules.h"

namespace golden_test {
namespace {

using yfw::Format;

const std::string kExamples = OC_VLAN_SOURCE_DIR "/examples/";

constexpr Format kFormats[] = {Format::xml, Format::json};

std::string suffix_of(Format format) {
  return format == Format::xml ? ".xml" : ".json";
}

std::vector<std::string> example_names() {
  std::vector<std::string> names;
  for (const auto& each : std::filesystem::directory_iterator(kExamples)) {
    if (each.is_directory()) names.push_back(each.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> words_of(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

// Who answers, and by which modules.
struct Setting {
  std::string back_end;
  std::string modules;
};

void PrintTo(const Setting& setting, std::ostream* stream) {
  *stream << setting.back_end << " with " << setting.modules;
}

const std::vector<Setting> kSettings = {
    {"library", "compact"},
    {"library", "published"},
    {"tool", "compact"},
    {"tool", "published"},
};

class Golden : public testing::Test {
 protected:
  explicit Golden(const Setting& setting) : setting_(setting) {}

  void SetUp() override {
    if (setting_.modules == "published") {
      if (!yang_test::has_published()) GTEST_SKIP() << "no published modules at " << yang_test::kPublishedYang;
      openconfig_dir_ = yang_test::kPublishedYang;
      folders_.push_back(openconfig_dir_);
    }
    back_end_ = setting_.back_end == "library" ? make_library(openconfig_dir_) : make_tool(openconfig_dir_);
  }

  // Asks for an answer in a format; it must be what the XML file holds.
  template <typename Ask>
  void expect_file(const std::string& file, Request request, Format format, const Ask& ask,
                   const std::string& remarks = "") const {
    SCOPED_TRACE("answer as " + suffix_of(format).substr(1));
    request.format = format;
    const Answer answer = ask(request);
    EXPECT_EQ(answer.remarks, remarks);
    EXPECT_TRUE(is_file(file, format == Format::xml ? answer.text : json_as_xml(folders_, answer.text)));
  }

  // The same in every format.
  template <typename Ask>
  void expect_file(const std::string& file, const Request& request, const Ask& ask,
                   const std::string& remarks = "") const {
    for (const Format format : kFormats) expect_file(file, request, format, ask, remarks);
  }

  Setting setting_;
  std::string openconfig_dir_;
  std::vector<std::string> folders_ = {yang_test::kOwnYang};
  std::unique_ptr<BackEnd> back_end_;
};

class Example : public Golden, public testing::WithParamInterface<std::tuple<std::string, Setting>> {
 protected:
  Example() : Golden(std::get<Setting>(GetParam())) {}

  std::string file(const std::string& name) const { return kExamples + std::get<std::string>(GetParam()) + "/" + name; }

  Request request(const std::string& document, const std::string& running) const {
    return {.document = document.empty() ? "" : file(document),
            .running = file(running),
            .oper = "",
            .options = words_of(contents_if_there(file("options")))};
  }

  std::string warnings() const { return contents_if_there(file("warnings.txt")); }
};

TEST_P(Example, TranslatesToTheNativeEdit) {
  for (const Format in : kFormats) {
    for (const Format out : kFormats) {
      SCOPED_TRACE("request" + suffix_of(in) + " to native" + suffix_of(out));
      Request asked = request("request" + suffix_of(in), "running.xml");
      asked.format = out;
      const Answer answer = back_end_->translate(asked);
      EXPECT_EQ(answer.remarks, warnings());
      EXPECT_TRUE(is_file(file("native" + suffix_of(out)), answer.text));
    }
  }
}

TEST_P(Example, AppliesToTheRunningConfiguration) {
  for (const Format in : kFormats) {
    SCOPED_TRACE("request" + suffix_of(in));
    expect_file(
        file("applied.xml"), request("request" + suffix_of(in), "running.xml"), in,
        [this](const Request& asked) { return back_end_->apply(asked); }, warnings());
  }
}

TEST_P(Example, ReadsBack) {
  expect_file(file("read.xml"), request("", "applied.xml"),
              [this](const Request& asked) { return back_end_->read(asked); });
}

TEST_P(Example, ChangesNothingWhenWhatWasReadIsAskedAgain) {
  expect_file(file("applied.xml"), request("read.xml", "applied.xml"),
              [this](const Request& asked) { return back_end_->apply(asked); });
}

std::string name_of(const Setting& setting) {
  return setting.back_end + "_" + setting.modules;
}

INSTANTIATE_TEST_SUITE_P(Examples, Example,
                         testing::Combine(testing::ValuesIn(example_names()), testing::ValuesIn(kSettings)),
                         [](const auto& example) {
                           std::string name = std::get<std::string>(example.param);
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name + "_" + name_of(std::get<Setting>(example.param));
                         });

// A whole device: every kind of configuration and of operational data there is.
class Device : public Golden, public testing::WithParamInterface<Setting> {
 protected:
  Device() : Golden(GetParam()) {}

  void expect_read(const std::string& expected, const std::string& running, const std::string& oper) const {
    const Request request{.document = "",
                          .running = running.empty() ? "" : kExamples + running,
                          .oper = oper.empty() ? "" : kExamples + oper,
                          .options = {}};
    expect_file(
        kExamples + expected, request, [this](const Request& asked) { return back_end_->read(asked); },
        (running.empty() ? "" : contents(kExamples + "running-read-warnings.txt")) +
            (oper.empty() ? "" : contents(kExamples + "oper-read-warnings.txt")));
  }
};

TEST_P(Device, ReadsItsConfiguration) {
  expect_read("running-openconfig.xml", "running.xml", "");
  expect_read("running-openconfig.xml", "running.json", "");
}

TEST_P(Device, ReadsItsState) {
  expect_read("oper-openconfig.xml", "", "oper.xml");
  expect_read("oper-openconfig.xml", "", "oper.json");
}

TEST_P(Device, ReadsConfigurationAndStateTogether) {
  expect_read("running-oper-openconfig.xml", "running.xml", "oper.xml");
  expect_read("running-oper-openconfig.xml", "running.json", "oper.json");
}

TEST_P(Device, AnswersFilters) {
  for (const std::string filter : {"filter-one-subinterface", "filter-ports"}) {
    for (const Format in : kFormats) {
      SCOPED_TRACE(filter + suffix_of(in));
      const Request request{.document = kExamples + filter + suffix_of(in),
                            .running = kExamples + "running.xml",
                            .oper = "",
                            .options = {}};
      expect_file(kExamples + filter + "-openconfig.xml", request,
                  [this](const Request& asked) { return back_end_->read(asked); });
    }
  }
}

TEST_P(Device, ChangesNothingWhenItsConfigurationIsAskedAgain) {
  const Request request{.document = kExamples + "running-openconfig.xml",
                        .running = kExamples + "running.xml",
                        .oper = "",
                        .options = {}};
  expect_file(
      kExamples + "running.xml", request, [this](const Request& asked) { return back_end_->apply(asked); },
      contents(kExamples + "running-written-back-warnings.txt"));
}

// As a device prints it: much of it is in models that are not loaded.
const std::string kReply = kExamples + "rpc-reply.xml";
const std::string kCarried = "warning: " + kReply +
                             ": 72 subtrees of models that are not loaded are carried along unread "
                             "(http://example.net/ns/system, http://example.net/ns/management, "
                             "http://example.net/ns/acl and 16 more)\n";
constexpr char kGone[] =
    "warning: /Vexnet-OS-interface-cfg:interface-configurations/interface-configuration[interface-name="
    "'Bundle-Ether6.77']: goes with it: 3 subtrees of models that are not loaded (http://example.net/ns/bridge, "
    "http://example.net/ns/interface-qos)\n";

TEST_P(Device, ReadsWhatItPrints) {
  const Request request{.document = "", .running = kReply, .oper = "", .options = {}};
  for (const Format out : kFormats) {
    expect_file(
        kExamples + "rpc-reply-openconfig.xml", request, out,
        [this](const Request& asked) { return back_end_->read(asked); },
        kCarried + contents(kExamples + "rpc-reply-read-warnings.txt"));
  }
}

TEST_P(Device, KeepsWhatIsBesideItsVlans) {
  for (const Format in : kFormats) {
    SCOPED_TRACE("request" + suffix_of(in));
    const Request request{
        .document = kExamples + "rpc-reply-request" + suffix_of(in), .running = kReply, .oper = "", .options = {}};
    expect_file(
        kExamples + "rpc-reply-applied.xml", request, Format::xml,
        [this](const Request& asked) { return back_end_->apply(asked); },
        kCarried + contents(kExamples + "rpc-reply-applied-warnings.txt") + kGone);
  }
}

TEST_P(Device, RefusesToPrintInJsonWhatItCannotSayThere) {
  const Request request{.document = kExamples + "rpc-reply-request.xml",
                        .running = kReply,
                        .oper = "",
                        .options = {},
                        .format = Format::json};
  const Answer answer = back_end_->apply(request);
  EXPECT_NE(answer.remarks.find("refused: /system: 'system' is of a model that is not loaded"), std::string::npos)
      << answer.remarks;
  EXPECT_EQ(answer.text.find("interface-configurations"), std::string::npos) << answer.text;
}

INSTANTIATE_TEST_SUITE_P(Settings, Device, testing::ValuesIn(kSettings),
                         [](const auto& setting) { return name_of(setting.param); });

TEST(Examples, AreComplete) {
  const std::vector<std::string> names = example_names();
  EXPECT_GE(names.size(), 30U);
  for (const std::string& name : names) {
    const std::filesystem::path folder = kExamples + name;
    for (const char* const file :
         {"request.xml", "request.json", "running.xml", "native.xml", "native.json", "applied.xml", "read.xml"}) {
      EXPECT_TRUE(std::filesystem::exists(folder / file)) << folder / file;
    }
  }
}

}  // namespace
}  // namespace golden_test
