#include "tests/driver/win32/Commands.h"
#include "tests/driver/win32/MenuRecord.h"

namespace ostrel::driver {
namespace {

/// The memory into which the hook writes, while this lives.
class SharedRecord {
 public:
  SharedRecord()
      : mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                   sizeof(MenuRecord), kMenuRecord)),
        view(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, sizeof(MenuRecord))) {
    if (view == nullptr) throw CommandError("no shared memory");
  }
  ~SharedRecord() {
    UnmapViewOfFile(view);
    CloseHandle(mapping);
  }
  SharedRecord(const SharedRecord&) = delete;
  SharedRecord& operator=(const SharedRecord&) = delete;

  const MenuRecord& Get() const { return *static_cast<const MenuRecord*>(view); }

 private:
  HANDLE mapping;
  void* view;
};

/// The hook in the window's thread, while this lives.
class Hook {
 public:
  explicit Hook(HWND window) {
    static const HMODULE library = LoadLibraryA(kHookLibrary);
    const FARPROC procedure =
        library == nullptr ? nullptr : GetProcAddress(library, kHookProcedure);
    if (procedure == nullptr) throw CommandError("no ostrel-hook.dll");
    hook = SetWindowsHookExW(WH_CALLWNDPROC,
                             reinterpret_cast<HOOKPROC>(reinterpret_cast<void*>(procedure)),
                             library, GetWindowThreadProcessId(window, nullptr));
    if (hook == nullptr) throw CommandError("no hook in the window's thread");
  }
  ~Hook() { UnhookWindowsHookEx(hook); }
  Hook(const Hook&) = delete;
  Hook& operator=(const Hook&) = delete;

 private:
  HHOOK hook = nullptr;
};

/// WINDOW: of each item of its menu five fields.
Fields ReadMenu(const Fields& arguments) {
  const HWND window = WindowOf(arguments[0]);
  const SharedRecord record;
  const Hook hook(window);
  SendTo(window, RegisterWindowMessageW(kReadMenu), 0, 0);
  if (!record.Get().written) throw CommandError("the hook was not called");
  Fields fields;
  for (int i = 0; i < record.Get().count; ++i) {
    const MenuItemRecord& item = record.Get().items[i];
    fields.insert(fields.end(), {std::to_wstring(item.level), std::to_wstring(item.id),
                                 std::to_wstring(item.state), item.isSeparator ? L"1" : L"0",
                                 item.isSeparator ? L"-" : item.caption});
  }
  return fields;
}

constexpr Command kMenuCommands[] = {{L"menu", 1, ReadMenu}};

}  // namespace

std::span<const Command> MenuCommands() { return kMenuCommands; }

}  // namespace ostrel::driver
