#pragma once

#include <QList>
#include <array>
#include <cstdint>

struct xcb_connection_t;

// The few questions that this program asks the X server itself, over Qt's connection.
// Threads: main. Each question is a round trip, of a tenth of a millisecond on one machine.
namespace XPX11 {

// Null: this is no X11 session.
xcb_connection_t *connection();
uint32_t root();
uint32_t atom(const char *name);
uint32_t ownerOf(const char *selection); // 0: nobody
// Made by this process.
bool isOurs(uint32_t window);

// A property of numbers or atoms; empty where there is none.
QList<uint32_t> property(uint32_t window, const char *name);
// Asks the window manager something about a window (Extended Window Manager Hints).
void ask(uint32_t window, const char *what, const std::array<uint32_t, 5> &values);

} // namespace XPX11
