#pragma once

#include <windows.h>

#include <exception>

namespace zelmo {

/// Binds a window to an object: the one window procedure of all our window classes hands every
/// message to the object that created the window.
template <typename T>
class BaseWindow {
public:
    BaseWindow() = default;
    BaseWindow(const BaseWindow&) = delete;
    BaseWindow& operator=(const BaseWindow&) = delete;

    virtual const wchar_t* ClassName() const = 0;
    /// The result of the window procedure for a message.
    virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;

    /// Registers the class and creates the window, of no size yet, with this object as its creation
    /// parameter. Both icons come from `iconFile`; null gives none. Returns whether a window was
    /// made.
    bool Create(const wchar_t* title, DWORD style, HWND parent, int childId,
                const wchar_t* iconFile) {
        const HINSTANCE instance = GetModuleHandleW(nullptr);
        WNDCLASSEXW windowClass = {};
        windowClass.cbSize = sizeof windowClass;
        windowClass.lpfnWndProc = WindowProc;
        windowClass.hInstance = instance;
        windowClass.lpszClassName = ClassName();
        windowClass.hIcon = static_cast<HICON>(LoadImageW(
            nullptr, iconFile, IMAGE_ICON, 32, 32, LR_LOADFROMFILE | LR_DEFAULTSIZE | LR_SHARED));
        windowClass.hIconSm =
            static_cast<HICON>(LoadImageW(nullptr, iconFile, IMAGE_ICON, 16, 16, LR_LOADFROMFILE));
        RegisterClassExW(&windowClass);
        const auto menuOrId = reinterpret_cast<HMENU>(static_cast<INT_PTR>(childId));
        return CreateWindowExW(0, ClassName(), title, style, 0, 0, 0, 0, parent, menuOrId, instance,
                               static_cast<T*>(this)) != nullptr;
    }

    /// An exception that leaves a message ends the program, whoever sent the message: the system's
    /// own frames above this one may swallow it.
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        T* object = nullptr;
        if (message == WM_NCCREATE) {
            object = static_cast<T*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
            object->hwnd = window;
        } else {
            object = reinterpret_cast<T*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        }
        if (object == nullptr) {
            return DefWindowProcW(window, message, wParam, lParam);
        }
        try {
            return object->HandleMessage(message, wParam, lParam);
        } catch (...) {
            std::terminate();
        }
    }

    HWND hwnd = nullptr;  ///< null until the window procedure has bound it

protected:
    ~BaseWindow() = default;
};

}  // namespace zelmo
