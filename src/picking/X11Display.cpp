#include "X11Display.h"

#include <QGuiApplication>

#ifdef TINTWRIGHT_HAVE_XCB

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace {

template<typename Reply> using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

template<typename Reply> ReplyPointer<Reply> owned(Reply *reply)
{
    return ReplyPointer<Reply>(reply, &std::free);
}

xcb_connection_t *connection()
{
    const auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

xcb_screen_t *rootScreen(xcb_connection_t *connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

// Whether the server hands out a 24-bit screen as 32-bit little-endian
// words of 0x00RRGGBB: QImage's RGB32, so the reply is taken as it is.
bool speaksRgb32(xcb_connection_t *connection, const xcb_get_image_reply_t &reply)
{
    const xcb_setup_t *setup = xcb_get_setup(connection);
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST || (reply.depth != 24 && reply.depth != 32))
        return false;
    bool words = false;
    for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem; xcb_format_next(&formats)) {
        if (formats.data->depth == reply.depth)
            words = formats.data->bits_per_pixel == 32 && formats.data->scanline_pad == 32;
    }
    if (!words)
        return false;
    for (auto depths = xcb_screen_allowed_depths_iterator(rootScreen(connection)); depths.rem;
         xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == reply.visual)
                return visuals.data->red_mask == 0xff0000 && visuals.data->green_mask == 0xff00
                    && visuals.data->blue_mask == 0xff;
        }
    }
    return false;
}

} // namespace

namespace X11Display {

bool isAvailable()
{
    return connection() != nullptr;
}

bool isComposited()
{
    xcb_connection_t *c = connection();
    if (!c)
        return false;
    // The manager of the default screen owns this selection while it runs.
    const char name[] = "_NET_WM_CM_S0";
    const auto atom =
        owned(xcb_intern_atom_reply(c, xcb_intern_atom(c, false, sizeof name - 1, name), nullptr));
    if (!atom)
        return false;
    const auto owner =
        owned(xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, atom->atom), nullptr));
    return owner && owner->owner != XCB_NONE;
}

std::optional<QPoint> pointerPosition()
{
    xcb_connection_t *c = connection();
    if (!c)
        return std::nullopt;
    const auto reply = owned(xcb_query_pointer_reply(c, xcb_query_pointer(c, rootScreen(c)->root), nullptr));
    if (!reply)
        return std::nullopt;
    return QPoint(reply->root_x, reply->root_y);
}

std::optional<QSize> rootSize()
{
    xcb_connection_t *c = connection();
    if (!c)
        return std::nullopt;
    const xcb_screen_t *root = rootScreen(c);
    return QSize(root->width_in_pixels, root->height_in_pixels);
}

bool warpPointer(QPoint position)
{
    xcb_connection_t *c = connection();
    if (!c)
        return false;
    xcb_warp_pointer(c, XCB_NONE, rootScreen(c)->root, 0, 0, 0, 0, int16_t(position.x()),
                     int16_t(position.y()));
    xcb_flush(c);
    return true;
}

QImage readPixels(const QRect &rect)
{
    xcb_connection_t *c = connection();
    if (!c || rect.isEmpty())
        return {};
    xcb_get_image_cookie_t cookie =
        xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, rootScreen(c)->root, int16_t(rect.x()), int16_t(rect.y()),
                      uint16_t(rect.width()), uint16_t(rect.height()), ~0u);
    xcb_get_image_reply_t *reply = xcb_get_image_reply(c, cookie, nullptr);
    if (!reply)
        return {};
    if (!speaksRgb32(c, *reply) || xcb_get_image_data_length(reply) < rect.width() * rect.height() * 4) {
        std::free(reply);
        return {};
    }
    // The image keeps the reply, and frees it when it goes.
    return QImage(xcb_get_image_data(reply), rect.width(), rect.height(), rect.width() * 4,
                  QImage::Format_RGB32, &std::free, reply);
}

} // namespace X11Display

#else

namespace X11Display {

bool isAvailable()
{
    return false;
}

bool isComposited()
{
    return false;
}

std::optional<QPoint> pointerPosition()
{
    return std::nullopt;
}

bool warpPointer(QPoint)
{
    return false;
}

QImage readPixels(const QRect &)
{
    return {};
}

} // namespace X11Display

#endif
