// Documents of each kind, from text to data.
#include "framework/documents/documents.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <cstring>
#include <optional>

#include "framework/datastore/validate.h"
#include "framework/documents/build.h"
#include "framework/documents/envelope.h"
#include "framework/documents/source.h"
#include "framework/tree/foreign.h"
#include "framework/tree/models.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

[[noreturn]] void unreadable(const Source& source, int line, const RpcError& error) {
  throw Unreadable(fmt::format("{}: line {}: {}{}", source.name(), line, error.message,
                               error.path.empty() ? "" : fmt::format(" ({})", error.path)));
}

Source::IsForeign unloaded(const ly_ctx* models, Format format) {
  return [models, format](const char* ns) {
    return (format == Format::xml ? ly_ctx_get_module_implemented_ns(models, ns)
                                  : ly_ctx_get_module_implemented(models, ns)) == nullptr;
  };
}

// OpenConfig data, say, are well-formed and valid, but they are not what a device runs.
template <typename IsRight>
void check_models(const Source& source, const Data& tree, const char* module, const IsRight& is_right) {
  const lyd_node* top = nullptr;
  LY_LIST_FOR(tree.get(), top) {
    if (std::strcmp(top->schema->module->name, module) == 0 || is_right(top->schema->module)) continue;
    throw Unreadable(fmt::format("{}: '{}:{}' is not of the model {}", source.name(), top->schema->module->name,
                                 top->schema->name, module));
  }
}

// What data that are not an edit must be.
void finish(TreeBuilder& builder, const Source& source) {
  bool in_envelope = true;
  try {
    const Payload payload = find_payload(source, Envelope::data);
    in_envelope = false;
    builder.finish(*payload.content);
  } catch (const Refused& refused) {
    unreadable(source, in_envelope ? 1 : builder.line(), refused.error());
  }
}

Warning left_attributes(const Source& source, const TreeBuilder::LeftAttributes& left) {
  const std::string others =
      left.count == 1
          ? ""
          : fmt::format(", nor {} of {}", left.count == 2 ? "is 1 more" : fmt::format("are {} more", left.count - 1),
                        source.name());
  return {left.path, fmt::format("the attribute '{}' is not kept{}", left.name, others)};
}

void validate(ly_ctx* models, const Source& source, Data& tree) {
  if (Validator().validate(tree)) return;
  const ly_err_item* const last = ly_err_last(models);
  const std::string message = last == nullptr || last->msg == nullptr ? "not valid" : last->msg;
  const std::string where = last == nullptr || last->path == nullptr ? "" : fmt::format(" ({})", last->path);
  ly_err_clean(models, nullptr);
  throw Unreadable(fmt::format("{}: {}{}", source.name(), message, where));
}

}  // namespace

EditDocument parse_edit(ly_ctx* ctx, const Document& document, Operation default_operation) {
  EditDocument result;
  TreeBuilder builder(ctx, document.format, TreeBuilder::Purpose::edit, result);
  const Source source(document, {}, &builder);
  const Payload payload = find_payload(source, Envelope::edit);
  builder.finish(*payload.content);
  result.default_operation = payload.default_operation.value_or(default_operation);
  return result;
}

RunningDocument parse_running(const Models& models, const Document& document) {
  EditDocument built;
  std::vector<ForeignSubtree> foreign;
  TreeBuilder builder(models.get(), document.format, TreeBuilder::Purpose::configuration, built);
  builder.keep_foreign(foreign);
  const Source source(document, unloaded(models.get(), document.format), &builder);
  finish(builder, source);
  check_models(source, built.tree, kNativeInterfaceModule,
               [&models](const lys_module* module) { return models.is_further(module); });
  validate(models.get(), source, built.tree);
  RunningDocument result;
  result.data = std::move(built.tree);
  if (!foreign.empty()) result.warnings.push_back(warning_of(foreign, source.name()));
  if (builder.left_attributes().count > 0) {
    result.warnings.push_back(left_attributes(source, builder.left_attributes()));
  }
  result.foreign = ForeignSubtrees(std::move(foreign), document.format);
  return result;
}

Data parse_operational(ly_ctx* ctx, const Document& document, std::vector<Warning>* warnings) {
  EditDocument result;
  TreeBuilder builder(ctx, document.format, TreeBuilder::Purpose::state, result);
  const Source source(document, {}, &builder);
  finish(builder, source);
  check_models(source, result.tree, kNativeOperModule, [](const lys_module*) { return false; });
  if (result.tree.empty() && !result.warnings.empty()) {
    throw Unreadable(fmt::format("{}: nothing in it can be used: {}", source.name(), result.warnings.front().message));
  }
  if (warnings != nullptr) *warnings = std::move(result.warnings);
  return std::move(result.tree);
}

namespace {

// Whether the first of the two roots that stands in an element or in envelopes in it is OpenConfig's; none: nullopt.
std::optional<bool> holds_edit(const Element& element) {
  for (const Element* child = element.first; child != nullptr; child = child->next) {
    if (child->foreign != nullptr) continue;
    if (std::strcmp(child->name, "interfaces") == 0) return true;
    if (std::strcmp(child->name, "interface-configurations") == 0) return false;
    const std::optional<bool> inside = is_netconf(child->ns) ? holds_edit(*child) : std::nullopt;
    if (inside.has_value()) return inside;
  }
  return std::nullopt;
}

// Holds on to what stands around data only.
class Around : public Taker {
 public:
  bool begins_in(const Element& parent, const Element&) override { return !is_netconf(parent.ns); }
  bool goes_on_in(const Element&) override { return false; }
  void take(const Element&) override {}
};

}  // namespace

bool is_edit(ly_ctx* ctx, const Document& document) {
  Around around;
  return holds_edit(Source(document, unloaded(ctx, document.format), &around).top()).value_or(false);
}

}  // namespace yfw
