#include "KPDocumentTargets.h"

KPDocumentTargets::~KPDocumentTargets() = default;
