// The bridge between a Recorder and the C services that are its face to the plug-in.
#pragma once

#include <string>

#include "recording/recorder.h"

namespace recording {

// A text as lines show it.
std::string shown(const char* text);

struct Services {
  static void begin(Recorder& recorder);
  static void end();

  // The recorder of the running test; ends the process when a service is called outside of one.
  static Recorder& current();
  static bool running();

  static uint32_t write(std::string_view service, const std::string& arguments, uint32_t usual = 0, bool minor = false);
  static void check_context(const yfw_map_ctx* ctx);
  static std::string name(const yfw_datatree* node);
  static cerrno add_path(yfw_datatree* tree, const char* path, const char* ns, const char* value,
                         const yfw_datatree* source, yfw_node_slot* slot, uint32_t list_flag, uint32_t flags);
  static cerrno search(std::string_view service, bool add, yfw_datatree* tree, yfw_node_slot* slot, const char* path,
                       const char* key_value, const char* key_name, const char* ns);
  static cerrno node_info(const char* path, const char* name, yfw_node_info* info);
  static cerrno add_to_output_list(const yfw_datatree* node, const yfw_datatree* output);
  static cerrno remove_from_output_list(const yfw_datatree* node, const yfw_datatree* output);
  static char* duplicate(const char* text, const char* owner);
  static void release(void* block);
  static void copy(char* destination, std::size_t size, const char* source, std::size_t count);
  static bool logs(int level);
  static void log(MessageRecord record);
  static uint32_t next_trace_index();
  static void trace(MessageRecord record);
  static cerrno find_interface(const imc_find_request& request, imc_find_reply& reply);
  static cerrno interface_flags(uint32_t handle, imc_flags_reply& reply);
  static cerrno sysdb_item(uint64_t connid, const char* path, void** value, uint32_t* length, uint32_t* type,
                           uint32_t flags);
  static void sysdb_numbers(int32_t* numbers[3]);
};

}  // namespace recording
