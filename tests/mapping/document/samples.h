// What the leaves are tried with: values and whole forms in OpenConfig, and operational data.
#pragma once

#include <string>
#include <vector>

#include "mapping/document/device.h"
#include "mapping/document/rows.h"

namespace mapping {

// Ids that stand for any; numbers with a meaning of their own are none of them.
bool is_sample_id(const std::string& value);

// What a leaf is asked for, with the leaf that its model wants beside it.
struct Sample {
  property::Values values;
  Config beside = {};
  std::string label = {};  // what is special about the values
};
std::vector<Sample> samples_of(const Leaf& leaf);

// Configurations in which each leaf of a container has its place, by path below the entry.
std::vector<Config> forms_of(const std::string& container);

// Operational data of a place, one element a line.
struct Operational {
  std::string list;  // interface, or trunk: the list that the place stands in
  std::string document;
};
std::vector<Operational> operational_of_port(const std::string& name);
std::vector<Operational> operational_of_subinterface(const std::string& name);

// Operational data of which OpenConfig says a part, or nothing.
struct OddOperational {
  std::string name;
  std::string place;  // the interface or sub-interface
  Operational operational;
};
std::vector<OddOperational> odd_operational();

}  // namespace mapping
