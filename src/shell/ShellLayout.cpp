#include "ShellLayout.h"

#include <algorithm>

namespace ShellLayout {

Geometry Arrange(QSize client, int toolbarHeight, int leftColumn, int statusBarHeight) {
    Geometry g;
    const int width = client.width();
    g.panelHeight = std::max(0, client.height() - toolbarHeight - statusBarHeight);
    g.toolbar = QRect(0, 0, width, toolbarHeight);
    g.column = QRect(0, toolbarHeight, leftColumn, g.panelHeight);
    g.panel = QRect(leftColumn, toolbarHeight, std::max(0, width - leftColumn), g.panelHeight);
    g.statusBar =
        QRect(0, toolbarHeight + g.panelHeight, width, client.height() - (toolbarHeight + g.panelHeight));
    return g;
}

} // namespace ShellLayout
