// Nested handlers on Windows, where message boxes and menus have loops of their own.
#include <windows.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>

#include "platform/EventLoop.h"
#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {
namespace {

using std::chrono::milliseconds;

constexpr char kTitle[] = "Nested handlers of the contract test";
constexpr UINT kSpeak = WM_APP, kAsk = WM_APP + 1;

/// A window whose messages have handlers of the test's own.
class TestWindow {
 public:
  TestWindow()
      : oWindow(CreateWindowExA(0, "STATIC", kTitle, WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                GetModuleHandleA(nullptr), nullptr)) {
    SetWindowLongPtrA(oWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrA(oWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TestWindow::OnMessage));
  }
  ~TestWindow() { DestroyWindow(oWindow); }
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;

  HWND Handle() const { return oWindow; }
  void Post(UINT message) const { PostMessageA(oWindow, message, 0, 0); }

  std::function<void()> Spoken, Asked;

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto& own = *reinterpret_cast<TestWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (message != kSpeak && message != kAsk) {
      return DefWindowProcA(window, message, wParam, lParam);
    }
    RunHandlers(window, message, message == kSpeak ? own.Spoken : own.Asked);
    return 0;
  }

  HWND oWindow;
};

/// The loop inside a message box or a menu, which knows nothing of ours.
void RunLoopOfTheSystems(const std::optional<bool>& until) {
  MSG message;
  while (!until && GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
}

TEST(NestedHandler, ATickInsideAMessageBoxIsNested) {
  std::optional<bool> nested;
  Timer inside(milliseconds(5), [&] {
    nested = IsNestedHandler();
    if (const HWND box = FindWindowA("#32770", kTitle)) PostMessageA(box, WM_COMMAND, IDOK, 0);
  });
  Timer outer(milliseconds(1), [&] {
    outer.SetEnabled(false);
    inside.SetEnabled(true);
    MessageBoxA(nullptr, "Text", kTitle, MB_OK);
    inside.SetEnabled(false);
    QuitEventLoop(0);
  });
  outer.SetEnabled(true);

  RunEventLoop();

  EXPECT_EQ(nested, true);
}

TEST(NestedHandler, ATickInsideALoopOfAMessagesHandlerIsNested) {
  std::optional<bool> nested;
  Timer inside(milliseconds(5), [&] { nested = IsNestedHandler(); });
  TestWindow window;
  window.Spoken = [&] {
    inside.SetEnabled(true);
    RunLoopOfTheSystems(nested);
    inside.SetEnabled(false);
    QuitEventLoop(0);
  };
  window.Post(kSpeak);

  RunEventLoop();

  EXPECT_EQ(nested, true);
}

TEST(NestedHandler, ATickInsideAMessageBoxBeforeTheLoopIsNested) {
  std::optional<bool> nested;
  Timer inside(milliseconds(5), [&] { nested = IsNestedHandler(); });
  inside.SetEnabled(true);

  RunLoopOfTheSystems(nested);

  EXPECT_EQ(nested, true);
}

TEST(NestedHandler, AMessageInsideALoopOfTheSystemsIsNested) {
  std::optional<bool> nested;
  TestWindow window;
  window.Asked = [&] { nested = IsNestedHandler(); };
  window.Spoken = [&] {
    window.Post(kAsk);
    RunLoopOfTheSystems(nested);
    QuitEventLoop(0);
  };
  window.Post(kSpeak);

  RunEventLoop();

  EXPECT_EQ(nested, true);
}

TEST(NestedHandler, TheSameMessageInsideALoopOfTheSystemsIsNested) {
  std::optional<bool> nested;
  bool inside = false;
  TestWindow window;
  window.Spoken = [&] {
    if (inside) {
      nested = IsNestedHandler();
      return;
    }
    inside = true;
    window.Post(kSpeak);
    RunLoopOfTheSystems(nested);
    QuitEventLoop(0);
  };
  window.Post(kSpeak);

  RunEventLoop();

  EXPECT_EQ(nested, true);
}

TEST(NestedHandler, AFloodOfMessagesInALoopOfTheSystemsLeavesTimersTheirTurn) {
  std::optional<bool> nested;
  int messages = 0;
  Timer timer(milliseconds(2), [&] { nested = IsNestedHandler(); });
  TestWindow window;
  window.Asked = [&] {
    if (++messages == 1'000'000) nested = false;
    window.Post(kAsk);
  };
  window.Spoken = [&] {
    window.Post(kAsk);
    timer.SetEnabled(true);
    RunLoopOfTheSystems(nested);
    timer.SetEnabled(false);
    QuitEventLoop(0);
  };
  window.Post(kSpeak);

  RunEventLoop();

  EXPECT_EQ(nested, true);
}

TEST(NestedHandler, ATickInsideAPopupMenuIsNested) {
  std::optional<bool> nested;
  TestWindow window;
  Timer inside(milliseconds(5), [&] {
    nested = IsNestedHandler();
    EndMenu();
  });
  window.Spoken = [&] {
    const HMENU menu = CreatePopupMenu();
    AppendMenuA(menu, MF_STRING, 1, "Item");
    inside.SetEnabled(true);
    // Another program's window that comes to the front closes the menu before the tick.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!nested && std::chrono::steady_clock::now() < deadline) {
      TrackPopupMenu(menu, TPM_RETURNCMD, 0, 0, 0, window.Handle(), nullptr);
    }
    inside.SetEnabled(false);
    DestroyMenu(menu);
    QuitEventLoop(0);
  };
  window.Post(kSpeak);

  RunEventLoop();

  EXPECT_EQ(nested, true);
}

TEST(NestedHandler, AMessageOfTheOutermostLoopIsNotNestedNorIsATickBehindIt) {
  int messages = 0, nested = 0;
  Timer timer(milliseconds(1), [&] {
    nested += IsNestedHandler() ? 1 : 0;
    if (messages > 200) QuitEventLoop(0);
  });
  TestWindow window;
  window.Asked = [&] {
    ++messages;
    nested += IsNestedHandler() ? 1 : 0;
    window.Post(kAsk);
  };
  timer.SetEnabled(true);
  window.Post(kAsk);

  RunEventLoop();

  EXPECT_EQ(nested, 0);
}

/// The hidden window that stands for the next tick.
HWND TickWindow(HWND after) {
  for (HWND window = after;;) {
    window = FindWindowExA(HWND_MESSAGE, window, "STATIC", "");
    DWORD process = 0;
    if (window == nullptr || GetWindowThreadProcessId(window, &process) == 0 ||
        process == GetCurrentProcessId()) {
      return window;
    }
  }
}

TEST(NestedHandler, ATickBehindATimerMessageOfTheOutermostLoopIsNotNested) {
  int ticks = 0, nested = 0;
  Timer timer(milliseconds(1), [&] {
    nested += IsNestedHandler() ? 1 : 0;
    for (HWND window = nullptr; (window = TickWindow(window)) != nullptr;) {
      for (int i = 0; i < 20; ++i) PostMessageA(window, WM_TIMER, 1, 0);
    }
    if (++ticks > 100) QuitEventLoop(0);
  });
  timer.SetEnabled(true);

  RunEventLoop();

  EXPECT_EQ(nested, 0);
}

}  // namespace
}  // namespace ostrel::platform
