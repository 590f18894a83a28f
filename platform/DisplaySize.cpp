// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "DisplaySize.h"

#include <memory>

#include <xcb/xcb.h>

namespace {

struct Size
{
    int width = 0;
    int height = 0;
};

Size displaySize()
{
    int number = 0;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
            xcb_connect(nullptr, &number), xcb_disconnect);
    if (xcb_connection_has_error(connection.get()))
        return {};
    xcb_screen_iterator_t screen = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    while (number-- > 0 && screen.rem > 0)
        xcb_screen_next(&screen);
    return screen.rem > 0 ? Size{screen.data->width_in_pixels, screen.data->height_in_pixels}
                          : Size();
}

} // namespace

int getDisplayWidth()
{
    return displaySize().width;
}

int getDiaplayHeight()
{
    return displaySize().height;
}
