#include "platform/system/settings_link.h"

namespace vesk {

void openFullDiskAccessSettings() {
}

}  // namespace vesk
