// The event loop over the thread's message queue. The loop looks at the timers itself, after every
// message, since timer messages are served only when there are no others. One system timer on a
// hidden window stands for the next tick all the same: the loops of message boxes, menus and
// dragging are the system's own and know nothing of ours.
#include "platform/EventLoop.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/detail/TimerList.h"
#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {
namespace {

using std::chrono::milliseconds;

constexpr auto kForEver = LoopClock::time_point::max();
constexpr UINT_PTR kTickTimer = 1;
constexpr DWORD kDialogClass = 0x8002;  // the atom of the system's dialogs

DWORD MillisecondsUntil(LoopClock::time_point time) {
  if (time == kForEver) return INFINITE;
  const auto wait = std::chrono::ceil<milliseconds>(time - LoopClock::now()).count();
  constexpr milliseconds::rep longest = 1'000'000;
  return static_cast<DWORD>(std::clamp<milliseconds::rep>(wait, 0, longest));
}

/// Tab, Enter, Escape and access keys in a form.
bool IsDialogKey(MSG& message) {
  if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
  const HWND form = GetAncestor(message.hwnd, GA_ROOT);
  const bool isDialog = form != nullptr && GetClassLongW(form, GCW_ATOM) == kDialogClass;
  return isDialog && IsDialogMessageW(form, &message);
}

class Loop {
 public:
  Loop();
  ~Loop();
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  void Tick() noexcept;
  void TimersChanged();
  void DispatchWaiting();
  bool DispatchUntil(HANDLE object, LoopClock::time_point deadline,
                     const std::function<bool()>& cancelled = {});
  void RunHandlers(HWND window, UINT message, HandlerRef run) noexcept;
  int Run();
  void Quit(int exitCode);

  TimerList oTimers;
  std::optional<int> quitCode;
  int handlers = 0;  // on the stack

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void OnTickTimer();
  bool DispatchOne();
  void Dispatch(MSG& message);

  HWND oWindow = nullptr;
  LoopClock::time_point dArmedFor = kForEver;
  /// The message that this loop has dispatched, until its handlers begin: nested loops' differ.
  HWND oDispatchedTo = nullptr;
  UINT iDispatched = 0;
};

Loop& TheLoop() {
  static Loop loop;
  return loop;
}

Loop::Loop() {
  oWindow = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(oWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Loop::OnMessage));
}

Loop::~Loop() { DestroyWindow(oWindow); }

LRESULT CALLBACK Loop::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_TIMER || wParam != kTickTimer) {
    return DefWindowProcW(window, message, wParam, lParam);
  }
  TheLoop().RunHandlers(window, message, [] { TheLoop().OnTickTimer(); });
  return 0;
}

void Loop::OnTickTimer() {
  dArmedFor = kForEver;
  TimersChanged();
}

/// A handler that raises ends the program here: the callers above the seam catch everything.
void Loop::Tick() noexcept {
  ++handlers;
  const bool ticked = oTimers.TickDue();
  --handlers;
  if (ticked) TimersChanged();
}

/// After a message of this loop's own the loop looks at the timers by itself.
void Loop::RunHandlers(HWND window, UINT message, HandlerRef run) noexcept {
  const bool own = window == oDispatchedTo && message == iDispatched;
  oDispatchedTo = nullptr;
  if (own) return run();
  ++handlers;
  run();
  Tick();
  --handlers;
}

/// Sets the system timer for the next tick.
void Loop::TimersChanged() {
  const auto next = oTimers.NextDue();
  if (next == dArmedFor) return;
  dArmedFor = next;
  if (next == kForEver) {
    KillTimer(oWindow, kTickTimer);
  } else {
    SetTimer(oWindow, kTickTimer, std::max<DWORD>(MillisecondsUntil(next), 1), nullptr);
  }
}

/// One message, then the timers. False when no message waits.
bool Loop::DispatchOne() {
  MSG message;
  if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) return false;
  if (message.message == WM_QUIT) {
    Quit(static_cast<int>(message.wParam));
    return true;
  }
  Dispatch(message);
  Tick();
  return true;
}

void Loop::Dispatch(MSG& message) {
  oDispatchedTo = message.hwnd;
  iDispatched = message.message;
  ++handlers;
  if (!IsDialogKey(message)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  --handlers;
  oDispatchedTo = nullptr;
}

/// Messages may bring forth messages without end, so this stops once the clock of the messages has
/// gone on.
void Loop::DispatchWaiting() {
  const DWORD begun = GetTickCount();
  Tick();
  while (!quitCode && DispatchOne() && GetTickCount() == begun) {
  }
}

bool Loop::DispatchUntil(HANDLE object, LoopClock::time_point deadline,
                         const std::function<bool()>& cancelled) {
  const DWORD count = object == nullptr ? 0 : 1;
  for (;;) {
    Tick();
    if (cancelled && cancelled()) return false;
    if (count != 0 && WaitForSingleObject(object, 0) == WAIT_OBJECT_0) return true;
    if (quitCode || LoopClock::now() >= deadline) return false;
    if (!DispatchOne()) {
      const DWORD wait = MillisecondsUntil(std::min(deadline, oTimers.NextDue()));
      MsgWaitForMultipleObjectsEx(count, &object, wait, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    }
  }
}

/// The system's own loops on the stack (a message box's, a menu's) end as well. Each of them, and
/// each of ours that is nested, takes the message that ends it and posts it again.
void Loop::Quit(int exitCode) {
  quitCode = exitCode;
  PostQuitMessage(exitCode);
  if (const HWND captured = GetCapture()) {
    SendMessageW(captured, WM_CANCELMODE, 0, 0);  // menus and dragging heed nothing else
  }
}

int Loop::Run() {
  DispatchUntil(nullptr, kForEver);
  MSG message;
  while (PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
  }
  return std::exchange(quitCode, std::nullopt).value_or(0);
}

}  // namespace

void DoEvents() { TheLoop().DispatchWaiting(); }

void DoEventsFor(milliseconds time) { TheLoop().DispatchUntil(nullptr, LoopClock::now() + time); }

bool DoEventsUntilSignalled(HANDLE object, LoopClock::time_point deadline,
                            const std::function<bool()>& cancelled) {
  return TheLoop().DispatchUntil(object, deadline, cancelled);
}

bool LoopIsToQuit() { return TheLoop().quitCode.has_value(); }

void RunHandlers(HWND window, UINT message, HandlerRef handlers) noexcept {
  TheLoop().RunHandlers(window, message, handlers);
}

bool IsNestedHandler() { return TheLoop().handlers > 1; }

int RunEventLoop() { return TheLoop().Run(); }

void QuitEventLoop(int exitCode) { TheLoop().Quit(exitCode); }

Timer::Timer(milliseconds interval, std::function<void()> handler)
    : oEntry(TheLoop().oTimers.Add(interval, std::move(handler))) {}

Timer::~Timer() {
  TheLoop().oTimers.Remove(oEntry);
  TheLoop().TimersChanged();
}

bool Timer::Enabled() const { return oEntry->enabled; }

void Timer::SetEnabled(bool enabled) {
  TimerList::SetEnabled(*oEntry, enabled);
  TheLoop().TimersChanged();
}

void Timer::TickSoon() {
  TimerList::TickSoon(*oEntry);
  TheLoop().TimersChanged();
}

}  // namespace ostrel::platform
