#include "XPPageAnalysis.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

// About the longer side: text keeps its lines at this size, and a page takes few milliseconds.
static constexpr int workingSide = 1000;
static constexpr double mostDegrees = 10;

// Each pixel the mean of a square of them: in one pass, where Qt's conversion and scaling take
// several over copies of the whole page.
static QImage meansOfSquares(const QImage &image, int side)
{
    const QImage source =
        image.format() == QImage::Format_Grayscale8 || image.format() == QImage::Format_RGB32
            ? image
            : image.convertToFormat(QImage::Format_RGB32);
    QImage grey(source.width() / side, source.height() / side, QImage::Format_Grayscale8);
    std::vector<int> sums(static_cast<std::size_t>(grey.width()));
    for (int y = 0; y < grey.height(); ++y) {
        std::fill(sums.begin(), sums.end(), 0);
        for (int line = y * side; line < (y + 1) * side; ++line) {
            const uchar *bytes = source.constScanLine(line);
            const auto *colours = reinterpret_cast<const QRgb *>(bytes);
            const bool isGrey = source.depth() == 8;
            for (int x = 0, from = 0; x < grey.width(); ++x) {
                int sum = 0;
                for (const int end = from + side; from < end; ++from)
                    sum += isGrey ? bytes[from] : qGray(colours[from]);
                sums[static_cast<std::size_t>(x)] += sum;
            }
        }
        uchar *to = grey.scanLine(y);
        for (int x = 0; x < grey.width(); ++x)
            to[x] = static_cast<uchar>(sums[static_cast<std::size_t>(x)] / (side * side));
    }
    return grey;
}

QImage XPPageAnalysis::reduced(const QImage &image)
{
    const int longest = std::max(image.width(), image.height());
    const int side = (longest + workingSide / 2) / workingSide;
    if (side > 1 && std::min(image.width(), image.height()) >= side)
        return meansOfSquares(image, side);
    return image.convertToFormat(QImage::Format_Grayscale8);
}

static double mean(const QImage &grey, const QRect &area)
{
    double sum = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const uchar *line = grey.constScanLine(y);
        for (int x = area.left(); x <= area.right(); ++x)
            sum += line[x];
    }
    const double count = static_cast<double>(area.width()) * area.height();
    return count > 0 ? sum / count : 0;
}

// What turning brought into sight that the picture does not show.
static constexpr uchar unknown = 0;

static QImage turned(const QImage &grey, double degrees)
{
    QImage known = grey;
    for (int y = 0; y < known.height(); ++y) {
        uchar *line = known.scanLine(y);
        std::transform(line, line + known.width(), line,
                       [](uchar value) { return std::max<uchar>(value, unknown + 1); });
    }
    if (degrees == 0)
        return known;
    QImage result(grey.size(), QImage::Format_Grayscale8);
    result.fill(unknown);
    QPainter painter(&result);
    const QPointF middle(grey.width() / 2.0, grey.height() / 2.0);
    painter.translate(middle);
    painter.rotate(degrees);
    painter.translate(-middle);
    painter.drawImage(0, 0, known);
    return result;
}

// Lines of the rim that belong to the lid: darker than paper nearly everywhere.
static int rim(const QImage &grey, bool isRow, bool fromEnd, int paperWhite)
{
    const int count = isRow ? grey.height() : grey.width();
    const int length = isRow ? grey.width() : grey.height();
    const int dark = paperWhite - 40;
    for (int i = 0; i < count / 2; ++i) {
        const int at = fromEnd ? count - 1 - i : i;
        int light = 0;
        int seen = 0;
        for (int k = 0; k < length; ++k) {
            const int value = isRow ? grey.constScanLine(at)[k] : grey.constScanLine(k)[at];
            light += value > dark ? 1 : 0;
            seen += value != unknown ? 1 : 0;
        }
        // Paper takes up more than half of any line that crosses it.
        if (light * 2 > seen)
            return i;
    }
    return 0;
}

QRectF XPPageAnalysis::paper(const QImage &image, double straightenAngle)
{
    const QImage small = reduced(image);
    if (small.isNull() || small.width() < 8 || small.height() < 8)
        return {0, 0, 1, 1};
    const QImage grey = turned(small, straightenAngle);
    const QRect middle =
        QRect(grey.width() / 4, grey.height() / 4, grey.width() / 2, grey.height() / 2);
    // Paper is the brightest that covers a good part of the middle.
    std::vector<uchar> values;
    for (int y = middle.top(); y <= middle.bottom(); ++y) {
        const uchar *line = grey.constScanLine(y);
        values.insert(values.end(), line + middle.left(), line + middle.right() + 1);
    }
    const auto bright = values.begin() + static_cast<std::ptrdiff_t>(values.size() * 3 / 4);
    std::nth_element(values.begin(), bright, values.end());
    const int white = *bright;
    if (mean(grey, middle) < 60)
        return {0, 0, 1, 1}; // nothing is on the glass
    const double left = rim(grey, false, false, white);
    const double right = rim(grey, false, true, white);
    const double top = rim(grey, true, false, white);
    const double bottom = rim(grey, true, true, white);
    const double width = grey.width();
    const double height = grey.height();
    return {left / width, top / height, (width - left - right) / width,
            (height - top - bottom) / height};
}

namespace {

struct Point
{
    float x, y;
};

} // namespace

// The lower ends of ink: base lines stand out in these alone. Each lies somewhere in its pixel; if
// all lay at the same height there, rows of pixels would look like lines, and no angle better than
// none.
static std::vector<Point> lowerEdges(const QImage &grey)
{
    std::vector<Point> points;
    const auto withinPixel = [](int x) {
        const float turns = static_cast<float>(x) * std::numbers::phi_v<float>;
        return turns - std::floor(turns);
    };
    for (int y = 0; y + 1 < grey.height(); ++y) {
        const uchar *line = grey.constScanLine(y);
        const uchar *next = grey.constScanLine(y + 1);
        for (int x = 0; x < grey.width(); ++x) {
            if (next[x] - line[x] > 40)
                points.push_back({static_cast<float>(x), static_cast<float>(y) + withinPixel(x)});
        }
    }
    return points;
}

// How sharply the points fall into lines when seen along an angle.
static double sharpness(const std::vector<Point> &points, double degrees, int height, int width,
                        std::vector<float> &lines)
{
    static constexpr float perPixel = 2; // lines of half a pixel
    const float slope = static_cast<float>(std::tan(degrees * std::numbers::pi / 180));
    const float shift = std::abs(slope) * static_cast<float>(width);
    lines.assign(static_cast<std::size_t>((static_cast<float>(height) + 2 * shift) * perPixel) + 2,
                 0);
    for (const Point &point : points) {
        const float at = (point.y - slope * point.x + shift) * perPixel;
        lines[static_cast<std::size_t>(at)] += 1;
    }
    double sum = 0;
    for (const float count : lines)
        sum += static_cast<double>(count) * static_cast<double>(count);
    return sum;
}

double XPPageAnalysis::angle(const QImage &image)
{
    const QImage grey = reduced(image);
    const std::vector<Point> points = lowerEdges(grey);
    if (points.size() < 200)
        return 0;
    std::vector<float> lines;
    const auto at = [&](double degrees) {
        return sharpness(points, degrees, grey.height(), grey.width(), lines);
    };
    double best = 0;
    double most = at(0);
    const double plain = most;
    const auto look = [&](double around, double reach, double step) {
        const int steps = qRound(2 * reach / step);
        for (int i = 0; i <= steps; ++i) {
            const double degrees = around - reach + i * step;
            if (const double value = at(degrees); value > most) {
                most = value;
                best = degrees;
            }
        }
    };
    look(0, mostDegrees, 0.25);
    look(best, 0.25, 0.05);
    // A picture without lines has no angle that is much better than another.
    return most > plain * 1.02 ? best : 0;
}

bool XPPageAnalysis::isBlank(const QImage &image)
{
    const QImage grey = reduced(image);
    if (grey.isNull())
        return true;
    // The rim shows the lid, punched holes and shadows.
    const QRect inner = grey.rect().adjusted(grey.width() / 20, grey.height() / 20,
                                             -grey.width() / 20, -grey.height() / 20);
    const double light = mean(grey, inner);
    qint64 ink = 0;
    for (int y = inner.top(); y <= inner.bottom(); ++y) {
        const uchar *line = grey.constScanLine(y);
        ink += std::count_if(line + inner.left(), line + inner.right() + 1,
                             [&](uchar value) { return value < light - 50; });
    }
    // A single short line of text covers more than this.
    return static_cast<double>(ink) < static_cast<double>(inner.width()) * inner.height() * 0.0003;
}
