#pragma once

#include <QMargins>
#include <QString>
#include <atomic>
#include <map>
#include <thread>

#include <xcb/xcb.h>

class QRect;
class QWindow;

namespace zelmo {

/// Whether the windows of this test program stand on an X server.
bool OnXServer();

/// The caption of a window as the X server has it, for whoever draws the frame.
QString CaptionOnXServer(const QWindow& window);

/// A window manager of the plainest kind: puts a frame of fixed margins around every window of the
/// display that is shown while it lives, and grants every size and place.
class FramingWindowManager {
public:
    /// Throws std::runtime_error if there is no X server, or another window manager.
    FramingWindowManager();
    ~FramingWindowManager();
    FramingWindowManager(const FramingWindowManager&) = delete;
    FramingWindowManager& operator=(const FramingWindowManager&) = delete;

    static constexpr QMargins margins{3, 24, 6, 9};  ///< pixels

private:
    void Work();
    void Frame(xcb_window_t window);
    void Configure(const xcb_configure_request_event_t& request);
    void TellPlace(xcb_window_t window, const QRect& place);

    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
    std::map<xcb_window_t, xcb_window_t> frames_;  ///< of the framed windows
    std::atomic<bool> ended_ = false;
    std::thread thread_;
};

}  // namespace zelmo
