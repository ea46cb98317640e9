#pragma once

class KPNavigator;
class KPTagName;
class QMenu;

// Narrowing a search to what stands above a tag that is a path, and to what stands below it among
// the tags of the documents shown. Threads: main.
namespace KPTagBranchMenu {

// Adds nothing where there is neither.
void add(QMenu *menu, const KPTagName *tag, KPNavigator &navigator);

} // namespace KPTagBranchMenu
