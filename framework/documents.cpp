// Documents of each kind, from text to data.
#include "framework/documents.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <cstring>

#include "framework/documents_build.h"
#include "framework/documents_envelope.h"
#include "framework/schema.h"

namespace yfw {

namespace {

[[noreturn]] void unreadable(const Source& source, int line, const RpcError& error) {
  throw Unreadable(fmt::format("{}: line {}: {}{}", source.name(), line, error.message,
                               error.path.empty() ? "" : fmt::format(" ({})", error.path)));
}

// OpenConfig data, say, are well-formed and valid, but they are not what a device runs.
void check_model(const Source& source, const Data& tree, const char* module) {
  const lyd_node* top = nullptr;
  LY_LIST_FOR(tree.get(), top) {
    if (std::strcmp(top->schema->module->name, module) == 0) continue;
    throw Unreadable(fmt::format("{}: '{}:{}' is not of the model {}", source.name(), top->schema->module->name,
                                 top->schema->name, module));
  }
}

void validate(ly_ctx* models, const Source& source, Data& tree) {
  if (tree.empty()) return;
  constexpr uint32_t kOptions = LYD_VALIDATE_NO_STATE | LYD_VALIDATE_PRESENT;
  if (lyd_validate_all(tree.out(), nullptr, kOptions, nullptr) == LY_SUCCESS) return;
  const ly_err_item* const last = ly_err_last(models);
  const std::string message = last == nullptr || last->msg == nullptr ? "not valid" : last->msg;
  const std::string where = last == nullptr || last->path == nullptr ? "" : fmt::format(" ({})", last->path);
  ly_err_clean(models, nullptr);
  throw Unreadable(fmt::format("{}: {}{}", source.name(), message, where));
}

}  // namespace

EditDocument parse_edit(ly_ctx* ctx, const Document& document, Operation default_operation) {
  const Source source(document);
  const Payload payload = find_payload(source, Envelope::edit);
  EditDocument result;
  result.default_operation = payload.default_operation.value_or(default_operation);
  ly_err_clean(ctx, nullptr);
  TreeBuilder(ctx, source, TreeBuilder::Purpose::edit, result).build(*payload.content, result.default_operation);
  return result;
}

Data parse_data(ly_ctx* ctx, const Document& document, bool state, std::vector<Warning>* warnings) {
  const Source source(document);
  EditDocument result;
  TreeBuilder builder(ctx, source, state ? TreeBuilder::Purpose::state : TreeBuilder::Purpose::configuration, result);
  ly_err_clean(ctx, nullptr);
  try {
    builder.build(*find_payload(source, Envelope::data).content, Operation::merge);
  } catch (const Refused& refused) {
    unreadable(source, builder.line(), refused.error());
  }
  check_model(source, result.tree, state ? kNativeOperModule : kNativeInterfaceModule);
  if (state && result.tree.empty() && !result.warnings.empty()) {
    throw Unreadable(fmt::format("{}: nothing in it can be used: {}", source.name(), result.warnings.front().message));
  }
  if (warnings != nullptr) *warnings = std::move(result.warnings);
  if (state) return std::move(result.tree);
  validate(ctx, source, result.tree);
  return std::move(result.tree);
}

}  // namespace yfw
