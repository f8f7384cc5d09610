// What all that scrolls has in common.
pragma Singleton
import QtQuick

QtObject {
    /// Brings a place into what `area` can show.
    function bounded(area: Flickable, y: real): real {
        const top = area.originY - area.topMargin;
        const bottom = area.originY + area.contentHeight + area.bottomMargin - area.height;
        return Math.max(top, Math.min(y, bottom));
    }

    /// Moves `area` as Page Up, Page Down, Home and End ask. Returns false for any other key.
    function turn(area: Flickable, key: int): bool {
        // Of what was in view a little stays, for the eye to hold on to.
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
