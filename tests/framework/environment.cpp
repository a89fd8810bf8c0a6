// What holds for the whole process of these tests.
#include <gtest/gtest.h>

#include <ctime>

namespace {

// The C library reads the time zone under a lock that the thread sanitizer does not see: no thread must be the first.
class TimeZone : public testing::Environment {
 public:
  void SetUp() override { tzset(); }
};

const testing::Environment* const kTimeZone = testing::AddGlobalTestEnvironment(new TimeZone);

}  // namespace
