// Whole documents as tests compare them: read from files, told apart by unified diffs, carried from JSON to XML.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace golden_test {

// A file that must be there.
std::string contents(const std::string& file);

// A file, or an empty text where there is none.
std::string contents_if_there(const std::string& file);

// What has to be done to `left` to get `right`, as a unified diff with three lines around each change; empty when
// nothing has to.
std::string diff(const std::string& left, const std::string& right, const std::string& left_name,
                 const std::string& right_name);

// True when the text is what the file holds; the failure is the whole difference.
testing::AssertionResult is_file(const std::string& file, const std::string& text);

// A JSON document as XML, by the modules in the folders (the last one first) and none of the code under test.
std::string json_as_xml(const std::vector<std::string>& module_folders, const std::string& json);

}  // namespace golden_test
