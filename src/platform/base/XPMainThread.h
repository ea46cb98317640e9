#pragma once

#include <functional>

// Has `call` called on the main thread's event loop, in the order of these calls; from the main
// thread too, which returns first. What the function holds is handed over under a lock, which
// thread-sanitizer builds can follow and Qt's event queue is not. Without a QCoreApplication, and
// after its event loop, nothing is called.
// Threads: any.
void xpOnMainThread(std::function<void()> call);
