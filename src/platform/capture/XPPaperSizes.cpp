#include "XPPaperSizes.h"

#include <array>

namespace {

struct Paper
{
    const char *name; // nullptr: none of this number
    double width, height;
};

} // namespace

static constexpr double inch = 25.4;

// By number. The odd spelling of "J-B2," is in everybody's settings.
static constexpr std::array<Paper, 79> papers{{
    {"All", 0, 0},
    {"A4", 210, 297},
    {"B5", 182, 257},
    {"Letter", 8.5 * inch, 11 * inch},
    {"Legal", 8.5 * inch, 14 * inch},
    {"A5", 148, 210},
    {"B4", 250, 353},
    {"B6", 125, 176},
    {nullptr, 0, 0},
    {"Ledger", 11 * inch, 17 * inch},
    {"Executive", 7.25 * inch, 10.5 * inch},
    {"A3", 297, 420},
    {"B3", 353, 500},
    {"A6", 105, 148},
    {"C4", 229, 324},
    {"C5", 162, 229},
    {"C6", 114, 162},
    {"4A0", 1682, 2378},
    {"2A0", 1189, 1682},
    {"A0", 841, 1189},
    {"A1", 594, 841},
    {"A2", 420, 594},
    {"A7", 74, 105},
    {"A8", 52, 74},
    {"A9", 37, 52},
    {"A10", 26, 37},
    {"B0", 1000, 1414},
    {"B1", 707, 1000},
    {"B2", 500, 707},
    {"B5", 176, 250},
    {"B7", 88, 125},
    {"B8", 62, 88},
    {"B9", 44, 62},
    {"B10", 31, 44},
    {"J-B0", 1030, 1456},
    {"J-B1", 728, 1030},
    {"J-B2,", 515, 728},
    {"J-B3", 364, 515},
    {"J-B4", 257, 364},
    {"J-B6", 128, 182},
    {"J-B7", 91, 128},
    {"J-B8", 64, 91},
    {"J-B9", 45, 64},
    {"J-B10", 32, 45},
    {"C0", 917, 1297},
    {"C1", 648, 917},
    {"C2", 458, 648},
    {"C3", 324, 458},
    {"C7", 81, 114},
    {"C8", 57, 81},
    {"C9", 40, 57},
    {"C10", 28, 40},
    {"Statement", 5.5 * inch, 8.5 * inch},
    {"Bus. Card", 53.98, 85.6},
    {nullptr, 0, 0},
    {nullptr, 0, 0},
    {nullptr, 0, 0},
    {nullptr, 0, 0},
    {nullptr, 0, 0},
    {nullptr, 0, 0},
    {"E", 83, 117},
    {"3R", 89, 127},
    {"4R", 102, 152},
    {"5R", 127, 178},
    {"6R", 152, 203},
    {"8R", 203, 254},
    {"S8R", 203, 305},
    {"10R", 254, 305},
    {"S10R", 254, 381},
    {"11R", 279, 356},
    {"S11R", 279, 432},
    {"12R", 305, 381},
    {"S12R", 305, 457},
    {"110", 13, 17},
    {"APSH", 16.7, 30.2},
    {"APSC", 16.7, 25.1},
    {"APSP", 9.5, 30.2},
    {"135", 24, 36},
    {"MF", 60, 60},
}};

static const Paper *paperOf(int number)
{
    if (number < 0 || static_cast<std::size_t>(number) >= papers.size())
        return nullptr;
    const Paper &paper = papers[static_cast<std::size_t>(number)];
    return paper.name ? &paper : nullptr;
}

QSizeF XPPaperSizes::sizeInMM(int paper)
{
    const Paper *found = paperOf(paper);
    return found ? QSizeF(found->width, found->height) : QSizeF(0, 0);
}

QString XPPaperSizes::name(int paper)
{
    const Paper *found = paperOf(paper);
    return found ? QString::fromLatin1(found->name) : QStringLiteral("Unknown");
}
