#include "platform/files/directory.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/files/descriptor.h"
#include "platform/files/directory_system.h"

namespace vesk {

namespace {

ItemKind kindOf(unsigned char type) {
    switch (type) {
        case DT_DIR:
            return ItemKind::folder;
        case DT_REG:
            return ItemKind::regularFile;
        case DT_UNKNOWN:
            return ItemKind::unknown;
        default:
            return ItemKind::other;
    }
}

bool sameDevice(int first, int second) {
    struct stat a {};
    struct stat b {};
    return fstat(first, &a) == 0 && fstat(second, &b) == 0 && a.st_dev == b.st_dev;
}

}  // namespace

bool isDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

void visitListed(const char* name, unsigned char type, const std::function<void(ListedItem)>& visit) {
    if (!isDotOrDotDot(name)) {
        visit(ListedItem{name, kindOf(type)});
    }
}

Descriptor openComparingDevices(int parent, const char* name) {
    Descriptor child = openFolder(parent, name, LastLink::doNotFollow);
    if (child && !sameDevice(parent, child.get())) {
        child.close();
        errno = EXDEV;
    }
    return child;
}

}  // namespace vesk
