#include <windows.h>

#include <commctrl.h>

#include "base/debug_trace.h"
#include "desktop/win32/win32_main_window.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
    zelmo::DebugTrace("wWinMain (Thread %lu)", GetCurrentThreadId());
    // The status bar's class comes with the common controls, which have to be asked for.
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    zelmo::Win32MainWindow window;
    if (window.Create(L"", WS_SYSMENU | WS_MINIMIZEBOX, nullptr, 0, L"zelmo.ico")) {
        ShowWindow(window.hwnd, showCommand);
        MSG message = {};
        while (GetMessageW(&message, nullptr, 0, 0) != 0) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return 0;
}
