// dialog_driver [WINDOW OPTION...] ACTION...     finds a window of another program and drives it
//
// Which window (all that are given must hold; the first visible top-level window in
// front-to-back order is taken):
//   -caption TEXT   -starts TEXT (of the caption)   -class NAME   -has ID (it has this control)   -text ID
//   TEXT -any            invisible windows too -t MS           how long each wait may last (10000)
// Actions, in order; a new window option after an action begins a new search:
//   find                  nothing more than finding it
//   none                  waits until no such window is there (any more)
//   list                  prints every control: id, class, state (v visible, e enabled, c checked, f focus),
//   rectangle, text get ID                prints the text of a control; ID 0 is the caption set ID TEXT sets
//   a text and tells the dialog click ID              posts BM_CLICK                 command ID   posts
//   WM_COMMAND notify ID CODE        posts WM_COMMAND with a notification code check ID              prints
//   0, 1 or 2               enabled ID, visible ID   print 0 or 1 items ID              prints the lines of a
//   list or combo box        selected ID   prints the index, -1 for none select ID INDEX       selects a line
//   and tells the dialog            dblclick ID INDEX   the same with a double click focus prints the id of
//   the control that has the focus keys TEXT             sends keys: {TAB} {ENTER} {ESC} {SPACE} {UP} {DOWN}
//   {LEFT} {RIGHT} {HOME} {END} {PGUP} {PGDN} {BS}
//                         {DEL} {F1}..{F9}; %x is Alt+x, ^x Ctrl+x, +x Shift+x; other letters and digits as
//                         they are
//   wait-text ID TEXT     waits until a control has the text             wait-enabled ID, wait-focus ID
//   rect                  prints the window's place on the screen: left top width height
//   close                 posts WM_CLOSE                 gone   waits until this window no longer exists or
//   is hidden windows               prints all visible top-level windows: class, caption
// Exit codes: 0; 1 no such window; 2 usage; 3 no such control; 4 a wait was in vain; 5
// the window does not answer.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

enum ExitCode { kDone = 0, kNoWindow = 1, kUsage = 2, kNoControl = 3, kInVain = 4, kNoAnswer = 5 };

struct Wanted {
  std::string caption, starts, className, text;
  bool hasCaption = false, hasStarts = false, any = false;
  int control = -1;
  int textControl = -1;
};

struct State {
  Wanted wanted;
  bool searched = false;
  HWND window = nullptr;
  DWORD timeout = 10000;
};

[[noreturn]] void End(ExitCode code, const std::string& why) {
  printf("dialog_driver: %s\n", why.c_str());
  exit(code);
}

LRESULT Send(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  DWORD_PTR result = 0;
  if (!SendMessageTimeoutA(window, message, wparam, lparam, SMTO_NORMAL, 5000, &result))
    End(kNoAnswer, "the window does not answer");
  return static_cast<LRESULT>(result);
}

std::string TextOf(HWND window) {
  std::string text(static_cast<size_t>(Send(window, WM_GETTEXTLENGTH, 0, 0)) + 1, '\0');
  text.resize(
      static_cast<size_t>(Send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

std::string ClassOf(HWND window) {
  char name[256] = "";
  GetClassNameA(window, name, sizeof name);
  return name;
}

// Any descendant: tab pages are dialogs within the dialog.
struct ControlSearch {
  int id;
  HWND found;
};
BOOL CALLBACK TryControl(HWND child, LPARAM data) {
  auto* search = reinterpret_cast<ControlSearch*>(data);
  if (GetDlgCtrlID(child) != search->id) return TRUE;
  search->found = child;
  return FALSE;
}
HWND FindControl(HWND window, int id) {
  if (id == 0) return window;
  ControlSearch search = {id, nullptr};
  EnumChildWindows(window, TryControl, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

bool Matches(HWND window, const Wanted& wanted) {
  if (!wanted.any && !IsWindowVisible(window)) return false;
  if (!wanted.className.empty() && ClassOf(window) != wanted.className) return false;
  // For another process this reads what the system keeps, so a hung window cannot hang us too.
  char caption[1024] = "";
  GetWindowTextA(window, caption, sizeof caption);
  const std::string text = caption;
  if (wanted.hasCaption && text != wanted.caption) return false;
  if (wanted.hasStarts && text.compare(0, wanted.starts.size(), wanted.starts) != 0) return false;
  if (wanted.control >= 0 && !FindControl(window, wanted.control)) return false;
  if (wanted.textControl >= 0) {
    const HWND control = FindControl(window, wanted.textControl);
    if (!control || TextOf(control) != wanted.text) return false;
  }
  return true;
}

BOOL CALLBACK TryWindow(HWND window, LPARAM data) {
  auto* state = reinterpret_cast<State*>(data);
  if (!Matches(window, state->wanted)) return TRUE;
  state->window = window;
  return FALSE;
}

template <class Condition>
bool WaitFor(const State& state, Condition condition) {
  const DWORD start = GetTickCount();
  while (!condition()) {
    if (GetTickCount() - start >= state.timeout) return false;
    Sleep(10);
  }
  return true;
}

bool Search(State& state) {
  state.window = nullptr;
  EnumWindows(TryWindow, reinterpret_cast<LPARAM>(&state));
  return state.window != nullptr;
}

void NeedWindow(State& state) {
  if (state.searched && state.window) return;
  state.searched = true;
  if (!WaitFor(state, [&state] { return Search(state); })) End(kNoWindow, "no such window");
}

HWND NeedControl(State& state, const char* id) {
  NeedWindow(state);
  HWND control = nullptr;
  if (!WaitFor(state, [&] { return (control = FindControl(state.window, atoi(id))) != nullptr; }))
    End(kNoControl, "no control " + std::string(id));
  return control;
}

void PostCommand(HWND control, int id, int code) {
  PostMessageA(GetParent(control), WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(control));
}

HWND FocusOf(HWND window) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}

BOOL CALLBACK PrintControl(HWND child, LPARAM data) {
  const HWND window = reinterpret_cast<HWND>(data);
  RECT rect = {};
  GetWindowRect(child, &rect);
  MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&rect), 2);
  std::string state;
  if (IsWindowVisible(child)) state += 'v';
  if (IsWindowEnabled(child)) state += 'e';
  if (ClassOf(child) == "Button" && Send(child, BM_GETCHECK, 0, 0) == BST_CHECKED) state += 'c';
  if (FocusOf(window) == child) state += 'f';
  printf("%d\t%s\t%s\t%ld,%ld,%ld,%ld\t%s\n", GetDlgCtrlID(child), ClassOf(child).c_str(), state.c_str(),
         rect.left, rect.top, rect.right, rect.bottom, TextOf(child).c_str());
  return TRUE;
}

BOOL CALLBACK PrintWindowLine(HWND window, LPARAM) {
  char caption[1024] = "";
  GetWindowTextA(window, caption, sizeof caption);
  if (IsWindowVisible(window)) printf("%s\t%s\n", ClassOf(window).c_str(), caption);
  return TRUE;
}

void PrintPlace(HWND window) {
  RECT rect = {};
  GetWindowRect(window, &rect);
  printf("%ld %ld %ld %ld\n", rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
}

struct ListMessages {
  UINT count, length, text, selected, select, change, doubleClick;
};
ListMessages MessagesOf(HWND control) {
  if (ClassOf(control) == "ComboBox")
    return {CB_GETCOUNT,  CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_GETCURSEL,
            CB_SETCURSEL, CBN_SELCHANGE,   CBN_DBLCLK};
  return {LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT, LB_GETCURSEL, LB_SETCURSEL, LBN_SELCHANGE, LBN_DBLCLK};
}

// In wide characters: the conversion that a narrow question asks for is not made between programs.
void PrintItems(HWND control) {
  const ListMessages messages = MessagesOf(control);
  const LRESULT count = Send(control, messages.count, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    const LRESULT length = Send(control, messages.length, static_cast<WPARAM>(i), 0);
    std::wstring wide(static_cast<size_t>(length) + 1, L'\0');
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutW(control, messages.text, static_cast<WPARAM>(i),
                             reinterpret_cast<LPARAM>(wide.data()), SMTO_NORMAL, 5000, &result))
      End(kNoAnswer, "the window does not answer");
    char text[1024] = "";
    WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, text, sizeof text - 1, nullptr, nullptr);
    printf("%s\n", text);
  }
}

void SelectItem(HWND control, int id, const char* index, bool doubleClick) {
  const ListMessages messages = MessagesOf(control);
  Send(control, messages.select, static_cast<WPARAM>(atoi(index)), 0);
  PostCommand(control, id, static_cast<int>(messages.change));
  if (doubleClick) PostCommand(control, id, static_cast<int>(messages.doubleClick));
}

// ---- keys ----

struct KeyName {
  const char* name;
  WORD key;
};
constexpr KeyName kKeyNames[] = {
    {"TAB", VK_TAB},    {"ENTER", VK_RETURN}, {"ESC", VK_ESCAPE},  {"SPACE", VK_SPACE}, {"UP", VK_UP},
    {"DOWN", VK_DOWN},  {"LEFT", VK_LEFT},    {"RIGHT", VK_RIGHT}, {"HOME", VK_HOME},   {"END", VK_END},
    {"PGUP", VK_PRIOR}, {"PGDN", VK_NEXT},    {"BS", VK_BACK},     {"DEL", VK_DELETE},
};

void AddKey(std::vector<INPUT>& inputs, WORD key, bool up) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, 0));
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  inputs.push_back(input);
}

WORD KeyOf(const std::string& text, size_t& pos) {
  if (text[pos] == '{') {
    const size_t end = text.find('}', pos);
    if (end == std::string::npos) End(kUsage, "no } in " + text);
    const std::string name = text.substr(pos + 1, end - pos - 1);
    pos = end;
    if (name.size() == 2 && name[0] == 'F') return static_cast<WORD>(VK_F1 + name[1] - '1');
    for (const KeyName& known : kKeyNames)
      if (name == known.name) return known.key;
    End(kUsage, "no key {" + name + "}");
  }
  return LOBYTE(VkKeyScanA(text[pos]));
}

void SendKeys(HWND window, const std::string& text) {
  SetForegroundWindow(window);
  for (size_t pos = 0; pos < text.size(); ++pos) {
    std::vector<WORD> held;
    while (pos + 1 < text.size() && std::string("%^+").find(text[pos]) != std::string::npos) {
      held.push_back(text[pos] == '%' ? VK_MENU : text[pos] == '^' ? VK_CONTROL : VK_SHIFT);
      ++pos;
    }
    if (text[pos] != '{' && (HIBYTE(VkKeyScanA(text[pos])) & 1) != 0) held.push_back(VK_SHIFT);
    const WORD key = KeyOf(text, pos);
    std::vector<INPUT> inputs;
    for (const WORD modifier : held) AddKey(inputs, modifier, false);
    AddKey(inputs, key, false);
    AddKey(inputs, key, true);
    for (const WORD modifier : held) AddKey(inputs, modifier, true);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    // Each key may move the focus or end the dialog; the next one goes where that leads.
    Sleep(20);
  }
}

// ---- command line ----

// Reads one window option; gives the number of arguments used, 0 when it is none.
int ReadOption(State& state, int left, char** args) {
  const std::string option = args[0];
  if (option.size() < 2 || option[0] != '-') return 0;
  if (state.searched) {
    const DWORD timeout = state.timeout;
    state = State();
    state.timeout = timeout;
  }
  Wanted& wanted = state.wanted;
  if (option == "-any") {
    wanted.any = true;
    return 1;
  }
  if (left < 2) End(kUsage, option + " lacks its argument");
  const char* value = args[1];
  if (option == "-caption") {
    wanted.caption = value;
    wanted.hasCaption = true;
  } else if (option == "-starts") {
    wanted.starts = value;
    wanted.hasStarts = true;
  } else if (option == "-class") {
    wanted.className = value;
  } else if (option == "-has") {
    wanted.control = atoi(value);
  } else if (option == "-t") {
    state.timeout = strtoul(value, nullptr, 0);
  } else if (option == "-text" && left >= 3) {
    wanted.textControl = atoi(value);
    wanted.text = args[2];
    return 3;
  } else {
    End(kUsage, "no option " + option);
  }
  return 2;
}

void WaitOrEnd(bool reached, const std::string& what) {
  if (!reached) End(kInVain, "waited in vain: " + what);
}

// Actions without arguments; false when it is none of them.
bool ActAlone(State& state, const std::string& action) {
  if (action == "windows") {
    EnumWindows(PrintWindowLine, 0);
    return true;
  }
  if (action == "none") {
    state.searched = true;
    WaitOrEnd(WaitFor(state, [&state] { return !Search(state); }), "the window is still there");
    return true;
  }
  if (action != "find" && action != "list" && action != "rect" && action != "focus" && action != "close" &&
      action != "gone")
    return false;
  if (action == "gone") {
    state.searched = true;
    const HWND window = state.window;
    WaitOrEnd(!window || WaitFor(state, [window] { return !IsWindow(window) || !IsWindowVisible(window); }),
              "the window is still there");
    return true;
  }
  NeedWindow(state);
  if (action == "list") EnumChildWindows(state.window, PrintControl, reinterpret_cast<LPARAM>(state.window));
  if (action == "rect") PrintPlace(state.window);
  if (action == "close") PostMessageA(state.window, WM_CLOSE, 0, 0);
  if (action == "focus") {
    const HWND focus = FocusOf(state.window);
    printf("%d\n", focus ? GetDlgCtrlID(focus) : 0);
  }
  return true;
}

// Actions with the id of a control alone.
bool ActOnControl(State& state, const std::string& action, const char* id) {
  if (action == "command") {
    NeedWindow(state);
    PostMessageA(state.window, WM_COMMAND, static_cast<WPARAM>(atoi(id)),
                 reinterpret_cast<LPARAM>(FindControl(state.window, atoi(id))));
    return true;
  }
  const char* known[] = {"get",   "click",    "check",        "enabled",   "visible",
                         "items", "selected", "wait-enabled", "wait-focus"};
  bool found = false;
  for (const char* name : known) found = found || action == name;
  if (!found) return false;
  const HWND control = NeedControl(state, id);
  if (action == "get") printf("%s\n", TextOf(control).c_str());
  if (action == "click") PostMessageA(control, BM_CLICK, 0, 0);
  if (action == "check") printf("%d\n", static_cast<int>(Send(control, BM_GETCHECK, 0, 0)));
  if (action == "enabled") printf("%d\n", IsWindowEnabled(control) ? 1 : 0);
  if (action == "visible") printf("%d\n", IsWindowVisible(control) ? 1 : 0);
  if (action == "items") PrintItems(control);
  if (action == "selected")
    printf("%d\n", static_cast<int>(Send(control, MessagesOf(control).selected, 0, 0)));
  if (action == "wait-enabled")
    WaitOrEnd(WaitFor(state, [control] { return IsWindowEnabled(control) != FALSE; }), id);
  if (action == "wait-focus") WaitOrEnd(WaitFor(state, [&] { return FocusOf(state.window) == control; }), id);
  return true;
}

// Actions with a control and one more argument.
bool ActWithValue(State& state, const std::string& action, const char* id, const char* value) {
  if (action != "set" && action != "notify" && action != "select" && action != "dblclick" &&
      action != "wait-text")
    return false;
  const HWND control = NeedControl(state, id);
  if (action == "set") {
    // Seen under Wine, rarely: the first text sent to a window that has just been shown is lost.
    for (int tries = 0; tries == 0 || (TextOf(control) != value && tries < 5); ++tries) {
      if (tries > 0) Sleep(50);
      Send(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(value));
    }
    // A multi-line field and a static control do not tell their dialog by themselves.
    PostCommand(control, atoi(id), EN_CHANGE);
  }
  if (action == "notify") PostCommand(control, atoi(id), atoi(value));
  if (action == "select" || action == "dblclick") SelectItem(control, atoi(id), value, action == "dblclick");
  if (action == "wait-text")
    WaitOrEnd(WaitFor(state, [&] { return TextOf(control) == value; }), "the text is " + TextOf(control));
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  State state;
  if (argc < 2) return kUsage;
  for (int i = 1; i < argc;) {
    const int used = ReadOption(state, argc - i, argv + i);
    if (used > 0) {
      i += used;
      continue;
    }
    const std::string action = argv[i];
    if (ActAlone(state, action)) {
      i += 1;
    } else if (i + 1 < argc && action == "keys") {
      NeedWindow(state);
      SendKeys(state.window, argv[i + 1]);
      i += 2;
    } else if (i + 1 < argc && ActOnControl(state, action, argv[i + 1])) {
      i += 2;
    } else if (i + 2 < argc && ActWithValue(state, action, argv[i + 1], argv[i + 2])) {
      i += 3;
    } else {
      End(kUsage, "no action " + action + ", or arguments are missing");
    }
    fflush(stdout);
  }
  return kDone;
}
