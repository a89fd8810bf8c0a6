// What can go wrong, in NETCONF's terms (RFC 6241 section 4.3 and appendix A), and how it travels.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace yfw {

// One rpc-error. Paths are instance identifiers in the form /module:node/node[key='value']; empty when there is none.
struct RpcError {
  std::string tag;                   // error-tag, e.g. "invalid-value"
  std::string path;                  // error-path
  std::string message;               // error-message, one line for a person
  std::string bad_element = {};      // error-info bad-element
  std::string bad_attribute = {};    // error-info bad-attribute
  std::string bad_namespace = {};    // error-info bad-namespace
  std::string type = "application";  // error-type: transport, rpc, protocol or application
};

// Something that was done although it deserves attention: what, and where.
struct Warning {
  std::string path;  // instance path, empty when the warning is about the request as a whole
  std::string message;
  bool unsaid = false;  // about native settings that OpenConfig does not say; there are records of them too
};

// The request was understood and refused. Nothing was applied.
class Refused : public std::runtime_error {
 public:
  explicit Refused(RpcError error) : std::runtime_error(error.message), error_(std::move(error)) {}
  const RpcError& error() const noexcept { return error_; }

 private:
  RpcError error_;
};

// A document, a model or a plug-in could not be read or is not well-formed.
class Unreadable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace yfw
