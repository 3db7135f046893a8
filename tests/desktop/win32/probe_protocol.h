#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace zelmo {

// How the test program and the small library that it loads into zelmo.exe talk: the test sends a
// registered message to the main window, the library answers it in the window's own thread, in a
// block of shared memory. Menus, fonts and pixels cannot be read from another process.

inline constexpr wchar_t probeMessageName[] = L"Zelmo test probe";
inline constexpr wchar_t probeMemoryName[] = L"Zelmo test probe %lu";  ///< with the process number
inline constexpr char probeHookName[] = "ProbeHook";
inline constexpr UINT stepDoneMessage = WM_USER + 2;

/// What the library is asked for, in wParam; lParam is a window or a number.
enum class ProbeRequest : WPARAM {
    Hello,          ///< sets `attached`
    Menu,           ///< the menu bar of the main window
    Font,           ///< the font of the window lParam
    Class,          ///< the class of the window lParam
    StatusText,     ///< `text` of the status bar's part lParam
    Pixels,         ///< what the window lParam shows, by GL
    ConsoleColors,  ///< the answer to WM_CTLCOLORSTATIC for the window lParam
    Focus,          ///< `window` with the keyboard focus
    Cursor,         ///< whether the cursor is the arrow
    HasContext,     ///< whether the user interface thread has a GL context
    Repaint,        ///< lParam repaints, each at once; `number` is 1 if something is left to paint
    Objects,        ///< how many objects of each kind the program holds
    ScrollConsoleUp,  ///< scrolls the window lParam to its first line
    PixelFormat,      ///< of the window lParam
    StatusEdges,      ///< the right edges of the parts of the status bar
};

struct ProbeMenuItem {
    UINT id;
    UINT state;
    BOOL opensMenu;
    wchar_t text[64];
};

/// Numbers of objects, or where the system does not count, of the highest slot in use.
struct ProbeObjects {
    std::uint32_t gdi;
    std::uint32_t user;
    std::uint32_t kernel;
    std::uint32_t gl;
};

struct ProbeClass {
    wchar_t name[64];
    UINT style;
    BOOL hasIcon;
    BOOL hasSmallIcon;
    BOOL hasBackground;
    BOOL hasCursor;
};

inline constexpr std::size_t probePixelBytes = 4u * 1024 * 1024;

struct ProbeMemory {
    volatile LONG attached;

    /// The message of a finished step is held back once this many steps (since the start) are done,
    /// with the user interface alive, until `release` is set. 0 holds none.
    volatile LONG holdAtStep;
    volatile LONG release;
    volatile LONG stepsDone;
    volatile LONG held;

    LONG number;
    HWND window;
    int menuItems;
    ProbeMenuItem menu[16];
    LOGFONTW font;
    ProbeClass windowClass;
    wchar_t text[1024];
    int edges[8];
    COLORREF background;
    LOGBRUSH brush;
    PIXELFORMATDESCRIPTOR pixelFormat;
    ProbeObjects objects;
    int width;
    int height;
    std::uint8_t pixels[probePixelBytes];  ///< BGRA, bottom row first
};

}  // namespace zelmo
