// slow-writer FILE: puts each line of its standard input into the file as it comes and says
// "written"; nobody else can open the file before the input ends. Plays a database that takes its
// time.
#include <cstdint>
#include <exception>
#include <iostream>
#include <span>
#include <string>

#include "platform/Console.h"
#include "platform/Files.h"

namespace {

using ostrel::platform::File;

bool Write(File& file, std::string line) {
  if (line.ends_with('\r')) line.pop_back();
  line += "\r\n";
  return file.WriteAt(file.Size().value(), line) == 0;
}

int WriteSlowly(ostrel::TextView path) {
  using namespace ostrel::platform;
  File file;
  if (file.Open(path, FileAccess::kReadWrite, FileCreation::kOpenAlways) != 0) return 1;
  std::cout << "open" << std::endl;
  for (std::string line; std::getline(std::cin, line);) {
    if (!Write(file, std::move(line))) return 1;
    std::cout << "written" << std::endl;
  }
  return 0;
}

}  // namespace

int main(int argc, char* argv[]) {
  try {
    const auto arguments = ostrel::platform::ProgramArguments(argc, argv);
    return arguments.size() == 1 ? WriteSlowly(arguments.front()) : 64;
  } catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
    return 1;
  }
}
