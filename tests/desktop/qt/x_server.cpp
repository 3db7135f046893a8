#include "tests/desktop/qt/x_server.h"

#include <QGuiApplication>
#include <QRect>
#include <QWindow>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace zelmo {

namespace {

/// What the server answers and the caller has to free.
struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Kind>
using Answer = std::unique_ptr<Kind, Free>;

xcb_atom_t Atom(xcb_connection_t* connection, const char* name) {
    const auto length = static_cast<std::uint16_t>(std::strlen(name));
    const Answer<xcb_intern_atom_reply_t> answer(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, length, name), nullptr));
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

constexpr QMargins margins = FramingWindowManager::margins;
constexpr std::uint32_t whatAManagerHears =
    XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;

}  // namespace

bool OnXServer() {
    return QGuiApplication::platformName() == "xcb";
}

QString CaptionOnXServer(const QWindow& window) {
    auto* connection = qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const auto question = xcb_get_property(connection, 0, static_cast<xcb_window_t>(window.winId()),
                                           Atom(connection, "_NET_WM_NAME"),
                                           Atom(connection, "UTF8_STRING"), 0, 1024);
    const Answer<xcb_get_property_reply_t> answer(
        xcb_get_property_reply(connection, question, nullptr));
    if (!answer) {
        throw std::runtime_error("the X server gives no caption");
    }
    return QString::fromUtf8(static_cast<const char*>(xcb_get_property_value(answer.get())),
                             xcb_get_property_value_length(answer.get()));
}

FramingWindowManager::FramingWindowManager() : connection_(xcb_connect(nullptr, nullptr)) {
    const xcb_setup_t* setup = xcb_get_setup(connection_);
    root_ = setup != nullptr ? xcb_setup_roots_iterator(setup).data->root : 0;
    const Answer<xcb_generic_error_t> error(xcb_request_check(
        connection_, xcb_change_window_attributes_checked(connection_, root_, XCB_CW_EVENT_MASK,
                                                          &whatAManagerHears)));
    if (xcb_connection_has_error(connection_) != 0 || error) {
        xcb_disconnect(connection_);
        throw std::runtime_error("the X server takes no window manager");
    }
    thread_ = std::thread([this] { Work(); });
}

FramingWindowManager::~FramingWindowManager() {
    ended_ = true;
    thread_.join();
    xcb_disconnect(connection_);
}

void FramingWindowManager::Work() {
    while (!ended_) {
        const Answer<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
        if (!event) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        } else if ((event->response_type & 0x7F) == XCB_MAP_REQUEST) {
            Frame(reinterpret_cast<const xcb_map_request_event_t*>(event.get())->window);
        } else if ((event->response_type & 0x7F) == XCB_CONFIGURE_REQUEST) {
            Configure(*reinterpret_cast<const xcb_configure_request_event_t*>(event.get()));
        }
    }
}

void FramingWindowManager::Frame(xcb_window_t window) {
    const Answer<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    if (!geometry) {
        return;
    }
    const QRect place(geometry->x, geometry->y, geometry->width, geometry->height);
    const QRect outer = place.marginsAdded(margins);
    const xcb_window_t frame = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, frame, root_,
                      static_cast<std::int16_t>(outer.x()), static_cast<std::int16_t>(outer.y()),
                      static_cast<std::uint16_t>(outer.width()),
                      static_cast<std::uint16_t>(outer.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &whatAManagerHears);
    frames_[window] = frame;
    xcb_change_save_set(connection_, XCB_SET_MODE_INSERT, window);
    xcb_reparent_window(connection_, window, frame, margins.left(), margins.top());
    xcb_map_window(connection_, frame);
    xcb_map_window(connection_, window);
    TellPlace(window, place);
}

void FramingWindowManager::Configure(const xcb_configure_request_event_t& request) {
    const QRect place(request.x, request.y, request.width, request.height);
    const auto change = [this](xcb_window_t window, const QRect& rect, std::uint16_t mask) {
        const std::array<std::uint32_t, 4> values{
            static_cast<std::uint32_t>(rect.x()), static_cast<std::uint32_t>(rect.y()),
            static_cast<std::uint32_t>(rect.width()), static_cast<std::uint32_t>(rect.height())};
        const std::size_t first = (mask & XCB_CONFIG_WINDOW_X) != 0 ? 0 : 2;
        xcb_configure_window(connection_, window, mask, values.data() + first);
    };
    constexpr std::uint16_t size = XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    constexpr std::uint16_t all = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | size;
    const auto frame = frames_.find(request.window);
    if (frame == frames_.end()) {
        change(request.window, place, all);
    } else {
        change(frame->second, place.marginsAdded(margins), all);
        change(request.window, place, size);
        TellPlace(request.window, place);
    }
    xcb_flush(connection_);
}

// A framed window stands still in its frame, so that it has to be told where it is.
void FramingWindowManager::TellPlace(xcb_window_t window, const QRect& place) {
    xcb_configure_notify_event_t event{};
    event.response_type = XCB_CONFIGURE_NOTIFY;
    event.event = window;
    event.window = window;
    event.x = static_cast<std::int16_t>(place.x());
    event.y = static_cast<std::int16_t>(place.y());
    event.width = static_cast<std::uint16_t>(place.width());
    event.height = static_cast<std::uint16_t>(place.height());
    xcb_send_event(connection_, 0, window, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(connection_);
}

}  // namespace zelmo
