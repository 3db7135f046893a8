#include <windows.h>

#include <GL/gl.h>
#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <iterator>

#include "tests/desktop/win32/probe_protocol.h"

// The library that the tests load into zelmo.exe.

namespace {

using namespace zelmo;

constexpr GLenum glBgra = 0x80E1;
constexpr GLenum glReadFramebuffer = 0x8CA8;
constexpr GLenum glReadFramebufferBinding = 0x8CAA;

ProbeMemory* Memory() {
    static ProbeMemory* const memory = [] {
        wchar_t name[64];
        std::swprintf(name, std::size(name), probeMemoryName, GetCurrentProcessId());
        const HANDLE mapping = OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, name);
        return static_cast<ProbeMemory*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0));
    }();
    return memory;
}

template <typename Function>
Function GlFunction(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(wglGetProcAddress(name)));
}

void ReadMenu(HWND window, ProbeMemory& memory) {
    const HMENU menu = GetMenu(window);
    memory.menuItems = GetMenuItemCount(menu);
    const int count = std::min(memory.menuItems, static_cast<int>(std::size(memory.menu)));
    for (int i = 0; i < count; ++i) {
        ProbeMenuItem& item = memory.menu[i];
        const auto position = static_cast<UINT>(i);
        item.id = GetMenuItemID(menu, i);
        item.state = GetMenuState(menu, position, MF_BYPOSITION);
        item.opensMenu = GetSubMenu(menu, i) != nullptr;
        GetMenuStringW(menu, position, item.text, std::size(item.text), MF_BYPOSITION);
    }
}

void ReadClass(HWND window, ProbeClass& facts) {
    GetClassNameW(window, facts.name, std::size(facts.name));
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    GetClassInfoExW(GetModuleHandleW(nullptr), facts.name, &windowClass);
    facts.style = windowClass.style;
    facts.hasIcon = windowClass.hIcon != nullptr;
    facts.hasSmallIcon = windowClass.hIconSm != nullptr;
    facts.hasBackground = windowClass.hbrBackground != nullptr;
    facts.hasCursor = windowClass.hCursor != nullptr;
}

/// A GL context of the window for as long as this lives: the program's where this thread has it,
/// else one more, which sees the same pixels.
class ContextOfWindow {
public:
    explicit ContextOfWindow(HWND window) : window_(window), canvas_(GetDC(window)) {
        if (wglGetCurrentContext() == nullptr) {
            own_ = wglCreateContext(canvas_);
            wglMakeCurrent(canvas_, own_);
        }
    }
    ContextOfWindow(const ContextOfWindow&) = delete;
    ContextOfWindow& operator=(const ContextOfWindow&) = delete;
    ~ContextOfWindow() {
        if (own_ != nullptr) {
            wglMakeCurrent(nullptr, nullptr);
            wglDeleteContext(own_);
        }
        ReleaseDC(window_, canvas_);
    }

private:
    HWND window_;
    HDC canvas_;
    HGLRC own_ = nullptr;
};

/// What was last drawn into the window with GL: swapping leaves it behind.
void ReadPixels(HWND window, ProbeMemory& memory) {
    RECT client = {};
    GetClientRect(window, &client);
    memory.width = client.right;
    memory.height = client.bottom;
    const auto bytes =
        static_cast<std::size_t>(memory.width) * static_cast<std::size_t>(memory.height) * 4;
    const ContextOfWindow context(window);
    if (wglGetCurrentContext() == nullptr || bytes > sizeof memory.pixels) {
        memory.width = 0;
        return;
    }
    const auto bindFramebuffer = GlFunction<void(APIENTRY*)(GLenum, GLuint)>("glBindFramebuffer");
    GLint bound = 0;
    GLint buffer = 0;
    GLint alignment = 0;
    glGetIntegerv(glReadFramebufferBinding, &bound);
    bindFramebuffer(glReadFramebuffer, 0);
    glGetIntegerv(GL_READ_BUFFER, &buffer);
    glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, memory.width, memory.height, glBgra, GL_UNSIGNED_BYTE, memory.pixels);
    glPixelStorei(GL_PACK_ALIGNMENT, alignment);
    glReadBuffer(static_cast<GLenum>(buffer));
    bindFramebuffer(glReadFramebuffer, static_cast<GLuint>(bound));
}

void ReadConsoleColors(HWND window, HWND edit, ProbeMemory& memory) {
    const HDC screen = GetDC(nullptr);
    const HDC canvas = CreateCompatibleDC(screen);
    SetBkColor(canvas, 0);
    const LRESULT answer = SendMessageW(window, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(canvas),
                                        reinterpret_cast<LPARAM>(edit));
    memory.background = GetBkColor(canvas);
    memory.number = answer != 0;
    memory.brush = {};
    GetObjectW(reinterpret_cast<HGDIOBJ>(answer), sizeof memory.brush, &memory.brush);
    DeleteDC(canvas);
    ReleaseDC(nullptr, screen);
}

constexpr std::size_t sampleSize = 64;

/// Slots of freed handles are used again, so fresh ones go above the living only where those have
/// used up all the others: the highest of some fresh handles grows with a leak.
template <typename Make, typename Free>
std::uint32_t HighestFreshSlot(Make make, Free free, std::uint32_t mask) {
    decltype(make()) handles[sampleSize];
    std::uint32_t highest = 0;
    for (auto& handle : handles) {
        handle = make();
        const auto slot = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle));
        highest = std::max(highest, slot & mask);
    }
    for (auto& handle : handles) {
        free(handle);
    }
    return highest;
}

std::uint32_t CountGlObjects() {
    using IsName = GLboolean(APIENTRY*)(GLuint);
    const IsName kinds[] = {
        GlFunction<IsName>("glIsBuffer"),       GlFunction<IsName>("glIsVertexArray"),
        GlFunction<IsName>("glIsFramebuffer"),  GlFunction<IsName>("glIsRenderbuffer"),
        GlFunction<IsName>("glIsProgram"),      GlFunction<IsName>("glIsShader"),
        reinterpret_cast<IsName>(&glIsTexture), reinterpret_cast<IsName>(&glIsList),
    };
    std::uint32_t count = 0;
    for (const IsName isName : kinds) {
        for (GLuint name = 1; name < 10000; ++name) {
            count += isName(name) != GL_FALSE;
        }
    }
    return count;
}

void CountObjects(ProbeObjects& objects) {
    objects.gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (objects.gdi == 0) {
        objects.gdi = HighestFreshSlot([] { return CreateSolidBrush(1); },
                                       [](HBRUSH brush) { DeleteObject(brush); }, 0xFFFF);
    }
    objects.user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    if (objects.user == 0) {
        objects.user = HighestFreshSlot([] { return CreateMenu(); },
                                        [](HMENU menu) { DestroyMenu(menu); }, 0xFFFF);
    }
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    if (handles == 0) {
        handles = HighestFreshSlot([] { return CreateEventW(nullptr, FALSE, FALSE, nullptr); },
                                   [](HANDLE event) { CloseHandle(event); }, 0xFFFFFFFF) /
                  4;
    }
    objects.kernel = handles;
    objects.gl = wglGetCurrentContext() != nullptr ? CountGlObjects() : 0;
}

void ReadPixelFormat(HWND window, ProbeMemory& memory) {
    const HDC canvas = GetDC(window);
    memory.number = GetPixelFormat(canvas);
    DescribePixelFormat(canvas, memory.number, sizeof memory.pixelFormat, &memory.pixelFormat);
    ReleaseDC(window, canvas);
}

void Repaint(HWND window, LPARAM times, ProbeMemory& memory) {
    const HWND picture = GetDlgItem(window, 3);
    for (LPARAM i = 0; i < times; ++i) {
        RedrawWindow(picture, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }
    memory.number = GetUpdateRect(picture, nullptr, FALSE);
}

void Answer(HWND window, ProbeRequest request, LPARAM argument) {
    ProbeMemory& memory = *Memory();
    const HWND target = reinterpret_cast<HWND>(argument);
    switch (request) {
        case ProbeRequest::Hello:
            memory.attached = 1;
            break;
        case ProbeRequest::Menu:
            ReadMenu(window, memory);
            break;
        case ProbeRequest::Font:
            memory.font = {};
            GetObjectW(reinterpret_cast<HGDIOBJ>(SendMessageW(target, WM_GETFONT, 0, 0)),
                       sizeof memory.font, &memory.font);
            break;
        case ProbeRequest::Class:
            ReadClass(target, memory.windowClass);
            break;
        case ProbeRequest::StatusText:
            memory.text[0] = 0;
            SendMessageW(GetDlgItem(window, 1), SB_GETTEXTW, static_cast<WPARAM>(argument),
                         reinterpret_cast<LPARAM>(memory.text));
            break;
        case ProbeRequest::Pixels:
            ReadPixels(target, memory);
            break;
        case ProbeRequest::ConsoleColors:
            ReadConsoleColors(window, target, memory);
            break;
        case ProbeRequest::Focus:
            memory.window = GetFocus();
            break;
        case ProbeRequest::Cursor:
            memory.number = GetCursor() == LoadCursorW(nullptr, IDC_ARROW);
            break;
        case ProbeRequest::HasContext:
            memory.number = wglGetCurrentContext() != nullptr;
            break;
        case ProbeRequest::Repaint:
            Repaint(window, argument, memory);
            break;
        case ProbeRequest::Objects:
            CountObjects(memory.objects);
            break;
        case ProbeRequest::ScrollConsoleUp:
            SendMessageW(target, EM_LINESCROLL, 0, -1000000);
            memory.number = static_cast<LONG>(SendMessageW(target, EM_GETFIRSTVISIBLELINE, 0, 0));
            break;
        case ProbeRequest::StatusEdges:
            memory.number = static_cast<LONG>(SendMessageW(GetDlgItem(window, 1), SB_GETPARTS,
                                                           std::size(memory.edges),
                                                           reinterpret_cast<LPARAM>(memory.edges)));
            break;
        case ProbeRequest::PixelFormat:
            ReadPixelFormat(target, memory);
            break;
    }
}

/// Keeps the worker of a finished step waiting, as a long step would, while the user interface goes
/// on. A quit ends the wait and goes on to the program's own loop.
void HoldStep() {
    ProbeMemory& memory = *Memory();
    memory.stepsDone = memory.stepsDone + 1;
    if (memory.holdAtStep == 0 || memory.stepsDone != memory.holdAtStep) {
        return;
    }
    memory.release = 0;
    memory.held = 1;
    while (memory.release == 0) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                PostQuitMessage(static_cast<int>(message.wParam));
                memory.held = 0;
                return;
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    memory.held = 0;
}

bool IsMainWindow(HWND window) {
    wchar_t name[32] = {};
    GetClassNameW(window, name, std::size(name));
    return std::wcscmp(name, L"Main Window Class") == 0;
}

}  // namespace

extern "C" __declspec(dllexport) LRESULT CALLBACK
    ProbeHook(int code, WPARAM wParam, LPARAM lParam) {
    static const UINT probeMessage = RegisterWindowMessageW(probeMessageName);
    if (code == HC_ACTION) {
        const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (sent.message == probeMessage) {
            Answer(sent.hwnd, static_cast<ProbeRequest>(sent.wParam), sent.lParam);
        } else if (sent.message == stepDoneMessage && IsMainWindow(sent.hwnd)) {
            HoldStep();
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}
