#include "XPDropZoneGeometry.h"

#include <algorithm>
#include <cmath>

// Of several at one edge the upper one.
static qsizetype chosen(const QList<XPDropZoneGeometry::Screen> &screens, bool isLeft)
{
    const auto best = std::min_element(
        screens.begin(), screens.end(), [isLeft](const auto &one, const auto &other) {
            const int a = isLeft ? one.all.left() : -one.all.right();
            const int b = isLeft ? other.all.left() : -other.all.right();
            return a != b ? a < b : one.all.top() < other.all.top();
        });
    return std::distance(screens.begin(), best);
}

XPDropZoneGeometry::XPDropZoneGeometry(const QList<Screen> &screens, const Wishes &wishes)
    : m_screen(chosen(screens, wishes.isLeft)), m_isLeft(wishes.isLeft)
{
    const QRect all = screens[m_screen].all;
    m_usable = screens[m_screen].usable;
    const double middle = (all.height() - height) / 2.0 + all.top();
    const double wish = wishes.y && std::isfinite(*wishes.y) ? *wishes.y : middle;
    const double lowest = std::max(m_usable.top(), m_usable.bottom() + 1 - height);
    const int y = static_cast<int>(std::clamp<double>(wish, m_usable.top(), lowest));
    const int end = all.right() + 1;
    m_onscreen = QRect(m_isLeft ? all.left() : end - width, y, width, height);
    const int shown = wishes.isOverlap ? wideStrip : strip;
    m_offscreen = m_onscreen;
    m_offscreen.moveLeft(m_isLeft ? all.left() - width + shown : end - shown);
}

QPoint XPDropZoneGeometry::beside(const QSize &window) const
{
    constexpr int gap = 12;
    const int x =
        m_isLeft ? m_onscreen.right() + 1 + gap : m_onscreen.left() - gap - window.width();
    const auto within = [](int wish, int first, int end, int size) {
        return std::max(first, std::min(wish, end - size));
    };
    return {within(x, m_usable.left(), m_usable.right() + 1, window.width()),
            within(m_onscreen.top(), m_usable.top(), m_usable.bottom() + 1, window.height())};
}
