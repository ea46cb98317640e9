#pragma once

class XPCloudView;

// A cloud for assistive programs: a list of its words, each of which can be clicked.
// Threads: main.
namespace XPCloudViewAccessible {

void install(); // once is enough; more do nothing
// Whoever looked at the words looks again.
void tellItems(XPCloudView &view);

} // namespace XPCloudViewAccessible
