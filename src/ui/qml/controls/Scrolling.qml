// Functions shared by everything that scrolls.
pragma Singleton
import QtQuick

QtObject {
    /// Clamps an offset to the range of `area`.
    function bounded(area: Flickable, y: real): real {
        const top = area.originY - area.topMargin;
        const bottom = area.originY + area.contentHeight + area.bottomMargin - area.height;
        return Math.max(top, Math.min(y, bottom));
    }

    /// Scrolls `area` on Page Up, Page Down, Home and End. Returns false for any other key.
    function turn(area: Flickable, key: int): bool {
        // A page keeps a little of what was in view, for orientation.
        const page = Math.max(area.height * 0.5, area.height - 80);
        switch (key) {
        case Qt.Key_PageUp:
            area.contentY = bounded(area, area.contentY - page);
            return true;
        case Qt.Key_PageDown:
            area.contentY = bounded(area, area.contentY + page);
            return true;
        case Qt.Key_Home:
            area.contentY = bounded(area, -Infinity);
            return true;
        case Qt.Key_End:
            area.contentY = bounded(area, Infinity);
            return true;
        default:
            return false;
        }
    }
}
