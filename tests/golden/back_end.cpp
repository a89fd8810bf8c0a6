// Everybody who answers requests: the library in this process, and the tool as a program of its own.
#include "golden/back_end.h"

#include <sstream>
#include <stdexcept>

#include "cli/run.h"
#include "golden/documents.h"
#include "yfw-host/host.h"

namespace golden_test {
namespace {

yfw::Format format_of(const std::string& file) {
  return file.ends_with(".json") ? yfw::Format::json : yfw::Format::xml;
}

class Library : public BackEnd {
 public:
  explicit Library(std::string openconfig_dir) : openconfig_dir_(std::move(openconfig_dir)) {}

  Answer translate(const Request& request) const override {
    return answer(request, [&](yfw::Host& host, const yfw::Document& document) {
      const yfw::EditResult result = host.edit(document);
      return Answer{result.native.print(request.format), remarks_of(result)};
    });
  }

  Answer apply(const Request& request) const override {
    return answer(request, [&](yfw::Host& host, const yfw::Document& document) {
      const yfw::EditResult result = host.apply(document);
      return Answer{host.print_running(request.format), remarks_of(result)};
    });
  }

  Answer read(const Request& request) const override {
    return answer(request, [&](yfw::Host& host, const yfw::Document& filter) {
      const std::string oper = request.oper.empty() ? std::string() : contents(request.oper);
      const yfw::ReadResult result = request.oper.empty()
                                         ? host.read(filter)
                                         : host.read_state({oper, format_of(request.oper), request.oper}, filter);
      return Answer{result.data.print_document(request.format), remarks_of(result.warnings)};
    });
  }

 private:
  template <typename Ask>
  Answer answer(const Request& request, const Ask& ask) const {
    try {
      yfw::Host host(options_of(request));
      std::string remarks;
      host.load_plugin(OC_VLAN_PLUGIN_FILE);
      if (!request.running.empty()) {
        remarks =
            remarks_of(host.set_running({contents(request.running), format_of(request.running), request.running}));
      }
      const std::string text = request.document.empty() ? "" : contents(request.document);
      Answer answer = ask(
          host, text.empty() ? yfw::Document{} : yfw::Document{text, format_of(request.document), request.document});
      answer.remarks.insert(0, remarks);
      return answer;
    } catch (const yfw::Refused& refused) {
      return {"", "refused: " + refused.error().path + ": " + refused.error().message + "\n"};
    }
  }

  yfw::HostOptions options_of(const Request& request) const {
    yfw::HostOptions options{.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .openconfig_dir = openconfig_dir_};
    for (std::size_t i = 0; i < request.options.size(); ++i) {
      const std::string& word = request.options[i];
      if (word == "--l2") {
        options.layer = yfw::Layer::l2;
      } else if (word == "--bind" && i + 1 < request.options.size()) {
        options.bind_subinterface_vlan_id = request.options[++i] == "subinterface-vlan-id";
      } else {
        throw std::runtime_error("the library has no option for " + word);
      }
    }
    return options;
  }

  static std::string remarks_of(const std::vector<yfw::Warning>& warnings) {
    std::string text;
    for (const yfw::Warning& each : warnings) {
      text += "warning: " + (each.path.empty() ? "" : each.path + ": ") + each.message + "\n";
    }
    return text;
  }

  static std::string remarks_of(const yfw::EditResult& result) {
    std::string text = remarks_of(result.warnings);
    for (const yfw::Difference& each : result.differences) {
      text += "difference: " + each.path + ": asked '" + each.asked + "', found '" + each.found + "'\n";
    }
    return text;
  }

  std::string openconfig_dir_;
};

class Tool : public BackEnd {
 public:
  explicit Tool(std::string openconfig_dir) : openconfig_dir_(std::move(openconfig_dir)) {}

  Answer translate(const Request& request) const override { return run("translate", request); }
  Answer apply(const Request& request) const override { return run("apply", request); }
  Answer read(const Request& request) const override { return run("read", request); }

 private:
  Answer run(const std::string& command, const Request& request) const {
    std::vector<std::string> words = {command};
    if (!request.document.empty()) words.push_back(request.document);
    const auto add = [&words](const std::string& option, const std::string& value) {
      if (!value.empty()) words.insert(words.end(), {option, value});
    };
    add("--running", request.running);
    add("--oper", request.oper);
    add("--yang-dir", openconfig_dir_);
    add("--format", request.format == yfw::Format::xml ? "xml" : "json");
    words.insert(words.end(), request.options.begin(), request.options.end());
    const cli_test::Outcome outcome = cli_test::run(words);
    std::string remarks = outcome.err;
    if (outcome.exit_code != 0) remarks += "exit code " + std::to_string(outcome.exit_code) + "\n";
    if (outcome.signal != 0) remarks += "signal " + std::to_string(outcome.signal) + "\n";
    return {outcome.out, remarks};
  }

  std::string openconfig_dir_;
};

}  // namespace

std::unique_ptr<BackEnd> make_library(const std::string& openconfig_dir) {
  return std::make_unique<Library>(openconfig_dir);
}

std::unique_ptr<BackEnd> make_tool(const std::string& openconfig_dir) {
  return std::make_unique<Tool>(openconfig_dir);
}

}  // namespace golden_test
