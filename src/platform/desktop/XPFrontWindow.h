#pragma once

#include <cstdint>
#include <optional>

class QScreen;
class QWindow;

// The window that the user works in, as the window manager tells it: to give it back what a short
// errand took from it. X11 only; elsewhere there is never one. Threads: main.
class XPFrontWindow
{
public:
    // Nothing: there is none, or it is one of this program.
    static std::optional<XPFrontWindow> ofAnotherProgram();
    // Whether a program fills the screen with a window that has the focus: a film, a talk, a game.
    static bool isFullScreen(const QScreen &screen);
    // Told when either may have changed: the number of the event and the property.
    static bool isChangeNotice(const void *event);

    void activate() const; // does nothing once the window is gone
    // Gives a shown window of this program the keyboard, as the user asked for it elsewhere.
    static void take(QWindow &window);

private:
    explicit XPFrontWindow(uint32_t window) : m_window(window) {}
    uint32_t m_window;
};
