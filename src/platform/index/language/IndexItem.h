#pragma once

#include <QtGlobal>

// The number of a file in the index: given once, never used again. 0 is no item.
using IndexItem = quint32;
