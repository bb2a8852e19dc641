#include "bench/GatewayProgram.h"

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace ostrel::bench {
namespace {

std::string Settings(const GatewayProgram& program, const std::string& folder) {
  return "[General]\r\nProcessPath=" + ToUtf8(program.ProcessFolder().Path()) +
         "\r\nResponsePath=" + ToUtf8(program.ResponseFolder().Path()) + "\r\nHistPath=" + folder +
         "\r\nHistory=0\r\nValidateXML=0\r\nStatusPath=" + folder +
         "\r\n[Quickbooks]\r\nFileName=" + folder +
         "/sample.qbw\r\nDisconnectTimeout=300\r\n[Communication]\r\nType=0\r\n" +
         "Folder=1\r\nSocket=1\r\nSocketPort=" + std::to_string(program.Port()) +
         "\r\nBlockSize=10000\r\n";
}

}  // namespace

GatewayProgram::GatewayProgram() : iPort(Listener().Port()) {}

// Its output goes to a file: nobody has to read it for the program to go on.
void GatewayProgram::Start(std::string_view readyText) {
  const std::string folder = ToUtf8(oFolder.Path());
  oFolder.Write(u"osl.ini", Settings(*this, folder));
  const std::filesystem::path company = "sample.qbw";
  std::filesystem::copy_file(std::filesystem::path(OSTREL_SERVER).parent_path() / company,
                             folder / company);
  oProcess.emplace(std::vector<std::string>{"env", "OSTREL_INSTANCE=" + folder, "sh", "-c",
                                            "exec \"$0\" -ini \"$1/osl.ini\" >\"$1/log\"",
                                            OSTREL_SERVER, folder});
  const auto end = BenchClock::now() + std::chrono::seconds(30);
  while (oFolder.Read(u"log").find(readyText) == std::string::npos) {
    if (BenchClock::now() > end) throw std::runtime_error("the gateway did not start");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace ostrel::bench
