// What a test of the main form needs around it: a window, a clock, QuickBooks, a network and a
// settings file of its own.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <utility>

#include "../doubles/FakeClock.h"
#include "../doubles/FakeFolderNotification.h"
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
            .createFolderNotification =
                [this] {
                  auto notification = std::make_unique<doubles::FakeFolderNotification>();
                  notification->Steps = std::exchange(FolderSteps, {});
                  return notification;
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
  /// What the folder's next watcher sees.
  std::deque<doubles::FakeFolderNotification::Step> FolderSteps;
  SocketTransport* Transport = nullptr;  // once a server has been created
  int iUnloads = 0;
};

}  // namespace ostrel
