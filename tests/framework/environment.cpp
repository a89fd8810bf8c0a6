// What holds for the whole process of these tests.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace {

// The C library changes its time zone under a lock that the thread sanitizer does not see, and takes a zone that is not
// set for a change whenever it is asked: it is set before any thread asks.
class TimeZone : public testing::Environment {
 public:
  void SetUp() override {
    setenv("TZ", "UTC", 1);
    tzset();
  }
};

const testing::Environment* const kTimeZone = testing::AddGlobalTestEnvironment(new TimeZone);

}  // namespace
