// What a test of the main form needs around it: a window, a clock, QuickBooks, a network and a
// settings file of its own.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "../doubles/FakeClock.h"
#include "../doubles/FakeRequestProcessor.h"
#include "../doubles/FakeSocketService.h"
#include "../doubles/FakeWindow.h"
#include "shell/frmMain.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel {

class FormTest : public testing::Test {
 protected:
  FormTest() {
    Ini("[Communication]\r\nFolder=0\r\nSocket=1\r\n");
    QuickBooks.sCompanyFile = u"C:\\a.qbw";
  }

  void Ini(const std::string& lines) { Folder.Write(u"osl.ini", lines); }

  frmMain::Surroundings Surroundings(Text commandLine = {}) {
    return {.window = Window,
            .clock = Clock,
            .createProcessor = QuickBooks.Factory(),
            .createSocketServer =
                [this](SocketTransport& transport, Trace&) {
                  Transport = &transport;
                  return std::make_unique<doubles::FakeSocketService>(Network);
                },
            .programFolder = Folder.Path(),
            .commandLine = std::move(commandLine),
            .unloaded = [this] { ++iUnloads; }};
  }

  bool HasStatus(TextView line) const {
    return std::find(Window.Status.begin(), Window.Status.end(), line) != Window.Status.end();
  }

  ScratchFolder Folder;
  doubles::FakeWindow Window;
  doubles::FakeClock Clock;
  doubles::FakeQuickBooks QuickBooks;
  doubles::FakeNetwork Network;
  SocketTransport* Transport = nullptr;  // once a server has been created
  int iUnloads = 0;
};

}  // namespace ostrel
