// Says that something is under way, for as long as it lives.
#pragma once

namespace ostrel {

class Flag {
 public:
  explicit Flag(bool& flag) : bFlag(flag) { bFlag = true; }
  ~Flag() { bFlag = false; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;

 private:
  bool& bFlag;
};

}  // namespace ostrel
