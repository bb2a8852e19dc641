// The surroundings of the main form in a test: a window, a clock, QuickBooks, a network and a
// settings file of its own.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "platform/EventLoop.h"
#include "shell/frmMain.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/doubles/FakeDialogs.h"
#include "tests/unit/doubles/FakeFolderNotification.h"
#include "tests/unit/doubles/FakeFrame.h"
#include "tests/unit/doubles/FakeNotifyIcon.h"
#include "tests/unit/doubles/FakeProcesses.h"
#include "tests/unit/doubles/FakeRequestProcessor.h"
#include "tests/unit/doubles/FakeSocketService.h"
#include "tests/unit/doubles/FakeTextForm.h"
#include "tests/unit/doubles/FakeWindow.h"

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
            .frame = Frame,
            .dialogs = Dialogs,
            .processes = Processes,
            .createTextForm = Forms.Factory(),
            .createNotifyIcon = Tray.Factory(),
            .clock = Clock,
            .createProcessor = QuickBooks.Factory(),
            .createSocketServer =
                [this](SocketTransport& transport, Trace&) {
                  Transport = &transport;
                  return std::make_unique<doubles::FakeSocketService>(Network);
                },
            .createFolderNotification =
                [this] {
                  if (iFailingWatches > 0) {
                    --iFailingWatches;
                    throw std::bad_alloc();
                  }
                  auto notification = std::make_unique<doubles::FakeFolderNotification>();
                  notification->Steps = std::exchange(FolderSteps, {});
                  return notification;
                },
            .programFolder = Folder.Path(),
            .commandLine = std::move(commandLine),
            .unloaded = [this] { ++iUnloads; }};
  }

  void Load(Text commandLine = {}) {
    Form = std::make_unique<frmMain>(Surroundings(std::move(commandLine)));
    Form->Load();
  }
  void Ask(std::int16_t socket = 1) {
    Transport->oSocketServer_DataArrival(socket, u"<?xml version=\"1.0\"?><QBXML/>\x1F");
    Form->tmrSocketProcess_Timer();
  }

  bool SessionEnded() const {
    return std::find(QuickBooks.Calls.begin(), QuickBooks.Calls.end(), u"EndSession(ticket)") !=
           QuickBooks.Calls.end();
  }
  // Runs once, in the middle of the next request.
  void During(std::function<void()> event) {
    QuickBooks.DuringCall = [event = std::move(event), done = false](TextView operation) mutable {
      if (operation != u"ProcessRequest" || std::exchange(done, true)) return;
      event();
    };
  }
  void LetTheLoopRun() {
    for (int i = 0; i < 1000 && iUnloads == 0; ++i) {
      platform::DoEventsFor(std::chrono::milliseconds(1));
    }
  }

  bool HasStatus(TextView line) const {
    return std::find(Window.Status.begin(), Window.Status.end(), line) != Window.Status.end();
  }

  ScratchFolder Folder;
  doubles::FakeWindow Window;
  doubles::FakeFrame Frame;
  doubles::FakeDialogs Dialogs;
  doubles::FakeProcesses Processes;
  doubles::FakeForms Forms;
  doubles::FakeTray Tray;
  doubles::FakeClock Clock;
  doubles::FakeQuickBooks QuickBooks;
  doubles::FakeNetwork Network;
  /// The events that the folder's next watcher sees.
  std::deque<doubles::FakeFolderNotification::Step> FolderSteps;
  SocketTransport* Transport = nullptr;  // once a server has been created
  int iUnloads = 0;
  int iFailingWatches = 0;        // for want of memory
  std::unique_ptr<frmMain> Form;  // goes before what it runs in
};

}  // namespace ostrel
