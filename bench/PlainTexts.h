#pragma once

#include "IndexImporter.h"

#include <atomic>

namespace XPBench {

// While one lives, an index that is opened takes texts as they are, in this process: for figures
// of the index alone. What importing costs, with its cage, is measured for itself. Any thread.
class PlainTexts
{
public:
    PlainTexts() { isOn() = true; }
    ~PlainTexts() { isOn() = false; }
    PlainTexts(const PlainTexts &) = delete;
    PlainTexts &operator=(const PlainTexts &) = delete;

    static std::atomic<bool> &isOn();
    static std::unique_ptr<IndexImporter> importer();
};

} // namespace XPBench
