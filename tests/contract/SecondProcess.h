// Another run of this test program, beside this one.
#pragma once

#include <cstdint>
#include <string>

namespace ostrel {

class SecondProcess {
 public:
  /// Runs one test of this program, which finds the value in the environment under the name.
  SecondProcess(const std::string& test, const std::string& name, const std::string& value);
  /// Waits for its end.
  ~SecondProcess();
  SecondProcess(const SecondProcess&) = delete;
  SecondProcess& operator=(const SecondProcess&) = delete;

  /// Waits for its end; whether its test has passed.
  bool Passed();

 private:
  std::intptr_t process = 0;  // 0: has not started, or has ended
  bool passed = false;
};

}  // namespace ostrel
