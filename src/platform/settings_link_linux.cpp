#include "platform/settings_link.h"

namespace vesk {

void openFullDiskAccessSettings() {
}

}  // namespace vesk
