// Every request is applied to the host and to the model, and every outcome of the one is compared with the other's.
#include "property/model/runner.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "property/model/native_models.h"
#include "property/model/observe.h"
#include "property/model/told.h"

namespace property {

namespace {

Failure differs(const std::string& kind, const std::string& wanted, const std::string& got) {
  if (wanted == got) return {};
  return {kind, "--- should be\n" + wanted + "--- is\n" + got};
}

class Run {
 public:
  Run(yfw::Host& host, const Sequence& sequence)
      : host_(host), sequence_(sequence), model_(sequence.start, sequence.new_entries_are_l2, sequence.strict) {}

  Failure all() {
    host_.set_running({.text = start_ = to_document(sequence_.start), .name = "start"});
    Failure failure = compare_states();
    for (std::size_t i = 0; failure.kind.empty() && i < sequence_.requests.size(); ++i) {
      failure = one(sequence_.requests[i]);
      if (!failure.kind.empty()) failure.text.insert(0, "request " + std::to_string(i + 1) + "\n");
    }
    return failure;
  }

 private:
  Failure one(const Request& request) {
    const std::string text = to_text(request);
    const yfw::Document document{.text = text,
                                 .format = request.shape == Shape::json ? yfw::Format::json : yfw::Format::xml};
    const std::string before = host_.running().print(yfw::Format::xml);
    const Verdict verdict = model_.apply(request);
    ++tally().requests;
    try {
      const yfw::EditResult result = host_.apply(document);
      if (!verdict.faults.empty()) return {"accepted, but should be refused", to_text(verdict.faults)};
      const Failure failure = compare_result(result, verdict);
      return failure.kind.empty() ? compare_states() : failure;
    } catch (const yfw::Refused& refused) {
      return compare_refusal(refused.error(), verdict, before);
    } catch (const std::exception& exception) {
      return {"failed", exception.what()};
    }
  }

  Failure compare_refusal(const yfw::RpcError& error, const Verdict& verdict, const std::string& before) const {
    const std::string said = error.tag + " " + error.path + " (" + error.message + ")\n";
    ++tally().refused;
    ++tally().refusals[error.tag];
    if (verdict.faults.empty()) return {"refused, but should be accepted", said};
    const bool known = std::any_of(verdict.faults.begin(), verdict.faults.end(),
                                   [&error](const Fault& fault) { return fault.tag == error.tag; });
    if (!known) return {"refused for the wrong reason", said + "should be:\n" + to_text(verdict.faults)};
    if (error.message.empty()) return {"refused without a word", said};
    return differs("changed by a refused request", before, host_.running().print(yfw::Format::xml));
  }

  // The report names an exception that is met, or what was there before.
  static bool is_explained(const std::string& advice, const std::vector<std::string>& met) {
    return std::any_of(met.begin(), met.end(), [&advice](const std::string& name) {
      const auto& all = exceptions();
      const auto known =
          std::find_if(all.begin(), all.end(), [&name](const Exception& each) { return name == each.name; });
      if (known != all.end()) return advice.find(known->told) != std::string::npos;
      return advice.find("there natively") != std::string::npos || advice.find("it stays") != std::string::npos;
    });
  }

  static Failure compare_result(const yfw::EditResult& result, const Verdict& verdict) {
    const std::string wanted = to_text(verdict.changes);
    Failure failure = differs("reported differences", wanted, to_text(observe_changes(result.differences)));
    if (!failure.kind.empty()) return failure;
    if (!verdict.changes.empty() && verdict.explanations.empty()) return {"no named exception explains", wanted};
    for (const yfw::Difference& each : result.differences) {
      if (!is_explained(each.advice, verdict.explanations)) {
        return {"a difference that another exception explains", each.path + ": " + each.advice};
      }
    }
    for (const std::string& name : verdict.explanations) {
      if (!verdict.changes.empty()) ++tally().explanations[name];
    }
    failure = differs("what stays and goes unsaid", to_text(verdict.unsaid), to_text(observe_unsaid(result.unsaid)));
    if (!failure.kind.empty()) return failure;
    const std::string untold = untold_in(result.warnings, verdict.unsaid);
    if (!untold.empty()) return {"not told of what is unsaid", untold};
    for (const UnsaidLeaf& each : verdict.unsaid) ++(each.goes ? tally().going : tally().staying);
    return compare_told(result.warnings, verdict.told);
  }

  static Failure compare_told(const std::vector<yfw::Warning>& warnings, const std::vector<std::string>& wanted) {
    for (const std::string& path : wanted) {
      const bool told = std::any_of(warnings.begin(), warnings.end(), [&path](const yfw::Warning& warning) {
        return observe_path(warning.path).starts_with(path);
      });
      if (!told) return {"not told", path};
    }
    return {};
  }

  Failure compare_states() {
    Failure failure =
        differs("native running configuration", to_text(model_.native()), to_text(observe_native(host_.running())));
    if (!failure.kind.empty()) return failure;
    const yfw::ReadResult read = host_.read();
    failure = differs("OpenConfig configuration", to_text(model_.read()), to_text(observe_config(read.data)));
    if (!failure.kind.empty()) return failure;
    const std::string reason = invalid_because(read.data);
    if (!reason.empty()) return {"what reads back is not valid", reason};
    return {};
  }

  yfw::Host& host_;
  const Sequence& sequence_;
  Device model_;
  std::string start_;
};

}  // namespace

yfw::Host& Hosts::get(bool new_entries_are_l2, bool strict) {
  std::unique_ptr<yfw::Host>& host = hosts_[new_entries_are_l2 ? 1 : 0][strict ? 1 : 0];
  if (host == nullptr) {
    yfw::HostOptions options{.yang_dir = OC_VLAN_SOURCE_DIR "/yang"};
    if (models_ == Models::published) options.openconfig_dir = published_modules();
    if (new_entries_are_l2) options.layer = yfw::Layer::l2;
    if (strict) options.verify = yfw::Verify::strict;
    host = std::make_unique<yfw::Host>(options);
    host->load_plugin(plugin_file());
  }
  return *host;
}

Failure run(Hosts& hosts, const Sequence& sequence) {
  return Run(hosts.get(sequence.new_entries_are_l2, sequence.strict), sequence).all();
}

Tally& tally() {
  static Tally all;
  return all;
}

std::uint64_t number_from(const char* variable, std::uint64_t otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::stoull(text);
}

std::uint64_t sequences() {
  return number_from("OC_VLAN_SEQUENCES", 10000);
}

std::string published_modules() {
  const char* const folder = OC_VLAN_PUBLISHED_YANG;
  return std::filesystem::exists(folder) ? folder : "";
}

std::string plugin_file() {
  const char* const other = std::getenv("OC_VLAN_PLUGIN");
  return other == nullptr ? OC_VLAN_PLUGIN_FILE : other;
}

}  // namespace property
